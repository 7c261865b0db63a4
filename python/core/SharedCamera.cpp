// A camera for several threads, which can be closed while others still hold it.
#include "SharedCamera.h"

#include "Error.h"
#include "camera/CameraFile.h"
#include "media/Pixels.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lumofe {
namespace {

DewarperSetup fed(DewarperSetup setup)
{
    setup.format = fedFormat(setup.view, setup.format);
    return setup;
}

// Dewarps a frame by way of one of the classes for pictures, which convert to what is fed.
template <class Picture>
void convert(Dewarper& dewarper, const std::uint8_t* input, std::uint8_t* output)
{
    Picture picture(dewarper.setup().input);
    std::copy_n(input, picture.bytes.size(), picture.bytes.data());
    const Picture result = dewarper.dewarp(picture);
    std::ranges::copy(result.bytes, output);
}

} // namespace

SharedCamera::SharedCamera(const DewarperSetup& setup)
    : format_(setup.format), dewarper_(std::in_place, fed(setup))
{
    for (int number = 1; number <= layoutRule(setup.view).views; ++number)
        aims_.push_back(defaultAim(setup.view, setup.mount, number));
    dewarper_->aim(aims_);
}

Dewarper& SharedCamera::open() const
{
    if (!dewarper_) throw Error("the camera is closed; make another one");
    return *dewarper_;
}

void SharedCamera::close()
{
    const std::scoped_lock lock(mutex_);
    dewarper_.reset();
}

bool SharedCamera::closed() const
{
    const std::scoped_lock lock(mutex_);
    return !dewarper_;
}

void SharedCamera::aim(const std::vector<Aim>& aims)
{
    const std::scoped_lock lock(mutex_);
    Dewarper& dewarper = open();
    std::ranges::copy(aims, aims_.begin());
    dewarper.aim(aims_);
}

void SharedCamera::aim(int number, const AimChange& change)
{
    const std::scoped_lock lock(mutex_);
    Dewarper& dewarper = open();
    Aim& aim = aims_[std::size_t(number) - 1];
    // The offset belongs to the tilt and zoom that it was told with.
    if (change.tilt || change.zoom) aim.offset.reset();
    aim.pan = change.pan.value_or(aim.pan);
    aim.tilt = change.tilt.value_or(aim.tilt);
    aim.zoom = change.zoom.value_or(aim.zoom);
    dewarper.aim(aims_);
}

std::vector<Aim> SharedCamera::aims() const
{
    const std::scoped_lock lock(mutex_);
    return positionOf(open()).views;
}

void SharedCamera::step(int number, const Step& step)
{
    const std::scoped_lock lock(mutex_);
    open().step(number, step);
    stepped_ = true;
}

void SharedCamera::turnPanorama(int degrees)
{
    const std::scoped_lock lock(mutex_);
    open().turnPanorama(degrees);
}

int SharedCamera::panoOffset() const
{
    const std::scoped_lock lock(mutex_);
    return open().setup().panoOffset;
}

void SharedCamera::setCircle(const Circle& circle)
{
    const std::scoped_lock lock(mutex_);
    try {
        Dewarper& dewarper = open();
        dewarper.setCircle(circle);
        // Offsets that follow from tilt and zoom depend on the circle, too.
        dewarper.aim(aims_);
    } catch (...) {
        // Its slot may have been left without a camera.
        dewarper_.reset();
        throw;
    }
}

Circle SharedCamera::circle() const
{
    const std::scoped_lock lock(mutex_);
    return open().setup().circle;
}

Aim SharedCamera::directionOf(int x, int y) const
{
    const std::scoped_lock lock(mutex_);
    return open().directionOf(x, y);
}

void SharedCamera::aimAt(int number, int x, int y, std::optional<double> zoom)
{
    const std::scoped_lock lock(mutex_);
    Dewarper& dewarper = open();
    const std::size_t index = std::size_t(number) - 1;
    aims_[index] = dewarper.aimAt(x, y, zoom.value_or(positionOf(dewarper).views[index].zoom));
    dewarper.aim(aims_);
}

std::vector<float> SharedCamera::sourceMap() const
{
    const std::scoped_lock lock(mutex_);
    return open().sourceMap();
}

void SharedCamera::dewarp(const std::uint8_t* input, std::uint8_t* output)
{
    const std::scoped_lock lock(mutex_);
    dewarpOpen(input, output);
    if (!std::exchange(stepped_, false)) return;
    aims_ = open().aims();
}

void SharedCamera::dewarpOpen(const std::uint8_t* input, std::uint8_t* output)
{
    Dewarper& dewarper = open();
    const auto [width, height] = dewarper.setup().output;
    if (format_ == dewarper.setup().format) {
        dewarper.dewarp(input, output);
        if (format_ == PixelFormat::rgb)
            exchangeRedAndBlue(output, std::size_t(width) * std::size_t(height));
    } else if (format_ == PixelFormat::rgb) {
        convert<Image>(dewarper, input, output);
    } else {
        convert<Frame420>(dewarper, input, output);
    }
}

} // namespace lumofe
