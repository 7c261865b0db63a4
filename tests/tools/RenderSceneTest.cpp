// Compares views of the test scene with what an ideal pinhole camera would see of it.
#include "Dewarper.h"
#include "IdealView.h"

#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>
#include <vector>

namespace lumofe {
namespace {

using test::dot;
using test::facingAt;
using test::kRadius;
using test::kWalls;
using test::mirrored;
using test::upsideDown;

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

Image ideal(Mount mount, Vec3 facing, Size size, const FE_ViewPosition& position, double scale = 1)
{
    return test::idealView(mount, facing, size, position, test::kSinglePlane, scale);
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
