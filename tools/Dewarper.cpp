// One camera slot of the library.
#include "Dewarper.h"

#include "Error.h"
#include "media/Pixels.h"

#include <chrono>
#include <cmath>
#include <string>
#include <utility>

namespace lumofe {
namespace {

constexpr int kSlot = 0;
constexpr unsigned short kSubView = 1;

FORMAT libraryFormat(PixelFormat format)
{
    switch (format) {
    case PixelFormat::nv12:
        return FORMAT_NV12;
    case PixelFormat::yv12:
        return FORMAT_YV12;
    case PixelFormat::rgb:
        break;
    }
    return FORMAT_RGB;
}

void check(const char* call, int status)
{
    if (status == FE_STATUS_OK) return;
    const std::string prefix = std::string("the library refused ") + call + ": ";
    if (status == FE_STATUS_INVALID) throw Error(prefix + "a size or parameter is out of range");
    if (status == FE_STATUS_NO_BUFFERS)
        throw Error(prefix + "not enough memory; choose a smaller --size");
    throw Error(prefix + "the frame does not fit its buffers (status " + std::to_string(status) +
                ")");
}

std::size_t frameBytes(Size size, PixelFormat format)
{
    const std::size_t area = std::size_t(size.width) * std::size_t(size.height);
    return format == PixelFormat::rgb ? area * 3 : area * 3 / 2;
}

short rounded(double value)
{
    return short(std::lround(value));
}

} // namespace

Dewarper::Dewarper(const DewarperSetup& setup)
    : setup_(setup), in_(frameBytes(setup.input, setup.format)),
      out_(frameBytes(setup.output, setup.format))
{
    check("these sizes",
          Initialize(kSlot, setup.input.width, setup.input.height, setup.output.width,
                     setup.output.height, libraryFormat(setup.format)));
    FE_EventParams event;
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(setup.view);
    view.nCamPos = static_cast<unsigned short>(setup.mount);
    view.nSubView = kSubView;
    // The library's first centre coordinate runs along the rows.
    view.nCenterX = static_cast<unsigned short>(setup.circle.y);
    view.nCenterY = static_cast<unsigned short>(setup.circle.x);
    view.nRadius = static_cast<unsigned short>(setup.circle.radius);
    view.nRadius2 = view.nRadius;
    view.nOverlay = 0;
    check("the view", ParamsUpdated(kSlot, &event, &view));
}

Dewarper::Slot::~Slot()
{
    Close(kSlot);
    // The next Initialize would drop the records that a closed slot leaves behind.
    delete std::exchange(m_EventParam[kSlot], nullptr);
    delete std::exchange(m_ViewParam[kSlot], nullptr);
}

void Dewarper::aim(const Aim& aim)
{
    const bool wall = setup_.mount == Mount::wall;
    const double pan = wall || aim.pan >= 0 ? aim.pan : aim.pan + 360;
    short zoom = rounded(aim.zoom * 8);
    if (wall) {
        // The absolute call reaches only the two ends of the wall's zoom range, so the zoom is set
        // as a position and then kept.
        FE_CurPosParams position{};
        fishEye_.LmFEGetPosition(kSlot, &position);
        position.view[0].nZoom = rounded(10 + aim.zoom * 0.6);
        fishEye_.LmFESetPosition(kSlot, &position);
        zoom = -1;
    }
    fishEye_.SetAbsolutePTZ(kSlot, rounded(pan * 10), rounded(aim.tilt * 10), zoom, kSubView);
}

Image Dewarper::dewarp(const Image& input)
{
    if (setup_.format == PixelFormat::rgb)
        feed(input);
    else
        feed(toFrame420(input));
    process();
    return setup_.format == PixelFormat::rgb ? resultRgb() : toImage(result420());
}

Frame420 Dewarper::dewarp(const Frame420& input)
{
    if (setup_.format == PixelFormat::rgb)
        feed(toImage(input));
    else
        feed(input);
    process();
    return setup_.format == PixelFormat::rgb ? toFrame420(resultRgb()) : result420();
}

double Dewarper::renderAgain()
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    process();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void Dewarper::feed(const Image& input)
{
    // Bottom row first: of a frame in the usual order the library leaves out the last row.
    copyUpsideDown(input.bytes.data(), in_.data(), 3 * setup_.input.width, setup_.input.height);
}

void Dewarper::feed(const Frame420& input)
{
    if (setup_.format == PixelFormat::nv12)
        interleaveChroma(input.bytes.data(), in_.data(), setup_.input);
    else
        in_ = input.bytes;
}

void Dewarper::process()
{
    check("the frame",
          VideoInput(kSlot, in_.data(), out_.data(), setup_.input.width, setup_.input.height,
                     libraryFormat(setup_.format), setup_.format == PixelFormat::rgb));
}

Image Dewarper::resultRgb() const
{
    Image image(setup_.output);
    // On these mountings the library turns the finished view over for the 4:2:0 formats only.
    if (setup_.mount == Mount::ceiling)
        image.bytes = out_;
    else
        copyUpsideDown(out_.data(), image.bytes.data(), 3 * setup_.output.width,
                       setup_.output.height);
    exchangeRedAndBlue(image);
    return image;
}

Frame420 Dewarper::result420() const
{
    Frame420 frame(setup_.output);
    if (setup_.format == PixelFormat::nv12)
        separateChroma(out_.data(), frame.bytes.data(), setup_.output);
    else
        frame.bytes = out_;
    return frame;
}

} // namespace lumofe
