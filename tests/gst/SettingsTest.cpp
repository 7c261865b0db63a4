#include "Settings.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(Settings, ViewsLookWhereTheLayoutHasThemUntilTheyAreSteered)
{
    Settings settings;
    settings.view = View::quad;
    settings.now.views[2].tilt = 40;
    const std::vector<Aim> aims = settings.aims();
    ASSERT_EQ(aims.size(), 4u);
    for (int number = 1; number <= 4; ++number) {
        const Aim usual = defaultAim(View::quad, Mount::ceiling, number);
        const Aim& aim = aims[std::size_t(number) - 1];
        EXPECT_EQ(aim.pan, usual.pan);
        EXPECT_EQ(aim.tilt, number == 3 ? 40 : usual.tilt);
        EXPECT_EQ(aim.zoom, usual.zoom);
    }
    settings.view = View::half180;
    EXPECT_TRUE(settings.aims().empty());
}

TEST(Settings, AimsStayInTheMountingsRange)
{
    Settings settings;
    settings.now.views[0] = {200, 60, 50};
    EXPECT_EQ(settings.aim(1).pan, 200);
    settings.mount = Mount::floor;
    EXPECT_EQ(settings.aim(1).tilt, 0);
    settings.mount = Mount::wall;
    EXPECT_EQ(settings.aim(1).pan, 90);
    EXPECT_EQ(settings.aim(1).tilt, 60);
}

TEST(Settings, TheCircleIsTheLargestCentredOneUnlessItIsGiven)
{
    Settings settings;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{320, 240, 240}));
    settings.circleY = 7;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{320, 7, 240}));
    settings.circleX = 5;
    settings.circleRadius = 9;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{5, 7, 9}));
}

TEST(Settings, TheOffsetIsRoundedToWholeDegrees)
{
    Settings settings;
    settings.now.panoramaOffset = -44.6;
    EXPECT_EQ(settings.panoramaOffset(), -45);
}

} // namespace
} // namespace lumofe
