// What ideal cameras in the test scene see.
#include "IdealView.h"

#include "scene/FisheyeLens.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumofe::test {

namespace {

constexpr double kDepth = kRadius / (5.67139 * 1.115007); // plane distance, plane pixels
constexpr double kRadians = std::numbers::pi / 180;

// A camera whose lens answers in the world's axes: x east, y south, z up.
Camera worldCamera(Mount mount)
{
    return {cameraFor(mount).position, kUp, {1, 0, 0}, {0, -1, 0}};
}

} // namespace

Vec3 facingAt(double degrees)
{
    return {std::sin(degrees * kRadians), std::cos(degrees * kRadians), 0};
}

// The 1 is a shift of the library's views by one plane pixel.
Image idealView(Mount mount, Vec3 facing, Size size, const FE_ViewPosition& position,
                const ViewPlane& plane, double depthScale)
{
    const Vec3 axis = cameraFor(mount).forward;
    const Vec3 rightHand = cross(facing, kUp);
    const bool turned = mount != Mount::ceiling; // these views are built turned by half a turn
    const double areaW = plane.areaW - 8 * position.nZoom;
    const double areaH = plane.areaH - 6 * position.nZoom;
    const double w = size.width, h = size.height;
    const Lens lens = [=](double column, double row) -> std::optional<Vec3> {
        const double j = turned ? w - 1 - column : column;
        const double i = turned ? h - 1 - row : row;
        const double right = ((j / w - 0.5) * areaW) * plane.scale - 1;
        const double below = ((i / h - 0.5) * areaH - position.nAux) * plane.scale;
        const double depth = (1 - (0.5 - i / h) * areaH * plane.slope * position.nTilt) * kDepth;
        Vec3 v = axis * (depth * depthScale);
        if (mount == Mount::wall)
            v = v + rightHand * -right + kUp * below;
        else
            v = v + rightHand * (turned ? -right : right) + facing * -below;
        return Vec3{v.x, -v.y, v.z};
    };
    return renderPicture(Room(), worldCamera(mount), lens, size);
}

Image idealUnwrap(Mount mount, Size size, const Unwrap& unwrap)
{
    const double vertical = mount == Mount::ceiling ? -1 : 1; // where the axis points
    const Lens lens = [=](double column, double row) -> std::optional<Vec3> {
        const double distance =
            unwrap.top + (row + unwrap.lift) / size.height * (unwrap.bottom - unwrap.top);
        const double fromAxis = distance / kRadius * kRimAngle * kRadians;
        const Vec3 v =
            facingAt(unwrap.azimuth + column / size.width * unwrap.span) * std::sin(fromAxis) +
            kUp * (vertical * std::cos(fromAxis));
        return Vec3{v.x, -v.y, v.z};
    };
    return renderPicture(Room(), worldCamera(mount), lens, size);
}

Image idealWallPanorama(Size size, double top, double bottom)
{
    const Lens fisheye = fisheyeLens(2 * kRadius);
    const Lens lens = [=](double column, double row) {
        return fisheye(column / size.width * 2 * kRadius, top + row / size.height * (bottom - top));
    };
    return renderPicture(Room(), cameraFor(Mount::wall), lens, size);
}

Image mirrored(Image image)
{
    for (int y = 0; y < image.size.height; ++y)
        for (int x = 0; x < image.size.width / 2; ++x)
            std::swap_ranges(image.pixel(x, y), image.pixel(x, y) + 3,
                             image.pixel(image.size.width - 1 - x, y));
    return image;
}

Image upsideDown(Image image)
{
    const auto rowBytes = std::ptrdiff_t(3) * image.size.width;
    for (int y = 0; y < image.size.height / 2; ++y)
        std::swap_ranges(image.pixel(0, y), image.pixel(0, y) + rowBytes,
                         image.pixel(0, image.size.height - 1 - y));
    return image;
}

Image cropped(const Image& image, int x, int y, Size size)
{
    Image out(size);
    for (int row = 0; row < size.height; ++row)
        std::copy_n(image.pixel(x, y + row), 3 * size.width, out.pixel(0, row));
    return out;
}

} // namespace lumofe::test
