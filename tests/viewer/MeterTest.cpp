#include "Meter.h"

#include <gtest/gtest.h>

using lumofe::viewer::Meter;

TEST(Meter, TellsRateAndTimeTwiceASecond)
{
    Meter meter;
    EXPECT_FALSE(meter.shown(0));
    for (int i = 1; i <= 10; ++i) {
        meter.dewarped(i % 2 == 0 ? 0.004 : 0.006);
        EXPECT_EQ(meter.shown(i * 0.05), i == 10);
    }
    EXPECT_NEAR(meter.measured().rate, 20, 1e-9);
    EXPECT_NEAR(meter.measured().dewarping, 5, 1e-9);
}

TEST(Meter, TellsTheFirstPicturesTimeAtOnce)
{
    Meter meter;
    meter.dewarped(0.003);
    EXPECT_NEAR(meter.measured().dewarping, 3, 1e-9);
}

TEST(Meter, TheRateFallsToNothingWhenNoMorePicturesCome)
{
    Meter meter;
    EXPECT_FALSE(meter.outdated(9));
    meter.shown(10);
    for (int i = 1; i <= 5; ++i) {
        meter.dewarped(0.004);
        meter.shown(10 + i * 0.125);
    }
    EXPECT_NEAR(meter.measured().rate, 8, 1e-9);
    EXPECT_FALSE(meter.outdated(10.9));
    EXPECT_TRUE(meter.outdated(11));
    meter.shown(11);
    EXPECT_GT(meter.measured().rate, 0); // the fifth picture
    EXPECT_TRUE(meter.outdated(11.5));
    meter.shown(11.5);
    EXPECT_EQ(meter.measured().rate, 0);
    EXPECT_FALSE(meter.outdated(99));
}

TEST(Meter, MeasuresFromTheFirstInputToItsPicture)
{
    Meter meter;
    meter.shown(1);
    EXPECT_FALSE(meter.measured().response);
    meter.input(2);
    meter.input(2.01);
    meter.shown(2.03);
    EXPECT_NEAR(*meter.measured().response, 30, 1e-9);
    meter.shown(3); // not an answer to anything
    EXPECT_NEAR(*meter.measured().response, 30, 1e-9);
}
