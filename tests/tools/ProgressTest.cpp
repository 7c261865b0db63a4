#include "video/Progress.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(Progress, TellsRateAndTimeLeft)
{
    EXPECT_EQ(progressText(50, 250, 2), "50 of 250 frames, 25.0 fps, 8 s left");
    EXPECT_EQ(progressText(50, 251, 2), "50 of 251 frames, 25.0 fps, 9 s left");
    EXPECT_EQ(progressText(250, 250, 10), "250 of 250 frames, 25.0 fps, 0 s left");
}

TEST(Progress, LeavesOutWhatIsUnknown)
{
    EXPECT_EQ(progressText(50, 0, 2), "50 frames, 25.0 fps");
    EXPECT_EQ(progressText(51, 50, 2), "51 frames, 25.5 fps");
    EXPECT_EQ(progressText(0, 50, 0), "0 of 50 frames, 0.0 fps");
}

} // namespace
} // namespace lumofe
