// The camera of one element: follows the settings from frame to frame.
#include "LiveCamera.h"

#include "Error.h"
#include "FrameMemory.h"

#include <cmath>
#include <cstddef>
#include <string>

namespace lumofe {
namespace {

constexpr double kPanStep = 0.25; // degrees

std::string text(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

// Why the circle cannot be had in such an input; empty when it can.
std::string complaintAboutCircle(const Settings& settings, Size input)
{
    if (settings.camera && settings.camera->input != input)
        return "camera-file: " + settings.cameraPath + " is for an input of " +
               text(settings.camera->input) + ", but this one is " + text(input) +
               "; scale the input in front of the element, or make a file for its size";
    const Circle circle = settings.circle(input);
    if (circle.x < input.width && circle.y < input.height) return {};
    return "circle-x, circle-y: the centre " + std::to_string(circle.x) + "," +
           std::to_string(circle.y) + " is outside of the " + text(input) +
           " input; give it in input pixels, or -1 for the middle";
}

void checkOutput(const Settings& settings, Size input, Size output)
{
    if (composes(settings.view, settings.mount, output, input)) return;
    throw Error(std::string("layout=") + layoutRule(settings.view).name + " leaves gaps at " +
                text(output) + " from an input of " + text(input) +
                "; ask for another size in the caps behind the element, the nearest is " +
                text(nearestComposing(settings.view, settings.mount, output, input)));
}

} // namespace

void LiveCamera::open(const Settings& settings, Size input, Size output, PixelFormat format)
{
    close();
    const std::string complaint = complaintAboutCircle(settings, input);
    if (!complaint.empty()) throw Error(complaint);
    checkOutput(settings, input, output);
    DewarperSetup setup;
    setup.input = input;
    setup.output = output;
    setup.circle = settings.circle(input);
    setup.view = settings.view;
    setup.mount = settings.mount;
    setup.format = format;
    setup.panoOffset = settings.panoramaOffset();
    start(setup);
    dewarper_->aim(settings.aims());
    followed_ = settings;
}

void LiveCamera::start(const DewarperSetup& setup)
{
    dewarper_.reset(); // first, so that the same slot serves again
    dewarper_ = std::make_unique<Dewarper>(setup);
}

void LiveCamera::close()
{
    dewarper_.reset();
}

void LiveCamera::follow(const Settings& settings)
{
    if (settings == followed_) return;
    followed_ = settings;
    const DewarperSetup before = dewarper_->setup();
    DewarperSetup next = before;
    const std::string complaint = complaintAboutCircle(settings, next.input);
    if (complaint.empty()) next.circle = settings.circle(next.input);
    next.panoOffset = settings.panoramaOffset();
    if (composes(settings.view, settings.mount, next.output, next.input) &&
        fedFormat(settings.view, next.format) == next.format) {
        next.view = settings.view;
        next.mount = settings.mount;
    }
    if (next.view != before.view || next.mount != before.mount) {
        start(next);
    } else {
        if (next.circle != before.circle) dewarper_->setCircle(next.circle);
        if (next.panoOffset != before.panoOffset) dewarper_->turnPanorama(next.panoOffset);
    }
    if (next.view == settings.view && next.mount == settings.mount) dewarper_->aim(settings.aims());
    if (!complaint.empty()) throw Error(complaint);
}

void LiveCamera::dewarp(const GstVideoFrame& input, GstVideoFrame& output)
{
    const bool tightIn = isTight(input), tightOut = isTight(output);
    in_.resize(tightIn ? 0 : dewarper_->inputBytes());
    out_.resize(tightOut ? 0 : dewarper_->outputBytes());
    if (!tightIn) packFrame(input, in_.data());
    dewarper_->dewarp(tightIn
                          ? static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&input, 0))
                          : in_.data(),
                      tightOut ? static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&output, 0))
                               : out_.data());
    if (!tightOut) unpackFrame(out_.data(), output);
}

PanReach LiveCamera::panReach() const
{
    PanReach reach = kUnlimitedReach;
    const DewarperSetup& setup = dewarper_->setup();
    // Settings that wait for other caps aim at other views.
    if (setup.mount != Mount::wall || followed_.mount != setup.mount ||
        followed_.view != setup.view)
        return reach;
    const std::vector<Aim> asked = followed_.aims(), shown = dewarper_->aims();
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (std::abs(shown[i].pan) < std::abs(asked[i].pan) - kPanStep)
            reach[i] = std::abs(shown[i].pan);
    return reach;
}

} // namespace lumofe
