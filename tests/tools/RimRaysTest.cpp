#include "calibrate/RimRays.h"

#include "CalibrateTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::planeOf;
using test::withDisc;

constexpr Size kSize{400, 300};
constexpr FineCircle kDisc{201.3, 148.8, 110.4};

RimRays raysOf(const Image& image, double band = 10)
{
    return rimRays(planeOf(image), {200, 150, 112}, band);
}

Image disc(Rgb outside, Rgb inside)
{
    return withDisc(filled(kSize, outside), kDisc, inside);
}

TEST(RimRays, FindTheRimBetweenPixels)
{
    const RimRays rays = raysOf(disc({10, 10, 10}, {90, 90, 90}));
    EXPECT_EQ(rays.visible, kRays);
    ASSERT_EQ(rays.rim.size(), std::size_t(kRays));
    double sum = 0;
    for (const Point& p : rays.rim) {
        EXPECT_NEAR(distance(kDisc, p), 0, 0.5);
        sum += distance(kDisc, p);
    }
    EXPECT_NEAR(sum / kRays, 0, 0.05);
    EXPECT_NEAR(rays.step, 80, 1);
    EXPECT_NEAR(rays.surround, 10, 1);
}

TEST(RimRays, TheOutermostClearStepIsTheRim)
{
    Image image = disc({10, 10, 10}, {70, 70, 70});
    image = withDisc(image, {kDisc.x, kDisc.y, kDisc.radius - 9}, {180, 180, 180});
    const RimRays rays = raysOf(image, 14);
    ASSERT_EQ(rays.rim.size(), std::size_t(kRays));
    for (const Point& p : rays.rim)
        EXPECT_NEAR(distance(kDisc, p), 0, 0.7);
}

TEST(RimRays, SeeNoRimBeyondTheBorder)
{
    const FineCircle cut{200, 250, 100};
    const RimRays rays =
        rimRays(planeOf(withDisc(filled(kSize, {0, 0, 0}), cut, {90, 90, 90})), cut, 10);
    // Half of it, and an arc of 30 degrees to either side, less what is too near to the border.
    EXPECT_NEAR(double(rays.visible) / kRays, 240.0 / 360, 0.04);
    EXPECT_NEAR(double(rays.rim.size()), rays.visible, 5);
}

TEST(RimRays, FindNothingInOneColourNorOnADarkDisc)
{
    const RimRays plain = raysOf(filled(kSize, {90, 90, 90}));
    EXPECT_EQ(plain.visible, kRays);
    EXPECT_TRUE(plain.rim.empty());
    EXPECT_EQ(plain.step, 0);
    EXPECT_TRUE(raysOf(disc({90, 90, 90}, {10, 10, 10})).rim.empty());
}

} // namespace
} // namespace lumofe
