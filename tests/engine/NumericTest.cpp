#include "engine/Numeric.h"

#include <gtest/gtest.h>

using namespace fe;

TEST(Numeric, TruncatesTowardZeroAndSaturates)
{
    EXPECT_EQ(trunc32(2.9), 2);
    EXPECT_EQ(trunc32(-2.9), -2);
    EXPECT_EQ(trunc32(2147483646.9), 2147483646);
    EXPECT_EQ(trunc32(1e10), 2147483647);
    EXPECT_EQ(trunc32(-1e10), -2147483647 - 1);
    EXPECT_EQ(trunc32(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(trunc32(std::numeric_limits<double>::infinity()), 2147483647);
    EXPECT_EQ(saturate32(-3000000000), -2147483647 - 1);
    EXPECT_EQ(saturate32(3000000000), 2147483647);
    EXPECT_EQ(saturate32(-5), -5);
}

TEST(Numeric, SumsWrap)
{
    EXPECT_EQ(wrappingSum(2147483647, 1), -2147483647 - 1);
    EXPECT_EQ(wrappingSum(1, -2, 3), 2);
}

TEST(Numeric, AnglesAreMovedIntoOneTurn)
{
    EXPECT_EQ(wrapAngle(0, 90), 90);
    EXPECT_EQ(wrapAngle(1400, 90), 50);
    EXPECT_EQ(wrapAngle(-100, 90), 1430);
    EXPECT_EQ(wrapAngle(2147483647, 90), (2147483647 % 1440 + 90) % 1440);
    EXPECT_EQ(wrapAngle(-2147483647 - 1, 0), 1440 - 2147483648 % 1440);
}
