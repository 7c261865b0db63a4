// Compares the parts of each layout's frame with what ideal cameras in the test scene would see.
#include "Dewarper.h"
#include "IdealView.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace lumofe {
namespace {

using test::cropped;
using test::facingAt;
using test::kRadius;
using test::kWalls;
using test::mirrored;
using test::upsideDown;

DewarperSetup setupFor(View view, Mount mount, Size size)
{
    DewarperSetup setup;
    setup.input = {2 * kRadius, 2 * kRadius};
    setup.output = size;
    setup.circle = {kRadius, kRadius, kRadius};
    setup.view = view;
    setup.mount = mount;
    return setup;
}

struct Rendered {
    Image picture;
    FE_CurPosParams position;
};

Rendered render(const DewarperSetup& setup, const std::vector<Aim>& aims, int frames = 2)
{
    Dewarper dewarper(setup);
    dewarper.aim(aims);
    Rendered result{};
    for (int i = 0; i < frames; ++i)
        result.picture = dewarper.dewarp(test::scene(setup.mount));
    IFishEye().LmFEGetPosition(0, &result.position);
    return result;
}

std::vector<Aim> defaultAims(View view, Mount mount)
{
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(view).views; ++number)
        aims.push_back(defaultAim(view, mount, number));
    return aims;
}

// The right-hand views begin one pixel late and the left-hand ones lose their first column, so all
// are compared without a column.
Image viewOf(const Image& frame, int column, int row, Size view)
{
    return cropped(frame, column * view.width + 1, row * view.height,
                   {view.width - 1, view.height});
}

Image likeView(const Image& ideal, int column)
{
    return cropped(ideal, column == 0 ? 1 : 0, 0, {ideal.size.width - 1, ideal.size.height});
}

// Measured: 24.2 to 32.4 dB for the right picture, at most 17.8 dB for any other.
constexpr double kAlike = 24, kDifferent = 20;

void expectAlike(const Image& seen, const Image& ideal)
{
    EXPECT_GT(test::psnr(seen, ideal), kAlike);
    EXPECT_LT(test::psnr(seen, mirrored(ideal)), kDifferent);
    EXPECT_LT(test::psnr(seen, upsideDown(ideal)), kDifferent);
    EXPECT_LT(test::psnr(seen, upsideDown(mirrored(ideal))), kDifferent);
}

constexpr Size kQuadSize{640, 480}, kQuadView{320, 240};

class AxisMount : public testing::TestWithParam<Mount> {};
INSTANTIATE_TEST_SUITE_P(LayoutScene, AxisMount, testing::Values(Mount::ceiling, Mount::floor),
                         [](const auto& each) { return std::string(mountRule(each.param).name); });

TEST_P(AxisMount, QuadLooksAtNorthEastSouthWestInOrder)
{
    const Mount mount = GetParam();
    const Rendered quad =
        render(setupFor(View::quad, mount, kQuadSize), defaultAims(View::quad, mount));
    for (int i = 0; i < 4; ++i) {
        const Image seen = viewOf(quad.picture, i % 2, i / 2, kQuadView);
        for (int wall = 0; wall < 4; ++wall) {
            SCOPED_TRACE(testing::Message() << "view " << i + 1 << ", wall " << wall);
            const Image ideal =
                likeView(test::idealView(mount, kWalls[wall], kQuadView, quad.position.view[i],
                                         test::kSubViewPlane),
                         i % 2);
            if (wall == i)
                expectAlike(seen, ideal);
            else
                EXPECT_LT(test::psnr(seen, ideal), kDifferent);
        }
    }
}

// Every view by itself: its pan counts clockwise from the picture's top, whatever the layout adds.
TEST_P(AxisMount, PansOfQuadAnd360CountFromThePicturesTop)
{
    const Mount mount = GetParam();
    const double tilt = mount == Mount::ceiling ? 60 : -60;
    const double clockwise = mount == Mount::ceiling ? 1 : -1; // of the room, as the camera sees it
    const struct {
        View view;
        Size size, viewSize;
    } kCases[] = {{View::quad, kQuadSize, kQuadView}, {View::ptz360, {640, 372}, {320, 240}}};
    for (const auto& c : kCases) {
        std::vector<Aim> aims;
        for (int number = 1; number <= layoutRule(c.view).views; ++number)
            aims.push_back({25.0 + 70 * number - 180, tilt, 0});
        const Rendered frame = render(setupFor(c.view, mount, c.size), aims);
        for (int i = 0; i < int(aims.size()); ++i) {
            const double pan = aims[std::size_t(i)].pan;
            SCOPED_TRACE(testing::Message() << layoutRule(c.view).name << " view " << i + 1);
            const Image seen = viewOf(frame.picture, i % 2, i / 2, c.viewSize);
            const auto likeness = [&](double degrees) {
                return test::psnr(
                    seen, likeView(test::idealView(mount, facingAt(clockwise * degrees), c.viewSize,
                                                   frame.position.view[i], test::kSubViewPlane),
                                   i % 2));
            };
            const double right = likeness(pan);
            EXPECT_GT(right, kAlike);
            EXPECT_GT(right, likeness(pan + 2) + 3);
            EXPECT_GT(right, likeness(pan - 2) + 3);
        }
    }
}

TEST_P(AxisMount, Default360ViewsLookNorthAndSouth)
{
    const Mount mount = GetParam();
    const Rendered frame =
        render(setupFor(View::ptz360, mount, {640, 372}), defaultAims(View::ptz360, mount));
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        expectAlike(viewOf(frame.picture, i, 0, {320, 240}),
                    likeView(test::idealView(mount, kWalls[2 * i], {320, 240},
                                             frame.position.view[i], test::kSubViewPlane),
                             i));
    }
}

// Without the rim, where the resize leaves black lines.
constexpr int kRim = 8;

Image inner(const Image& image)
{
    return cropped(image, kRim, kRim, {image.size.width - 2 * kRim, image.size.height - 2 * kRim});
}

// The unwrap shows the outer half of the circle; the rim of the ceiling's is up, and turning it
// over moves it by a row.
test::Unwrap outerHalf(Mount mount, double azimuth, double span, double lift)
{
    if (mount == Mount::ceiling) return {azimuth, span, kRadius, kRadius / 2.0, lift + 1};
    return {azimuth, span, kRadius / 2.0, kRadius, lift};
}

void expectUnwrap(const Image& seen, Mount mount, double azimuth, double span, double lift)
{
    const auto ideal = [&](double from) {
        return inner(test::idealUnwrap(mount, seen.size, outerHalf(mount, from, span, lift)));
    };
    expectAlike(inner(seen), ideal(azimuth));
    for (double turn : {90.0, 180.0, 270.0})
        EXPECT_LT(test::psnr(inner(seen), ideal(azimuth + turn)), kDifferent);
}

TEST_P(AxisMount, StripOf360ShowsTheWallsInRoomOrder)
{
    const Mount mount = GetParam();
    constexpr Size kSize{640, 372};
    constexpr int kTop = 240;
    const Rendered frame =
        render(setupFor(View::ptz360, mount, kSize), defaultAims(View::ptz360, mount));
    const Image strip = cropped(frame.picture, 0, kTop, {kSize.width, kSize.height - kTop});
    // The ceiling camera's begins with half of the east wall, the floor camera's with half of the
    // west wall; both run to the right like a person who turns to the right.
    expectUnwrap(strip, mount, mount == Mount::ceiling ? 90 : 270, 360, 0);
}

void expectHalves(Mount mount, int offset, double upper, double lower)
{
    SCOPED_TRACE(offset);
    DewarperSetup setup = setupFor(View::half180, mount, {640, 360});
    setup.panoOffset = offset;
    const Image picture = render(setup, {}).picture;
    // The half that the library draws below the other begins one row late.
    const bool ceiling = mount == Mount::ceiling;
    expectUnwrap(cropped(picture, 0, 0, {640, 180}), mount, upper, 180, ceiling ? 1 : 0);
    expectUnwrap(cropped(picture, 0, 180, {640, 180}), mount, lower, 180, ceiling ? 0 : -1);
}

TEST_P(AxisMount, HalvesOf180ShowTheNamedWallsUpright)
{
    const Mount mount = GetParam();
    if (mount == Mount::ceiling) {
        expectHalves(mount, 0, 270, 90); // west, north, east above east, south, west
        expectHalves(mount, 45, 315, 135);
        expectHalves(mount, -90, 180, 0);
    } else {
        expectHalves(mount, 0, 90, 270);
        expectHalves(mount, 45, 45, 225);
        expectHalves(mount, -90, 180, 0);
    }
}

TEST(LayoutScene, NoUprightLeavesTheCeilings180UpsideDown)
{
    DewarperSetup setup = setupFor(View::half180, Mount::ceiling, {640, 360});
    const Image turned = render(setup, {}).picture;
    setup.upright = false;
    EXPECT_EQ(render(setup, {}).picture.bytes, upsideDown(turned).bytes);
    for (Mount mount : {Mount::wall, Mount::floor}) {
        DewarperSetup other = setupFor(View::half180, mount, {640, 360});
        const Image usual = render(other, {}).picture;
        other.upright = false;
        EXPECT_EQ(render(other, {}).picture.bytes, usual.bytes);
    }
}

TEST(LayoutScene, WallViewsAreUprightAndAlike)
{
    for (View view : {View::quad, View::ptz360}) {
        const Size size = view == View::quad ? kQuadSize : Size{640, 372};
        const std::size_t views = std::size_t(layoutRule(view).views);
        const Rendered frame =
            render(setupFor(view, Mount::wall, size), std::vector<Aim>(views, Aim{0, 0, 0}));
        for (int i = 0; i < int(views); ++i) {
            SCOPED_TRACE(testing::Message() << layoutRule(view).name << " view " << i + 1);
            expectAlike(viewOf(frame.picture, i % 2, i / 2, kQuadView),
                        likeView(test::idealView(Mount::wall, kWalls[0], kQuadView,
                                                 frame.position.view[i], test::kSubViewPlane),
                                 i % 2));
        }
    }
}

TEST(LayoutScene, WallPanoramasAreUpright)
{
    const Image strip = render(setupFor(View::ptz360, Mount::wall, {640, 372}),
                               defaultAims(View::ptz360, Mount::wall))
                            .picture;
    // Rows 1/8 to 7/8 of a table that spans 0.85 of the circle's height.
    expectAlike(inner(cropped(strip, 0, 240, {640, 132})),
                inner(test::idealWallPanorama({640, 132}, kRadius * (1 - 0.75 * 0.85),
                                              kRadius * (1 + 0.75 * 0.85))));

    const Image half = render(setupFor(View::half180, Mount::wall, {640, 480}), {}).picture;
    expectAlike(inner(cropped(half, 0, 120, {640, 240})),
                inner(test::idealWallPanorama({640, 240}, kRadius * (1 - 0.5 * 0.85),
                                              kRadius * (1 + 0.5 * 0.85))));
}

// Share of the frame that is mostly of the colour channel c, and its mean column.
double middleOf(const Image& image, int c)
{
    double sum = 0, count = 0;
    for (int y = 0; y < image.size.height; ++y)
        for (int x = 0; x < image.size.width; ++x) {
            const std::uint8_t* p = image.pixel(x, y);
            if (p[c] < 1.5 * p[(c + 2) % 3] || p[c] < 1.2 * p[(c + 1) % 3]) continue;
            sum += x;
            ++count;
        }
    return sum / count;
}

// The blue north wall moves against the view.
TEST(LayoutScene, EveryWallViewTurnsTheNamedWay)
{
    for (View view : {View::quad, View::ptz360}) {
        const Size size = view == View::quad ? kQuadSize : Size{640, 372};
        const int views = layoutRule(view).views;
        for (int i = 0; i < views; ++i) {
            SCOPED_TRACE(testing::Message() << layoutRule(view).name << " view " << i + 1);
            const auto wallAt = [&](double pan) {
                std::vector<Aim> aims(std::size_t(views), Aim{0, 0, 50});
                aims[std::size_t(i)].pan = pan;
                const Rendered frame = render(setupFor(view, Mount::wall, size), aims);
                EXPECT_EQ(frame.position.view[i].nPan, pan * 4);
                EXPECT_EQ(frame.position.view[i].nZoom, 27);
                return middleOf(viewOf(frame.picture, i % 2, i / 2, kQuadView), 2);
            };
            const double ahead = wallAt(0);
            EXPECT_LT(wallAt(15), ahead - 10);
            EXPECT_GT(wallAt(-15), ahead + 10);
        }
    }
}

TEST(LayoutScene, EveryViewTakesItsOwnZoom)
{
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        const std::vector<Aim> aims{{0, 0, 0}, {0, 0, 25}, {0, 0, 50}, {0, 0, 100}};
        const Rendered frame = render(setupFor(View::quad, mount, kQuadSize), aims);
        const int low = mount == Mount::wall ? 10 : 0;
        // Truncated, as absolute zooms are.
        const int expected[] = {low, low == 0 ? 11 : 18, low == 0 ? 22 : 27, 44};
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(frame.position.view[i].nZoom, expected[i]) << mountRule(mount).name << i;
    }
}

TEST(LayoutScene, FramesOfAllLayoutsStayTheSameUntilTheNextAim)
{
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor})
        for (View view : {View::quad, View::ptz360, View::half180}) {
            const DewarperSetup setup =
                setupFor(view, mount, defaultOutputSize(view, mount, {640, 480}));
            const std::vector<Aim> aims = defaultAims(view, mount);
            const Image first = render(setup, aims, 1).picture;
            EXPECT_EQ(first.bytes, render(setup, aims, 3).picture.bytes)
                << layoutRule(view).name << mountRule(mount).name;
        }
}

TEST(LayoutScene, PanAloneTurnsA360ViewBetweenFrames)
{
    const DewarperSetup setup = setupFor(View::ptz360, Mount::ceiling, {640, 372});
    const std::vector<Aim> before{{0, 60, 0}, {90, 60, 0}}, after{{0, 60, 0}, {180, 60, 0}};
    const Image direct = render(setup, after).picture;
    Dewarper dewarper(setup);
    dewarper.aim(before);
    EXPECT_NE(dewarper.dewarp(test::scene(Mount::ceiling)).bytes, direct.bytes);
    dewarper.aim(after);
    EXPECT_EQ(dewarper.dewarp(test::scene(Mount::ceiling)).bytes, direct.bytes);
}

} // namespace
} // namespace lumofe
