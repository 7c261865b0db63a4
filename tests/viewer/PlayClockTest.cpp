#include "PlayClock.h"

#include <gtest/gtest.h>

using lumofe::viewer::PlayClock;

TEST(PlayClock, TheFirstFrameIsDueAtOnce)
{
    PlayClock clock(25);
    EXPECT_EQ(clock.next(), 0);
    EXPECT_EQ(clock.due(100), 1);
    EXPECT_EQ(clock.due(100), 0);
    EXPECT_DOUBLE_EQ(clock.next(), 100.04);
}

TEST(PlayClock, KeepsTheRateThroughLateCalls)
{
    PlayClock clock(25);
    int frames = 0;
    for (double now = 0; now < 10; now += 0.013)
        frames += clock.due(now);
    EXPECT_EQ(frames, 250);
}

TEST(PlayClock, CountsTheFramesThatWereMissed)
{
    PlayClock clock(10);
    clock.due(0);
    EXPECT_EQ(clock.due(0.35), 3);
    EXPECT_EQ(clock.due(0.39), 0);
    EXPECT_EQ(clock.due(0.41), 1);
}

TEST(PlayClock, StartsAnewAfterALongHalt)
{
    PlayClock clock(10);
    clock.due(0);
    EXPECT_EQ(clock.due(5), 1);
    EXPECT_EQ(clock.due(5.05), 0);
    EXPECT_EQ(clock.due(5.11), 1);
}

TEST(PlayClock, RestartMakesAFrameDueAtOnce)
{
    PlayClock clock(10);
    clock.due(0);
    clock.restart();
    EXPECT_EQ(clock.due(0.01), 1);
}
