// Which of a camera's presets looks nearest to a direction.
#include "camera/NearestView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace lumofe {
namespace {

constexpr double kSingleOffset = 22.5; // degrees that the single view looks further than its pan
constexpr double kRadians = std::numbers::pi / 180;

double offsetOf(View view)
{
    return view == View::single ? kSingleOffset : 0;
}

// Unit vector: the lens axis, and two directions across it.
std::array<double, 3> vectorOf(const Aim& aim, Mount mount)
{
    // On the wall, pan and tilt are the two sides of the way from the axis.
    const bool wall = mount == Mount::wall;
    const double away = kRadians * (wall ? std::hypot(aim.pan, aim.tilt) : std::abs(aim.tilt));
    const double round = wall ? std::atan2(aim.tilt, aim.pan) : kRadians * aim.pan;
    return {std::cos(away), std::sin(away) * std::cos(round), std::sin(away) * std::sin(round)};
}

} // namespace

Aim convertedAim(const Aim& aim, View from, View to, Mount mount)
{
    if (mount == Mount::wall) return aim;
    Aim converted = aim;
    converted.pan = std::fmod(aim.pan + offsetOf(from) - offsetOf(to), 360);
    if (converted.pan < 0) converted.pan += 360;
    return converted;
}

double angleBetween(const Aim& a, const Aim& b, Mount mount)
{
    const auto u = vectorOf(a, mount), v = vectorOf(b, mount);
    const double cosine = u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
    return std::acos(std::clamp(cosine, -1.0, 1.0)) / kRadians;
}

std::optional<NearestView> nearestView(const CameraFile& camera, const Aim& direction)
{
    std::optional<NearestView> nearest;
    for (const Preset& preset : camera.presets) {
        const std::vector<Aim>& views = preset.position.views;
        for (std::size_t i = 0; i < views.size(); ++i) {
            const Aim aim = convertedAim(views[i], preset.layout, View::single, camera.mount);
            const double degrees = angleBetween(aim, direction, camera.mount);
            if (!nearest || degrees < nearest->degrees) nearest = {&preset, int(i) + 1, degrees};
        }
    }
    return nearest;
}

} // namespace lumofe
