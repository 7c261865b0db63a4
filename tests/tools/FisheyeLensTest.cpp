#include "scene/FisheyeLens.h"

#include "ToolTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lumofe {
namespace {

TEST(FisheyeLens, AngleGrowsWithTheDistanceFromTheAxis)
{
    for (int size : {321, 640, 1280}) {
        const Lens lens = fisheyeLens(size);
        const double centre = size / 2;
        for (double part : {0.0, 0.1, 0.5, 0.999}) {
            const double distance = part * size / 2.0;
            for (double turn : {0.0, 1.0, 2.0, 4.0}) {
                const auto d =
                    lens(centre + distance * std::cos(turn), centre + distance * std::sin(turn));
                ASSERT_TRUE(d);
                const double theta = std::atan2(std::hypot(d->x, d->y), d->z);
                EXPECT_NEAR(theta * 180 / std::numbers::pi, part * 80 * 1.115007, 1e-9);
                EXPECT_NEAR(d->x * std::sin(turn), d->y * std::cos(turn), 1e-12);
            }
        }
        EXPECT_FALSE(lens(centre + size / 2.0 + 0.01, centre));
        EXPECT_FALSE(lens(0, 0));
    }
}

TEST(FisheyeLens, NorthIsAtTheTopAndTheCornersAreBlack)
{
    const auto strongest = [](const std::uint8_t* p) {
        return p[0] > p[2] && p[0] > p[1] ? 'r' : p[1] > p[0] && p[1] > p[2] ? 'g' : 'b';
    };
    // A point of each wall next to its letter.
    const Image& ceiling = test::scene(Mount::ceiling);
    EXPECT_EQ(strongest(ceiling.pixel(640 + 130, 100)), 'b');
    EXPECT_EQ(strongest(ceiling.pixel(1180, 640 + 130)), 'r');
    EXPECT_EQ(strongest(ceiling.pixel(640 - 130, 1180)), 'g');
    const Image& floor = test::scene(Mount::floor);
    EXPECT_EQ(strongest(floor.pixel(640 + 120, 100)), 'b');
    EXPECT_EQ(strongest(floor.pixel(100, 640 - 120)), 'r');
    EXPECT_EQ(strongest(floor.pixel(640 - 110, 1180)), 'g');
    for (Mount mount : {Mount::ceiling, Mount::floor, Mount::wall})
        for (int x : {0, 1279})
            for (int y : {0, 1279})
                EXPECT_EQ(test::scene(mount).pixel(x, y)[0], 0);
}

} // namespace
} // namespace lumofe
