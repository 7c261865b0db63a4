#include "calibrate/LumaPlane.h"

#include "media/Drawing.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

LumaPlane meanOfGreys(const std::vector<std::uint8_t>& greys)
{
    LumaStack stack;
    for (const std::uint8_t grey : greys)
        stack.add(filled({3, 2}, {grey, grey, grey}));
    EXPECT_EQ(stack.count(), int(greys.size()));
    EXPECT_EQ(stack.size(), (Size{3, 2}));
    return stack.mean();
}

void expectAll(const LumaPlane& plane, int value)
{
    for (const std::uint16_t v : plane.values)
        EXPECT_EQ(v, value);
}

TEST(LumaPlane, GreysKeepTheirLevel)
{
    for (const int grey : {0, 1, 77, 254, 255})
        expectAll(meanOfGreys({std::uint8_t(grey)}), 256 * grey);
}

TEST(LumaPlane, ColoursWeighAsTheEyeSeesThem)
{
    LumaStack stack;
    Image image = filled({3, 1}, {0, 0, 0});
    for (int x = 0; x < 3; ++x)
        image.pixel(x, 0)[x] = 200;
    stack.add(image);
    const LumaPlane plane = stack.mean();
    EXPECT_NEAR(plane.at(0, 0), 0.299 * 200 * 256, 256);
    EXPECT_NEAR(plane.at(1, 0), 0.587 * 200 * 256, 256);
    EXPECT_NEAR(plane.at(2, 0), 0.114 * 200 * 256, 256);
}

TEST(LumaPlane, TheBrightestOfThreeIsLeftOut)
{
    expectAll(meanOfGreys({10, 31}), 256 * 20 + 128);
    expectAll(meanOfGreys({10, 31, 255}), 256 * 20 + 128);
    expectAll(meanOfGreys({255, 10, 20, 30}), 256 * 20);
}

TEST(LumaPlane, ReducingTakesMeansAndDropsTheRest)
{
    LumaPlane plane({5, 4});
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            plane.at(x, y) = std::uint16_t(100 * x + 1000 * y);
    const LumaPlane half = reduced(plane, 2);
    EXPECT_EQ(half.size, (Size{2, 2}));
    EXPECT_EQ(half.values, (std::vector<std::uint16_t>{550, 750, 2550, 2750}));
    EXPECT_EQ(reduced(plane, 1).values, plane.values);
}

TEST(LumaPlane, ReducingTakesTheBrightest)
{
    LumaPlane plane({26, 13});
    std::ranges::fill(plane.values, std::uint16_t(255 * 256));
    expectAll(reduced(plane, 13), 255 * 256);
    expectAll(smoothed(plane), 255 * 256);
}

TEST(LumaPlane, SmoothingSpreadsAPixel)
{
    LumaPlane plane({9, 9});
    plane.at(4, 4) = 25600;
    const LumaPlane out = smoothed(plane);
    EXPECT_EQ(out.at(4, 4), 3600);
    EXPECT_EQ(out.at(3, 4), 2400);
    EXPECT_EQ(out.at(4, 2), 600);
    EXPECT_EQ(out.at(2, 6), 100);
    EXPECT_EQ(out.at(1, 4), 0);
}

} // namespace
} // namespace lumofe
