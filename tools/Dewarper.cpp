// One camera slot of the library.
#include "Dewarper.h"

#include "Error.h"
#include "media/Pixels.h"

#include <FEDSP.h>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

namespace lumofe {
namespace {

constexpr int kSlot = 0;

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

// What the layout adds to the pan of a view on ceiling and floor without taking it off an absolute
// one, degrees.
double addedPan(View view, int number)
{
    if (view != View::ptz360) return 0;
    return number == 1 ? 117 : 94.5;
}

FE_ViewParams viewParams(const DewarperSetup& setup)
{
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(setup.view);
    view.nCamPos = static_cast<unsigned short>(setup.mount);
    view.nSubView = 1;
    // The library's first centre coordinate runs along the rows.
    view.nCenterX = static_cast<unsigned short>(setup.circle.y);
    view.nCenterY = static_cast<unsigned short>(setup.circle.x);
    view.nRadius = static_cast<unsigned short>(setup.circle.radius);
    view.nRadius2 = view.nRadius;
    view.nOverlay = 0;
    return view;
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
    FE_ViewParams view = viewParams(setup);
    check("the view", ParamsUpdated(kSlot, &event, &view));
    if (setup.panoOffset != 0) turnPanorama();
}

Dewarper::Slot::~Slot()
{
    Close(kSlot);
    // The next Initialize would drop the records that a closed slot leaves behind.
    delete std::exchange(m_EventParam[kSlot], nullptr);
    delete std::exchange(m_ViewParam[kSlot], nullptr);
}

void Dewarper::aim(std::span<const Aim> aims)
{
    // On the wall the lens radius of both 360 views is only right when the first was steered last.
    for (std::size_t i = aims.size(); i > 0; --i)
        steer(aims[i - 1], int(i));
    aimed_ = true;
}

void Dewarper::steer(const Aim& aim, int number)
{
    const bool wall = setup_.mount == Mount::wall;
    const ZoomRange zoom = zoomRange(setup_.view, setup_.mount);
    FE_CurPosParams position{};
    FE_ViewPosition& view = position.view[number - 1];

    // The absolute call reaches only the ends of the wall's zoom range and leaves out the fourth
    // view of the quad, so the zoom is set as a position and then kept.
    fishEye_.LmFEGetPosition(kSlot, &position);
    view.nZoom = short(zoom.widest + aim.zoom / 100 * (zoom.closest - zoom.widest));
    fishEye_.LmFESetPosition(kSlot, &position);

    double pan = aim.pan;
    if (!wall) pan = std::fmod(pan - addedPan(setup_.view, number) + 720, 360);
    fishEye_.SetAbsolutePTZ(kSlot, rounded(pan * 10), rounded(aim.tilt * 10), -1,
                            static_cast<unsigned short>(number));
    if (wall) {
        // Two views of the wall take an absolute pan for one of the ceiling.
        fishEye_.LmFEGetPosition(kSlot, &position);
        view.nPan = rounded(aim.pan * 4);
        fishEye_.LmFESetPosition(kSlot, &position);
    }
}

void Dewarper::turnPanorama()
{
    FE_CurPosParams position{};
    fishEye_.LmFEGetPosition(kSlot, &position);
    position.n180Pos = setup_.panoOffset;
    fishEye_.LmFESetPosition(kSlot, &position);
}

bool Dewarper::turnsOver() const
{
    return setup_.upright && setup_.view == View::half180 && setup_.mount == Mount::ceiling;
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
    // Views 3 and 4 of the quad share one table, which only a set-up frame builds for each in turn;
    // outside the single view a pan alone builds no table.
    if (setup_.view == View::quad || aimed_) m_FEDSP[kSlot]->m_bSetup = 1;
    aimed_ = false;
    check("the frame",
          VideoInput(kSlot, in_.data(), out_.data(), setup_.input.width, setup_.input.height,
                     libraryFormat(setup_.format), setup_.format == PixelFormat::rgb));
}

Image Dewarper::resultRgb() const
{
    Image image(setup_.output);
    // On these mountings the library turns the finished view over for the 4:2:0 formats only.
    if (setup_.mount == Mount::ceiling && !turnsOver())
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
    return turnsOver() ? upsideDown(frame) : frame;
}

} // namespace lumofe
