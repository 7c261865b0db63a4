#include "camera/Tour.h"

#include "ToolTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace lumofe {
namespace {

Preset single(const std::string& name, const Aim& aim)
{
    return {name, View::single, {{aim}, 0}};
}

// Stays 4 seconds at pan 350, glides 2 seconds to pan 30, stays 1 second, glides back in 3.
CameraFile camera(Mount mount = Mount::ceiling)
{
    CameraFile camera;
    camera.mount = mount;
    camera.presets = {single("a", {350, 40, 0, 10}), single("b", {30, 60, 50, 20})};
    camera.tour.stops = {{"a", 4, 2}, {"b", 1, 3}};
    return camera;
}

Aim aimAt(const CameraFile& camera, double seconds)
{
    const Position position = tourAt(camera, seconds);
    EXPECT_EQ(position.views.size(), 1u);
    return position.views.at(0);
}

TEST(Tour, StaysThenGlidesTheShorterWayRound)
{
    const CameraFile c = camera();
    EXPECT_EQ(tourSeconds(c.tour), 10);
    for (double seconds : {0.0, 1.0, 3.999})
        EXPECT_EQ(aimAt(c, seconds).pan, 350) << seconds;
    const Aim half = aimAt(c, 5);
    EXPECT_DOUBLE_EQ(half.pan, 10);
    EXPECT_DOUBLE_EQ(half.tilt, 50);
    EXPECT_DOUBLE_EQ(half.zoom, 25);
    EXPECT_EQ(half.offset, 15);
    EXPECT_EQ(aimAt(c, 6).pan, 30);
    EXPECT_EQ(aimAt(c, 6.5).tilt, 60);
    EXPECT_DOUBLE_EQ(aimAt(c, 8.5).pan, 10);
    EXPECT_GE(aimAt(c, 4.001).pan, 350);
}

TEST(Tour, GlidesBeginAndEndGently)
{
    const CameraFile c = camera();
    const double begin = aimAt(c, 4.1).tilt - 40,
                 middle = aimAt(c, 5.05).tilt - aimAt(c, 4.95).tilt, end = 60 - aimAt(c, 5.9).tilt;
    EXPECT_NEAR(begin, end, 1e-9);
    EXPECT_GT(begin, 0);
    EXPECT_LT(begin, middle / 5);
    for (double t = 4; t < 5.9; t += 0.1)
        EXPECT_LT(aimAt(c, t).tilt, aimAt(c, t + 0.1).tilt);
}

TEST(Tour, NothingJumps)
{
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        CameraFile c = camera(mount);
        if (mount == Mount::wall) c.presets[0].position.views[0].pan = -60;
        for (int i = 0; i < 2000; ++i) {
            const Aim a = aimAt(c, i / 100.0), b = aimAt(c, (i + 1) / 100.0);
            EXPECT_LT(std::abs(std::remainder(b.pan - a.pan, 360)), 0.75) << i;
            EXPECT_LT(std::abs(b.tilt - a.tilt), 0.2) << i;
        }
    }
}

TEST(Tour, PanOfTheWallGoesStraight)
{
    CameraFile c = camera(Mount::wall);
    c.presets = {single("a", {-80, 0, 0}), single("b", {80, 0, 0})};
    EXPECT_NEAR(aimAt(c, 5).pan, 0, 1e-9);
    EXPECT_LT(aimAt(c, 4.5).pan, -10);
}

TEST(Tour, RepeatsOrStaysAtItsEnd)
{
    CameraFile c = camera();
    EXPECT_EQ(aimAt(c, 10).pan, 350);
    EXPECT_DOUBLE_EQ(aimAt(c, 1005).pan, aimAt(c, 5).pan);
    c.tour.repeat = false;
    EXPECT_EQ(tourSeconds(c.tour), 7);
    EXPECT_DOUBLE_EQ(aimAt(c, 5).pan, 10);
    for (double seconds : {6.5, 8.0, 1e9})
        EXPECT_EQ(aimAt(c, seconds).pan, 30);
}

TEST(Tour, OddTimesAreTheStart)
{
    const CameraFile c = camera();
    for (double seconds : {-1.0, -1e300, std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity()})
        EXPECT_EQ(aimAt(c, seconds).pan, 350) << seconds;
    EXPECT_EQ(tourSeconds({}), 0);
}

TEST(Tour, AGlideOfNoTimeCuts)
{
    CameraFile c = camera();
    c.tour.stops[0].glide = 0;
    EXPECT_EQ(aimAt(c, 3.999).pan, 350);
    EXPECT_EQ(aimAt(c, 4).pan, 30);
}

TEST(Tour, OffsetsGlideOnlyBetweenTwo)
{
    CameraFile c = camera();
    c.presets[1].position.views[0].offset.reset();
    EXPECT_FALSE(aimAt(c, 5).offset);
    EXPECT_EQ(aimAt(c, 1).offset, 10);
}

TEST(Tour, AllViewsAndThePanoramaMove)
{
    CameraFile c;
    c.presets = {{"a", View::ptz360, {{{0, 10, 0}, {0, 20, 0}}, 0}},
                 {"b", View::ptz360, {{{90, 20, 0}, {180, 40, 0}}, 0}},
                 {"c", View::half180, {{}, -170}},
                 {"d", View::half180, {{}, 170}}};
    c.tour.stops = {{"a", 0, 2}, {"b", 1, 1}};
    const Position half = tourAt(c, 1);
    ASSERT_EQ(half.views.size(), 2u);
    EXPECT_DOUBLE_EQ(half.views[0].pan, 45);
    EXPECT_DOUBLE_EQ(half.views[1].tilt, 30);

    c.tour.stops = {{"c", 0, 2}, {"d", 1, 1}};
    EXPECT_EQ(tourAt(c, 1).panoOffset, 180);
    EXPECT_NEAR(tourAt(c, 1.5).panoOffset, 172, 1);
}

// The library's tilt has steps of 2 degrees; the offset moves on between them.
TEST(Tour, OffsetsAreFilledInAndChangeNothingAtTheStops)
{
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        DewarperSetup setup;
        setup.input = {320, 320};
        setup.output = {160, 120};
        setup.circle = {160, 160, 160};
        setup.mount = mount;
        Dewarper dewarper(setup);
        const double up = mount == Mount::floor ? -1 : 1;
        CameraFile plain;
        plain.mount = mount;
        plain.presets = {single("a", {10, 31 * up, 20}), single("b", {50, 72 * up, 60}),
                         single("unused", {1, 2, 3})};
        plain.tour.stops = {{"a", 1, 1}, {"b", 1, 1}, {"a", 1, 1}};
        const CameraFile filled = withOffsets(plain, dewarper);
        const Image input = test::gradient(setup.input);
        for (double seconds : {0.5, 2.5, 4.5}) {
            EXPECT_TRUE(aimAt(filled, seconds).offset);
            dewarper.aim(aimAt(plain, seconds));
            const Image there = dewarper.dewarp(input);
            dewarper.aim(aimAt(filled, seconds));
            EXPECT_EQ(dewarper.dewarp(input).bytes, there.bytes);
        }
        EXPECT_TRUE(aimAt(filled, 1.5).offset);
        EXPECT_FALSE(filled.presets[2].position.views[0].offset);
    }
}

} // namespace
} // namespace lumofe
