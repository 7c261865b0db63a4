// Compares views of the test scene with what an ideal pinhole camera would see of it.
//
// A single view is a pinhole picture: its pixels lie on a plane of kPlaneScale pixels' pitch, and
// the tilt divides each row by a number that grows linearly down the view. The position fields that
// the library reports say by how much. Everything else here is geometry of the room: the view looks
// towards a wall, and is upright for a person who faces it.
#include "Dewarper.h"
#include "ToolTestSupport.h"
#include "scene/Camera.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>
#include <vector>

namespace lumofe {
namespace {

using test::cross;
using test::dot;

constexpr int kRadius = 640;
constexpr double kPlaneScale = 0.5625; // plane pixels per pixel of the viewed area
constexpr double kDepth = kRadius / (5.67139 * 1.115007); // plane distance, plane pixels
constexpr Vec3 kUp{0, 0, 1};

struct View4x3 {
    Image picture;
    FE_ViewPosition position;
};

View4x3 render(Mount mount, Size size, const Aim& aim)
{
    DewarperSetup setup;
    setup.input = {2 * kRadius, 2 * kRadius};
    setup.output = size;
    setup.circle = {kRadius, kRadius, kRadius};
    setup.mount = mount;
    setup.format = PixelFormat::rgb;
    Dewarper dewarper(setup);
    dewarper.aim(aim);
    View4x3 view{dewarper.dewarp(test::scene(mount)), {}};
    FE_CurPosParams position{};
    IFishEye().LmFEGetPosition(0, &position);
    view.position = position.view[0];
    return view;
}

// The pan that looks towards a horizontal direction: clockwise from the top of the raw picture,
// less the fixed turn of the single view.
double panTowards(Mount mount, Vec3 direction)
{
    const Camera camera = cameraFor(mount);
    const double clockwise = std::atan2(dot(direction, camera.right), -dot(direction, camera.down));
    return clockwise * 180 / std::numbers::pi - 22.5;
}

// What a pinhole camera in the scene's camera position sees with these position fields, upright for
// a person who faces the given way. The 1 is a shift of the library's views by one plane pixel.
Image ideal(Mount mount, Vec3 facing, Size size, const FE_ViewPosition& position, double scale = 1)
{
    // The lens answers in the world's axes: this camera's right, down and forward.
    const Camera world{cameraFor(mount).position, kUp, {1, 0, 0}, {0, -1, 0}};
    const Vec3 axis = cameraFor(mount).forward;
    const Vec3 rightHand = cross(facing, kUp);
    const bool turned = mount != Mount::ceiling; // these views are built turned by half a turn
    const double margin = mount == Mount::wall ? position.nZoom : 0;
    const double areaW = 800 - 8 * margin, areaH = 600 - 6 * margin;
    const double w = size.width, h = size.height;
    const Lens lens = [=](double column, double row) -> std::optional<Vec3> {
        const double j = turned ? w - 1 - column : column;
        const double i = turned ? h - 1 - row : row;
        const double right = ((j / w - 0.5) * areaW) * kPlaneScale - 1;
        const double below = ((i / h - 0.5) * areaH - position.nAux) * kPlaneScale;
        const double depth = (1 - (0.5 - i / h) * areaH / 300 * position.nTilt / 45) * kDepth;
        Vec3 v = axis * (depth * scale);
        if (mount == Mount::wall)
            v = v + rightHand * -right + kUp * below;
        else
            v = v + rightHand * (turned ? -right : right) + facing * -below;
        return Vec3{v.x, -v.y, v.z};
    };
    return renderPicture(Room(), world, lens, size);
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

constexpr Vec3 kWalls[] = {{0, 1, 0}, {1, 0, 0}, {0, -1, 0}, {-1, 0, 0}}; // N, E, S, W

Vec3 facingAt(double degrees) // clockwise from north
{
    const double a = degrees * std::numbers::pi / 180;
    return {std::sin(a), std::cos(a), 0};
}

TEST(RenderScene, StraightDownIsAnIdealPinholePicture)
{
    constexpr Size kSize{800, 600};
    const auto likeness = [&](const View4x3& view, double degrees, double scale) {
        return test::psnr(view.picture,
                          ideal(Mount::ceiling, facingAt(degrees), kSize, view.position, scale));
    };
    // Measured 25.7 and 24.0 dB; half a pixel along the many sharp edges already costs as much.
    const View4x3 north = render(Mount::ceiling, kSize, {-22.5, 0, 0});
    const View4x3 south = render(Mount::ceiling, kSize, {177.5, 0, 0});
    const double right = likeness(north, 0, 1);
    EXPECT_GT(right, 23);
    EXPECT_GT(likeness(south, 200, 1), 23);
    // A degree of turn costs 8 dB, two percent of size 6 and more.
    EXPECT_LT(likeness(north, 1, 1), right - 5);
    EXPECT_LT(likeness(north, -1, 1), right - 5);
    EXPECT_LT(likeness(north, 0, 1.02), right - 5);
    EXPECT_LT(likeness(north, 0, 0.98), right - 5);
}

// Measured: 25.8 to 33.3 dB for the right picture, at most 17.5 dB for any other.
constexpr double kAlike = 24, kDifferent = 20;

void expectEachWallUpright(Mount mount, double tilt)
{
    constexpr Size kSize{400, 300};
    std::vector<View4x3> views;
    for (Vec3 wall : kWalls)
        views.push_back(render(mount, kSize, {panTowards(mount, wall), tilt, 0}));
    for (std::size_t seen = 0; seen < std::size(kWalls); ++seen) {
        const Image picture = ideal(mount, kWalls[seen], kSize, views[seen].position);
        for (std::size_t i = 0; i < views.size(); ++i) {
            SCOPED_TRACE(testing::Message()
                         << "view of wall " << i << ", picture of wall " << seen);
            const Image& view = views[i].picture;
            if (i == seen)
                EXPECT_GT(test::psnr(view, picture), kAlike);
            else
                EXPECT_LT(test::psnr(view, picture), kDifferent);
            EXPECT_LT(test::psnr(view, mirrored(picture)), kDifferent);
            EXPECT_LT(test::psnr(view, upsideDown(picture)), kDifferent);
        }
    }
}

TEST(RenderScene, CeilingCameraShowsTheWallItPansTo)
{
    expectEachWallUpright(Mount::ceiling, 70);
}

TEST(RenderScene, FloorCameraShowsTheWallItPansTo)
{
    expectEachWallUpright(Mount::floor, -70);
}

TEST(RenderScene, WallCameraIsUpright)
{
    for (double tilt : {0.0, -60.0, 60.0}) {
        const View4x3 view = render(Mount::wall, {800, 600}, {0, tilt, 0});
        const Image picture = ideal(Mount::wall, kWalls[0], {800, 600}, view.position);
        EXPECT_GT(test::psnr(view.picture, picture), kAlike) << tilt;
        EXPECT_LT(test::psnr(view.picture, mirrored(picture)), kDifferent) << tilt;
        EXPECT_LT(test::psnr(view.picture, upsideDown(picture)), kDifferent) << tilt;
    }
}

struct Place {
    double column = 0, row = 0;
};

// Middle of all that is blue: the north wall.
Place blueMiddle(const Image& image)
{
    Place sum;
    double count = 0;
    for (int y = 0; y < image.size.height; ++y) {
        for (int x = 0; x < image.size.width; ++x) {
            const std::uint8_t* p = image.pixel(x, y);
            if (p[2] < 1.5 * p[0] || p[2] < 1.2 * p[1]) continue;
            sum.column += x;
            sum.row += y;
            ++count;
        }
    }
    return {sum.column / count, sum.row / count};
}

TEST(RenderScene, WallCameraTurnsTheNamedWay)
{
    const auto wallAt = [](double pan, double tilt) {
        return blueMiddle(render(Mount::wall, {400, 300}, {pan, tilt, 50}).picture);
    };
    const Place ahead = wallAt(0, 0);
    EXPECT_NEAR(ahead.column, 200, 5);
    EXPECT_LT(wallAt(20, 0).column, ahead.column - 30); // to the right
    EXPECT_GT(wallAt(-20, 0).column, ahead.column + 30);
    EXPECT_LT(wallAt(0, 60).row, ahead.row - 30); // down
    // Upwards the library leans the view back, but does not move it.
    EXPECT_GT(wallAt(0, -60).row, ahead.row + 2);
}

} // namespace
} // namespace lumofe
