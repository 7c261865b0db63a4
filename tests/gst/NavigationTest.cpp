#include "Navigation.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

constexpr Size kOutput{800, 600};

Settings settingsOf(View view, Mount mount = Mount::ceiling)
{
    Settings settings;
    settings.view = view;
    settings.mount = mount;
    return settings;
}

// Drags from a place of the output by so many pixels, in steps.
void drag(Settings& settings, double x, double y, double right, double down, int steps = 1)
{
    Navigation mouse;
    mouse.press(settings, kOutput, x, y, 0);
    for (int i = 1; i <= steps; ++i)
        mouse.move(settings, kOutput, x + right * i / steps, y + down * i / steps);
    mouse.release();
}

TEST(Navigation, DragsSteerTheViewUnderThePointer)
{
    struct Place {
        View view;
        double x, y;
        int number;
    };
    for (const Place& place : {Place{View::single, 10, 590, 1}, Place{View::quad, 10, 10, 1},
                               Place{View::quad, 790, 10, 2}, Place{View::quad, 10, 590, 3},
                               Place{View::quad, 790, 590, 4}, Place{View::ptz360, 10, 380, 1},
                               Place{View::ptz360, 790, 10, 2}, Place{View::ptz360, 10, 400, 0}}) {
        const Settings before = settingsOf(place.view);
        Settings settings = before;
        drag(settings, place.x, place.y, 20, 0);
        for (int number = 1; number <= kMaxViews; ++number)
            EXPECT_EQ(settings.aim(number).pan != before.aim(number).pan, number == place.number)
                << layoutRule(place.view).name << " view " << number;
        EXPECT_EQ(settings.set, before.set);
    }
}

// What is seen further left comes into view: see LumofeElementTest for the pictures.
TEST(Navigation, WhatIsGrabbedFollowsThePointer)
{
    Settings ceiling = settingsOf(View::single);
    drag(ceiling, 100, 100, 40, 30);
    EXPECT_NEAR(ceiling.aim(1).pan, -12, 1e-9); // a twentieth of 240 degrees
    EXPECT_NEAR(ceiling.aim(1).tilt, 82, 1e-9);

    Settings floor = settingsOf(View::single, Mount::floor);
    drag(floor, 100, 100, 40, 30);
    EXPECT_NEAR(floor.aim(1).pan, 12, 1e-9);
    EXPECT_NEAR(floor.aim(1).tilt, -58, 1e-9);

    Settings wall = settingsOf(View::single, Mount::wall);
    drag(wall, 100, 100, 40, 30);
    EXPECT_NEAR(wall.aim(1).pan, -12, 1e-9);
    EXPECT_NEAR(wall.aim(1).tilt, -12, 1e-9);
}

TEST(Navigation, ZoomedInTheViewMovesLess)
{
    Settings settings = settingsOf(View::quad);
    settings.now.views[0].zoom = 100;
    drag(settings, 100, 100, 40, 0);
    EXPECT_NEAR(settings.aim(1).pan, -2, 1e-9); // a tenth of the view's 20 degrees
}

TEST(Navigation, ManySmallMovesAddUpToOne)
{
    Settings once = settingsOf(View::single), often = once;
    drag(once, 100, 100, 33, -21);
    drag(often, 100, 100, 33, -21, 100);
    EXPECT_NEAR(often.aim(1).pan, once.aim(1).pan, 1e-9);
    EXPECT_NEAR(often.aim(1).tilt, once.aim(1).tilt, 1e-9);
}

TEST(Navigation, DragsBeginWhereTheLastFrameStopped)
{
    Settings settings = settingsOf(View::quad, Mount::wall);
    settings.now.views[1].pan = 60;
    settings.now.views[0].pan = -60;
    Navigation mouse;
    mouse.limitPan({20, 30, 40, 50});
    mouse.press(settings, kOutput, 600, 100, 0);
    mouse.move(settings, kOutput, 620, 100);
    EXPECT_NEAR(settings.aim(2).pan, 30 - 12, 1e-9);
    mouse.press(settings, kOutput, 100, 100, 0);
    mouse.move(settings, kOutput, 80, 100);
    EXPECT_NEAR(settings.aim(1).pan, -20 + 12, 1e-9);
}

TEST(Navigation, PanGoesRoundAndTiltEnds)
{
    Settings settings = settingsOf(View::single);
    for (int i = 0; i < 20; ++i)
        drag(settings, 400, 300, 300, 300);
    EXPECT_NEAR(std::remainder(settings.aim(1).pan, 360), 0, 1e-9); // 20 times -90 degrees
    EXPECT_LE(std::abs(settings.aim(1).pan), 360);
    EXPECT_EQ(settings.aim(1).tilt, 90);
    drag(settings, 400, 300, 0, -25);
    EXPECT_NEAR(settings.aim(1).tilt, 80, 1e-9) << "comes back at once";

    Settings wall = settingsOf(View::single, Mount::wall);
    drag(wall, 700, 300, -600, 0);
    EXPECT_EQ(wall.aim(1).pan, 90);
}

TEST(Navigation, NothingMovesWithoutTheButton)
{
    Settings settings = settingsOf(View::single);
    const Settings before = settings;
    Navigation mouse;
    mouse.move(settings, kOutput, 10, 10);
    mouse.press(settings, kOutput, 20, 20, 0);
    mouse.release();
    mouse.move(settings, kOutput, 200, 200);
    EXPECT_EQ(settings, before);
}

TEST(Navigation, TheWheelZoomsTheViewUnderThePointer)
{
    Settings settings = settingsOf(View::quad);
    Navigation::scroll(settings, kOutput, 790, 10, 2);
    EXPECT_EQ(settings.aim(2).zoom, 10);
    EXPECT_EQ(settings.aim(1).zoom, 0);
    Navigation::scroll(settings, kOutput, 790, 10, -3);
    EXPECT_EQ(settings.aim(2).zoom, 0);
    Navigation::scroll(settings, kOutput, 790, 10, 100);
    EXPECT_EQ(settings.aim(2).zoom, 100);

    Settings panorama = settingsOf(View::half180);
    const Settings before = panorama;
    Navigation::scroll(panorama, kOutput, 10, 10, 1);
    EXPECT_EQ(panorama, before);
}

TEST(Navigation, ADoubleClickGoesBackToWhatTheApplicationSet)
{
    Settings settings = settingsOf(View::quad);
    settings.set.views[1].pan = settings.now.views[1].pan = 33;
    const Settings before = settings;
    drag(settings, 500, 100, 50, 50);
    drag(settings, 100, 100, 50, 50);
    Navigation mouse;
    mouse.press(settings, kOutput, 500, 100, 1'000'000);
    mouse.release();
    mouse.press(settings, kOutput, 503, 99, 1'000'000 + Navigation::kDoubleClick);
    EXPECT_EQ(settings.now.views[1], before.now.views[1]);
    EXPECT_NE(settings.now.views[0], before.now.views[0]) << "of the other view";
    mouse.move(settings, kOutput, 600, 200);
    EXPECT_EQ(settings.now.views[1], before.now.views[1]) << "does not drag";
}

TEST(Navigation, SlowOrDistantClicksAreNoDoubleClick)
{
    Settings settings = settingsOf(View::single);
    drag(settings, 100, 100, 50, 0);
    const Settings moved = settings;
    Navigation mouse;
    mouse.press(settings, kOutput, 100, 100, 0);
    mouse.press(settings, kOutput, 100, 100, Navigation::kDoubleClick + 1);
    mouse.press(settings, kOutput, 110, 100, Navigation::kDoubleClick + 2);
    EXPECT_EQ(settings, moved);
}

TEST(Navigation, TheThirdClickBeginsAnew)
{
    Settings settings = settingsOf(View::single);
    Navigation mouse;
    for (int time : {0, 1, 2})
        mouse.press(settings, kOutput, 100, 100, time);
    mouse.move(settings, kOutput, 140, 100);
    EXPECT_NEAR(settings.aim(1).pan, -12, 1e-9);
}

TEST(Navigation, ThePanoramaTurnsWithThePointer)
{
    for (Mount mount : {Mount::ceiling, Mount::floor}) {
        Settings settings = settingsOf(View::half180, mount);
        settings.set.panoramaOffset = settings.now.panoramaOffset = 10;
        drag(settings, 400, 100, 200, 0); // a quarter of half a turn
        EXPECT_EQ(settings.panoramaOffset(), mount == Mount::floor ? 55 : -35);
        Navigation mouse;
        mouse.press(settings, kOutput, 1, 1, 0);
        mouse.press(settings, kOutput, 1, 1, 1);
        EXPECT_EQ(settings.panoramaOffset(), 10);
    }
}

TEST(Navigation, ThePanoramaOfTheWallStays)
{
    Settings settings = settingsOf(View::half180, Mount::wall);
    const Settings before = settings;
    drag(settings, 400, 100, 200, 50);
    EXPECT_EQ(settings, before);
}

TEST(Navigation, ALayoutThatChangesDuringADragIsSafe)
{
    Settings settings = settingsOf(View::quad);
    Navigation mouse;
    mouse.press(settings, kOutput, 790, 590, 0);
    settings.view = View::single;
    const Settings before = settings;
    mouse.move(settings, kOutput, 700, 500);
    EXPECT_EQ(settings, before);
}

} // namespace
} // namespace lumofe
