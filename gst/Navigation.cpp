// Steering with the mouse: drag, wheel and double click become changes of the settings.
#include "Navigation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lumofe {
namespace {

constexpr double kUpperPart = 1.538; // height of the 360 frame over that of its views
constexpr double kSameSpot = 5;      // pixels between the clicks of a double click
constexpr double kNotch = 5;         // percent of zoom

// Degrees from one edge of a view to the other, at both ends of the zoom. Measured on the test
// scene, where a view tilted by 60 to 80 follows the pointer within a third.
constexpr double kWidestView = 240, kClosestView = 20;

// The panorama's halves show half a turn each.
constexpr double kHalfTurn = 180;

// The wall's panorama cannot be turned, nor can the strip of the 360 layout.
bool panoramaTurns(const Settings& settings)
{
    return settings.view == View::half180 && settings.mount != Mount::wall;
}

// The view at that place of the output, 1 and up; 0 for a panorama.
int viewAt(View view, Size output, double x, double y)
{
    const int right = x < output.width / 2.0 ? 0 : 1;
    switch (view) {
    case View::quad:
        return 1 + right + (y < output.height / 2.0 ? 0 : 2);
    case View::ptz360:
        return y < output.height / kUpperPart ? 1 + right : 0;
    case View::half180:
        return 0;
    case View::single:
        break;
    }
    return 1;
}

Size viewSize(View view, Size output)
{
    if (view == View::quad) return {output.width / 2, output.height / 2};
    if (view == View::ptz360) return {output.width / 2, int(output.height / kUpperPart)};
    return output;
}

double withinATurn(double degrees)
{
    return std::abs(degrees) > 360 ? std::fmod(degrees, 360) : degrees;
}

// Without an offset: it would be that of where the view looked before.
void store(ViewDirection& direction, const Aim& aim)
{
    direction = {aim.pan, aim.tilt, aim.zoom, {}};
}

// Moves what the view shows by so many pixels.
void shift(Settings& settings, int number, double reach, Size size, double right, double down)
{
    Aim aim = settings.aim(number);
    aim.pan = std::clamp(aim.pan, -reach, reach);
    const double across =
        kWidestView * std::pow(kClosestView / kWidestView, aim.zoom / 100); // degrees
    const double pan = across * right / size.width, tilt = across * down / size.height;
    aim.pan += settings.mount == Mount::floor ? pan : -pan;
    aim.tilt += settings.mount == Mount::wall ? -tilt : tilt;
    if (settings.mount != Mount::wall) aim.pan = withinATurn(aim.pan);
    ViewDirection& direction = settings.now.views[std::size_t(number) - 1];
    store(direction, aim);
    // Otherwise a pointer that went too far would have to come back first.
    store(direction, settings.aim(number));
}

void turnPanorama(Settings& settings, Size output, double right)
{
    const double degrees = kHalfTurn * right / output.width;
    double& offset = settings.now.panoramaOffset;
    offset = withinATurn(offset + (settings.mount == Mount::floor ? degrees : -degrees));
}

} // namespace

void Navigation::press(Settings& settings, Size output, double x, double y, std::int64_t time)
{
    const int number = viewAt(settings.view, output, x, y);
    const bool twice = lastClick_ && time - lastClick_->time <= kDoubleClick &&
                       std::hypot(x - lastClick_->x, y - lastClick_->y) <= kSameSpot;
    if (!twice) {
        lastClick_ = Click{x, y, time};
        drag_ = Drag{number, x, y};
        return;
    }
    lastClick_.reset();
    drag_.reset();
    if (number > 0)
        settings.now.views[std::size_t(number) - 1] = settings.set.views[std::size_t(number) - 1];
    else if (settings.view == View::half180)
        settings.now.panoramaOffset = settings.set.panoramaOffset;
}

void Navigation::move(Settings& settings, Size output, double x, double y)
{
    if (!drag_) return;
    const double right = x - drag_->x, down = y - drag_->y;
    drag_->x = x;
    drag_->y = y;
    // The layout may have changed since the button went down.
    if (drag_->view > 0 && drag_->view <= layoutRule(settings.view).views)
        shift(settings, drag_->view, reach_[std::size_t(drag_->view) - 1],
              viewSize(settings.view, output), right, down);
    else if (panoramaTurns(settings))
        turnPanorama(settings, output, right);
}

void Navigation::scroll(Settings& settings, Size output, double x, double y, double notches)
{
    const int number = viewAt(settings.view, output, x, y);
    if (number == 0) return;
    Aim aim = settings.aim(number);
    aim.zoom = std::clamp(aim.zoom + kNotch * notches, 0.0, 100.0);
    store(settings.now.views[std::size_t(number) - 1], aim);
}

} // namespace lumofe
