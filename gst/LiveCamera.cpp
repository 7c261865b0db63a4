// The camera of one element: follows the settings from frame to frame.
#include "LiveCamera.h"

#include "Error.h"
#include "Frames.h"

#include <string>

namespace lumofe {
namespace {

std::string text(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

void checkCircle(const Circle& circle, Size input)
{
    if (circle.x < input.width && circle.y < input.height) return;
    throw Error("circle-x, circle-y: the centre " + std::to_string(circle.x) + "," +
                std::to_string(circle.y) + " is outside of the " + text(input) +
                " input; give it in input pixels, or -1 for the middle");
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
    const Circle circle = settings.circle(input);
    checkCircle(circle, input);
    checkOutput(settings, input, output);
    DewarperSetup setup;
    setup.input = input;
    setup.output = output;
    setup.circle = circle;
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
    DewarperSetup next = dewarper_->setup();
    const Circle before = next.circle;
    const bool suits = composes(settings.view, settings.mount, next.output, next.input) &&
                       fedFormat(settings.view, next.format) == next.format;
    if (suits && (settings.view != next.view || settings.mount != next.mount)) {
        next.view = settings.view;
        next.mount = settings.mount;
        next.panoOffset = settings.panoramaOffset();
        start(next);
    } else if (settings.panoramaOffset() != next.panoOffset) {
        dewarper_->turnPanorama(settings.panoramaOffset());
    }
    if (dewarper_->setup().view == settings.view && dewarper_->setup().mount == settings.mount)
        dewarper_->aim(settings.aims());

    const Circle circle = settings.circle(next.input);
    checkCircle(circle, next.input);
    if (circle != before) dewarper_->setCircle(circle);
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

} // namespace lumofe
