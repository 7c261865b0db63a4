// The fisheye lens of the test scene.
#include "scene/FisheyeLens.h"

#include <cmath>
#include <numbers>

namespace lumofe {

Lens fisheyeLens(int size)
{
    const double radius = size / 2.0;
    const int centre = size / 2;
    return [radius, centre](double column, double row) -> std::optional<Vec3> {
        const double x = column - centre, y = row - centre;
        const double d = std::sqrt(x * x + y * y);
        if (d > radius) return std::nullopt;
        const double theta = d / radius * kRimAngle * std::numbers::pi / 180;
        // sin(theta) / d, also on the axis
        const double sine = d > 0 ? std::sin(theta) / d : 0;
        return Vec3{x * sine, y * sine, std::cos(theta)};
    };
}

Image renderFisheye(const Room& room, const Camera& camera, int size)
{
    return renderPicture(room, camera, fisheyeLens(size), {size, size});
}

} // namespace lumofe
