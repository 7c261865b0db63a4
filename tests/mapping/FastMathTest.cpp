#include "FEDSP.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(FastInvSqrt, IsOneNewtonStepFromTheBitEstimate)
{
    // 0x5F3759DF - (0x3F800000 >> 1) is 0.966215252876...; one step gives 0.998307168...
    EXPECT_FLOAT_EQ(FastInvSqrt(1.0f), 0.99830717f);
    EXPECT_FLOAT_EQ(FastInvSqrt(4.0f), 0.49915358f);
}

TEST(FastInvSqrt, IsAtMostAFewThousandthsTooSmall)
{
    for (float x = 1e-6f; x < 1e9f; x *= 1.37f) {
        const double relative = double(FastInvSqrt(x)) * std::sqrt(double(x)) - 1;
        EXPECT_LE(relative, 1e-6) << x;
        EXPECT_GE(relative, -0.00176) << x;
    }
}

TEST(FastInvSqrt, IsMinusInfinityAtInfinity)
{
    EXPECT_EQ(FastInvSqrt(std::numeric_limits<float>::infinity()),
              -std::numeric_limits<float>::infinity());
}

TEST(FastAtan, IsCloseToTheArctangent)
{
    for (double t = 0; t < 1000; t = t * 1.1 + 0.01)
        EXPECT_NEAR(FastAtan(t), std::atan(t), 0.0016) << t;
    EXPECT_DOUBLE_EQ(FastAtan(0), 0);
    EXPECT_DOUBLE_EQ(FastAtan(1), 0.7853981633974483);
    EXPECT_DOUBLE_EQ(FastAtan(0.5), 0.5 * 0.7853981633974483 + 0.25 * (0.2447 + 0.0663 * 0.5));
    EXPECT_DOUBLE_EQ(FastAtan(2), 1.5707963267948966 - FastAtan(0.5));
}

// Kept: below -1 the result is that of the positive branch.
TEST(FastAtan, IsWrongBelowMinusOne)
{
    EXPECT_DOUBLE_EQ(FastAtan(-2), 1.5707963267948966 + FastAtan(0.5));
}
