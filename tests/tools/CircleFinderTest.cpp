#include "calibrate/CircleFinder.h"

#include "CalibrateTestSupport.h"
#include "ToolTestSupport.h"
#include "scene/Camera.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::FisheyeVariant;
using test::planeOf;
using test::withDisc;
using test::withNoise;

constexpr Rgb kBlack{0, 0, 0}, kGrey{90, 90, 90};

// The larger one of the errors of centre and radius, as a share of the radius.
double error(const FineCircle& found, const FisheyeVariant& variant)
{
    const double centre = std::hypot(found.x - variant.x, found.y - variant.y);
    return std::max(centre, std::abs(found.radius - variant.radius)) / variant.radius;
}

struct Tally {
    int right = 0;         // within 1 % of the radius
    int confident = 0;     // whether right or not
    int wronglySure = 0;   // confident, but not right
    double leastRim = 1.0; // in the picture
};

Tally tally(std::uint32_t firstSeed, std::uint32_t count, double leastRim)
{
    Tally t;
    for (std::uint32_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        const FisheyeVariant variant = test::fisheyeVariant(seed, leastRim);
        const auto found = findCircle(planeOf(variant.picture));
        const bool right = found && error(found->circle, variant) <= 0.01;
        const bool confident = found && found->confident();
        t.right += right;
        t.confident += confident;
        t.wronglySure += confident && !right;
        t.leastRim = std::min(t.leastRim, variant.rimInside);
    }
    return t;
}

bool confidentIn(const Image& image)
{
    const auto found = findCircle(planeOf(image));
    return found && found->confident();
}

// What a lens without distortion sees in the test room.
Image straightView(Size size)
{
    const double scale = 1.6 / size.width;
    const Lens lens = [=](double column, double row) {
        return Vec3{(column - size.width / 2.0) * scale, (row - size.height / 2.0) * scale, 1};
    };
    return renderPicture(Room(), cameraFor(Mount::wall), lens, size);
}

TEST(CircleFinder, IsWithinOnePercentInNearlyAllVariants)
{
    const Tally t = tally(20001, 200, 0.6);
    EXPECT_GE(t.right, 190);
    EXPECT_GE(t.confident, 180);
    EXPECT_EQ(t.wronglySure, 0);
    EXPECT_LT(t.leastRim, 0.65);
}

TEST(CircleFinder, DoesWithLessThanHalfOfTheRim)
{
    const Tally t = tally(30001, 40, 0.4);
    EXPECT_GE(t.right, 38);
    EXPECT_EQ(t.wronglySure, 0);
    EXPECT_LT(t.leastRim, 0.5);
}

TEST(CircleFinder, IsExactOnADiscOfALargePicture)
{
    for (const FineCircle disc : {FineCircle{801.3, 612.6, 508.2}, FineCircle{650, 500.5, 700}}) {
        const auto found =
            findCircle(planeOf(withDisc(filled({1600, 1200}, {12, 12, 12}), disc, kGrey)));
        ASSERT_TRUE(found);
        EXPECT_GT(found->confidence, 0.9);
        EXPECT_NEAR(found->circle.x, disc.x, 0.1);
        EXPECT_NEAR(found->circle.y, disc.y, 0.1);
        EXPECT_NEAR(found->circle.radius, disc.radius, 0.1);
        EXPECT_NEAR(found->contrast, 78, 1);
        EXPECT_NEAR(found->surroundDark, 1, 0.01);
        EXPECT_NEAR(found->rimFound, found->rimVisible, 0.02);
    }
}

// The numbers are those of every build; the picture is made of whole numbers but for its rim.
TEST(CircleFinder, FindsTheSameInEveryBuild)
{
    test::Dice dice(5);
    const Image disc = withDisc(filled({400, 300}, {20, 20, 20}), {190, 160, 120}, {60, 60, 60});
    const auto found = findCircle(planeOf(withNoise(disc, dice, 12)));
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->circle.x, 189.990775419384, 1e-9);
    EXPECT_NEAR(found->circle.y, 160.017168054212, 1e-9);
    EXPECT_NEAR(found->circle.radius, 119.996315038564, 1e-9);
}

TEST(CircleFinder, IsNotSureOfPicturesWithoutACircle)
{
    test::Dice dice(7);
    for (const int grey : {0, 90, 255}) {
        const Image plain = filled({400, 300}, {std::uint8_t(grey), std::uint8_t(grey), 90});
        EXPECT_FALSE(confidentIn(plain)) << grey;
        for (const int noise : {3, 20, 80})
            EXPECT_FALSE(confidentIn(withNoise(plain, dice, noise))) << grey << " " << noise;
    }
    EXPECT_FALSE(confidentIn(test::gradient({400, 300})));

    const Image view = straightView({400, 300});
    EXPECT_FALSE(confidentIn(view));
    EXPECT_FALSE(confidentIn(withNoise(view, dice, 8)));
    Image bars = filled({400, 400}, kBlack);
    paste(bars, view, 0, 50);
    EXPECT_FALSE(confidentIn(bars));
    Image frame = filled({480, 360}, kBlack);
    paste(frame, view, 40, 30);
    EXPECT_FALSE(confidentIn(frame));
}

TEST(CircleFinder, IsNotSureOfADiscThatIsTooSmallOrDarkOrOval)
{
    EXPECT_FALSE(confidentIn(withDisc(filled({400, 300}, kBlack), {200, 150, 40}, kGrey)));
    EXPECT_FALSE(confidentIn(withDisc(filled({400, 300}, kGrey), {200, 150, 120}, kBlack)));
    const Image disc = withDisc(filled({400, 300}, kBlack), {200, 150, 120}, kGrey);
    EXPECT_TRUE(confidentIn(disc));
    EXPECT_FALSE(confidentIn(scaled(disc, {400, 240})));
}

TEST(CircleFinder, SaysWhatSpeaksAgainstACircle)
{
    const FineCircle disc{200, 150, 120};
    Image part = withDisc(filled({400, 300}, kBlack), disc, kGrey);
    paste(part, filled({260, 300}, kBlack), 0, 0);
    const auto broken = findCircle(planeOf(part));
    ASSERT_TRUE(broken);
    EXPECT_FALSE(broken->confident());
    EXPECT_EQ(broken->doubt, Doubt::brokenRim);

    Image lit = withDisc(filled({400, 300}, kBlack), {200, 150, 100}, kGrey);
    for (const int left : {0, 312})
        paste(lit, filled({88, 300}, {200, 200, 200}), left, 0);
    const auto bright = findCircle(planeOf(lit));
    ASSERT_TRUE(bright);
    EXPECT_FALSE(bright->confident());
    EXPECT_EQ(bright->doubt, Doubt::brightSurround);
}

TEST(CircleFinder, PicturesHelpOneAnother)
{
    const FineCircle disc{200, 150, 120};
    const Image day = withDisc(filled({400, 300}, kBlack), disc, kGrey);
    Image west = day, east = day;
    paste(west, filled({230, 300}, kBlack), 170, 0);
    paste(east, filled({230, 300}, kBlack), 0, 0);
    LumaStack both;
    both.add(west);
    both.add(east);
    const auto found = findCircle(both.mean());
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->confident());
    EXPECT_NEAR(found->circle.radius, 120, 0.3);

    const Image stray = straightView({400, 300});
    LumaStack three;
    for (const Image& image : {day, stray, day})
        three.add(image);
    const auto despite = findCircle(three.mean());
    ASSERT_TRUE(despite);
    EXPECT_TRUE(despite->confident());
    EXPECT_NEAR(despite->circle.x, 200, 0.5);
    EXPECT_NEAR(despite->circle.radius, 120, 0.5);
}

TEST(CircleFinder, TakesPicturesOfAnyShape)
{
    test::Dice dice(9);
    for (const Size size : {Size{320, 240}, Size{1999, 240}, Size{320, 1501}, Size{641, 641}})
        EXPECT_FALSE(confidentIn(withNoise(filled(size, {40, 40, 40}), dice, 30)));
}

} // namespace
} // namespace lumofe
