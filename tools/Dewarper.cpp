// One camera slot of the library.
#include "Dewarper.h"

#include "Error.h"
#include "TableEntry.h"
#include "media/Pixels.h"

#include <FEDSP.h>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>

namespace lumofe {
namespace {

constexpr double kRoundingError = 1e-6;
constexpr double kTiltStep = 2; // degrees of one step of FE_ViewPosition::nTilt

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

// What an absolute pan is less in the position of a view on ceiling and floor, degrees.
double reservedPan(View view, int number)
{
    return view == View::quad || view == View::ptz360 ? 22.5 * (number - 1) : 0;
}

double wholeTurn(double degrees)
{
    const double turned = std::fmod(degrees, 360);
    return turned < 0 ? turned + 360 : turned;
}

FE_ViewParams viewParams(const DewarperSetup& setup, int number)
{
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(setup.view);
    view.nCamPos = static_cast<unsigned short>(setup.mount);
    view.nSubView = static_cast<unsigned short>(number);
    // The library's first centre coordinate runs along the rows.
    view.nCenterX = static_cast<unsigned short>(setup.circle.y);
    view.nCenterY = static_cast<unsigned short>(setup.circle.x);
    view.nRadius = static_cast<unsigned short>(setup.circle.radius);
    view.nRadius2 = view.nRadius;
    view.nOverlay = 0;
    return view;
}

// In the 180 layout of ceiling and floor the library writes the last row of luma to where the
// chroma of the first two rows lies, which shows as green. They get that of the rows below.
void mendFirstChroma(std::uint8_t* out, const DewarperSetup& setup)
{
    if (setup.view != View::half180 || setup.mount == Mount::wall) return;
    const std::size_t w = std::size_t(setup.output.width);
    std::uint8_t* overwritten = out + w * std::size_t(setup.output.height);
    const std::uint8_t* below = overwritten + w;
    if (setup.format == PixelFormat::nv12) {
        std::memcpy(overwritten, below, w);
    } else {
        std::memcpy(overwritten, below, w / 2);
        std::memcpy(overwritten + w / 2, below, w / 2);
    }
}

void blacken(std::uint8_t* frame, const DewarperSetup& setup)
{
    const std::size_t bytes = frameBytes(setup.output, setup.format);
    const std::size_t luma = setup.format == PixelFormat::rgb ? bytes : bytes / 3 * 2;
    std::memset(frame, 0, luma);
    std::memset(frame + luma, 128, bytes - luma);
}

} // namespace

Dewarper::Dewarper(const DewarperSetup& setup)
    : setup_(setup), in_(frameBytes(setup.input, setup.format)),
      out_(frameBytes(setup.output, setup.format))
{
    open();
}

void Dewarper::open()
{
    check("these sizes",
          Initialize(slot(), setup_.input.width, setup_.input.height, setup_.output.width,
                     setup_.output.height, libraryFormat(setup_.format)));
    rendered_ = false;
    update(1, {});
    if (setup_.panoOffset != 0) turnPanorama(setup_.panoOffset);
}

FE_CurPosParams Dewarper::position() const
{
    FE_CurPosParams position{};
    fishEye_.LmFEGetPosition(slot(), &position);
    return position;
}

void Dewarper::update(int number, const Step& step)
{
    FE_EventParams event;
    event.nPanStep = short(step.pan);
    event.nTiltStep = short(step.tilt);
    event.nZoomStep = short(step.zoom);
    FE_ViewParams view = viewParams(setup_, number);
    check("the view", ParamsUpdated(slot(), &event, &view));
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
    const std::size_t index = std::size_t(number) - 1;

    // The absolute call reaches only the ends of the wall's zoom range and leaves out the fourth
    // view of the quad, so the zoom is set as a position and then kept.
    FE_CurPosParams before = position();
    before.view[index].nZoom =
        short(zoom.widest + aim.zoom / 100 * (zoom.closest - zoom.widest) + kRoundingError);
    fishEye_.LmFESetPosition(slot(), &before);

    double pan = aim.pan;
    if (!wall) pan = wholeTurn(pan - addedPan(setup_.view, number));
    fishEye_.SetAbsolutePTZ(slot(), rounded(pan * 10), rounded(aim.tilt * 10), -1,
                            static_cast<unsigned short>(number));
    FE_CurPosParams after = position();
    // Two views of the wall take an absolute pan for one of the ceiling.
    if (wall) after.view[index].nPan = rounded(aim.pan * 4);
    if (aim.offset) {
        // An absolute pan rounds negative positions the other way.
        if (!wall) after.view[index].nPan = rounded(4 * (pan - reservedPan(setup_.view, number)));
        after.view[index].nTilt = rounded(std::abs(aim.tilt) / kTiltStep);
        if (wall) after.view[index].nTilt = rounded(aim.tilt / kTiltStep);
        after.view[index].nAux = short(*aim.offset);
    }
    fishEye_.LmFESetPosition(slot(), &after);
}

std::vector<Aim> Dewarper::aims() const
{
    const FE_CurPosParams now = position();
    const ZoomRange zoom = zoomRange(setup_.view, setup_.mount);
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(setup_.view).views; ++number) {
        const FE_ViewPosition& view = now.view[number - 1];
        Aim aim;
        aim.pan = view.nPan / 4.0;
        if (setup_.mount != Mount::wall)
            aim.pan = wholeTurn(aim.pan + reservedPan(setup_.view, number) +
                                addedPan(setup_.view, number));
        aim.tilt = kTiltStep * (setup_.mount == Mount::floor ? -view.nTilt : view.nTilt);
        aim.zoom = 100.0 * (view.nZoom - zoom.widest) / (zoom.closest - zoom.widest);
        aim.offset = view.nAux;
        aims.push_back(aim);
    }
    return aims;
}

void Dewarper::step(int number, const Step& step)
{
    update(number, step);
    stepped_ = true;
    aimed_ = true;
}

void Dewarper::turnPanorama(int degrees)
{
    setup_.panoOffset = degrees;
    FE_CurPosParams turned = position();
    turned.n180Pos = degrees;
    fishEye_.LmFESetPosition(slot(), &turned);
    aimed_ = true;
}

void Dewarper::setCircle(const Circle& circle)
{
    // A layout takes over some of the circle only when it is entered.
    const std::vector<Aim> before = aims();
    setup_.circle = circle;
    slot_.close();
    open();
    aim(before);
}

Aim Dewarper::directionOf(int x, int y) const
{
    short pan = 0, tilt = 0;
    fishEye_.GetAbsolutePositionFromInputVideoPoint(slot(), x, y, pan, tilt);
    Aim aim{pan / 10.0, tilt / 10.0};
    // The single view looks further round than its pan says.
    if (setup_.view == View::single && setup_.mount != Mount::wall)
        aim.pan = wholeTurn(aim.pan - 22.5);
    return aim;
}

std::vector<float> Dewarper::sourceMap() const
{
    if (setup_.view != View::single)
        throw Error("only the single view tells where its pixels come from");
    if (!rendered_) throw Error("no frame was dewarped yet that tells where its pixels come from");
    const auto [width, height] = setup_.output;
    const FEDSP& engine = *m_FEDSP[slot()];
    // Finished pictures of the other mountings are turned over.
    const bool bottomFirst = setup_.mount != Mount::ceiling;
    std::vector<float> map;
    map.reserve(2 * std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        const int row = bottomFirst ? height - 1 - y : y;
        const int* entry = engine.m_pMapTable + 2 * std::ptrdiff_t(row) * width;
        for (const int* end = entry + 2 * width; entry != end; entry += 2) {
            const TablePoint source = sourceOf(entry, engine.m_nPitch);
            map.push_back(source.x);
            map.push_back(source.y);
        }
    }
    return map;
}

bool Dewarper::turnsOver() const
{
    return setup_.upright && setup_.view == View::half180 && setup_.mount == Mount::ceiling;
}

void Dewarper::dewarp(const std::uint8_t* input, std::uint8_t* output)
{
    process(input, output, RowOrder::topFirst);
}

Image Dewarper::dewarp(const Image& input)
{
    if (setup_.format == PixelFormat::rgb)
        feed(input);
    else
        feed(toFrame420(input));
    process(in_.data(), out_.data(), RowOrder::bottomFirst);
    return setup_.format == PixelFormat::rgb ? resultRgb() : toImage(result420());
}

Frame420 Dewarper::dewarp(const Frame420& input)
{
    if (setup_.format == PixelFormat::rgb)
        feed(toImage(input));
    else
        feed(input);
    process(in_.data(), out_.data(), RowOrder::bottomFirst);
    return setup_.format == PixelFormat::rgb ? toFrame420(resultRgb()) : result420();
}

double Dewarper::renderAgain()
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    process(in_.data(), out_.data(), RowOrder::bottomFirst);
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

void Dewarper::process(const std::uint8_t* in, std::uint8_t* out, RowOrder order)
{
    // Views 3 and 4 of the quad share one table, which only a set-up frame builds for each in turn;
    // outside the single view a pan alone builds no table.
    if (setup_.view == View::quad || aimed_) m_FEDSP[slot()]->m_bSetup = 1;
    aimed_ = false;
    // What these leave unwritten was black at first, and in other buffers may be anything.
    if (setup_.view == View::ptz360 || setup_.view == View::half180) blacken(out, setup_);
    // The library only reads the input.
    const int status = VideoInput(slot(), const_cast<std::uint8_t*>(in), out, setup_.input.width,
                                  setup_.input.height, libraryFormat(setup_.format),
                                  order == RowOrder::bottomFirst);
    // Otherwise the step would be repeated with each frame. View 1 is selected: see aim().
    if (stepped_) {
        update(1, {});
        stepped_ = false;
        aimed_ = true;
    }
    check("the frame", status);
    rendered_ = true;
    mendFirstChroma(out, setup_);
    turnUpright(out);
}

void Dewarper::turnUpright(std::uint8_t* out) const
{
    const auto [w, h] = setup_.output;
    const std::size_t luma = std::size_t(w) * std::size_t(h);
    if (setup_.format == PixelFormat::rgb) {
        // On the other mountings the library turns the finished view over for 4:2:0 only.
        if (setup_.mount != Mount::ceiling || turnsOver()) reverseRows(out, 3 * w, h);
        return;
    }
    if (!turnsOver()) return;
    reverseRows(out, w, h);
    if (setup_.format == PixelFormat::nv12) {
        reverseRows(out + luma, w, h / 2);
    } else {
        reverseRows(out + luma, w / 2, h / 2);
        reverseRows(out + luma + luma / 4, w / 2, h / 2);
    }
}

Image Dewarper::resultRgb() const
{
    Image image(setup_.output);
    image.bytes = out_;
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
