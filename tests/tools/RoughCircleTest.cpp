#include "calibrate/RoughCircle.h"

#include "CalibrateTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lumofe {
namespace {

using test::planeOf;
using test::withDisc;

constexpr Size kSize{320, 240};
constexpr FineCircle kDisc{150, 110, 90};

std::vector<RimPoint> pointsOf(const Image& image)
{
    return rimPoints(smoothed(planeOf(image)));
}

void expectDisc(const std::optional<FineCircle>& circle, double tolerance)
{
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->x, kDisc.x, tolerance);
    EXPECT_NEAR(circle->y, kDisc.y, tolerance);
    EXPECT_NEAR(circle->radius, kDisc.radius, tolerance);
}

TEST(RoughCircle, RimPointsLieOnTheRimAndPointInwards)
{
    const std::vector<RimPoint> points =
        pointsOf(withDisc(filled(kSize, {20, 20, 20}), kDisc, {90, 90, 90}));
    EXPECT_GT(points.size(), 400u);
    for (const RimPoint& p : points) {
        EXPECT_NEAR(distance(kDisc, p.at), 0, 1.5);
        const double dx = kDisc.x - p.at.x, dy = kDisc.y - p.at.y;
        EXPECT_GT(p.inward.x * dx + p.inward.y * dy, 0.97 * std::hypot(dx, dy));
    }
}

TEST(RoughCircle, EdgesInsideAreNoRimPoints)
{
    Image image = withDisc(filled(kSize, {0, 0, 0}), kDisc, {120, 120, 120});
    image = withDisc(image, {150, 110, 40}, {10, 10, 10});
    image = withDisc(image, {150, 110, 20}, {100, 100, 100});
    for (const RimPoint& p : pointsOf(image))
        EXPECT_NEAR(distance(kDisc, p.at), 0, 1.5);
}

TEST(RoughCircle, DarkDiscsAndPlainPicturesHaveNone)
{
    const Image dark = withDisc(filled(kSize, {90, 90, 90}), kDisc, {20, 20, 20});
    EXPECT_FALSE(roughCircle(pointsOf(dark), kSize));
    EXPECT_TRUE(pointsOf(filled(kSize, {90, 90, 90})).empty());
    EXPECT_FALSE(roughCircle({}, kSize));
}

TEST(RoughCircle, IsFoundAmongThreeTimesAsManyStrays)
{
    test::Dice dice(1);
    std::vector<RimPoint> points;
    for (int i = 0; i < 200; ++i) {
        const double angle = dice.real(0, 2 * std::numbers::pi);
        const Point out{std::cos(angle), std::sin(angle)};
        points.push_back(
            {{kDisc.x + kDisc.radius * out.x, kDisc.y + kDisc.radius * out.y}, {-out.x, -out.y}});
    }
    for (int i = 0; i < 600; ++i) {
        const double angle = dice.real(0, 2 * std::numbers::pi);
        points.push_back(
            {{dice.real(0, 319), dice.real(0, 239)}, {std::cos(angle), std::sin(angle)}});
    }
    expectDisc(roughCircle(points, kSize), 1);
}

TEST(RoughCircle, IsFoundWhereTwoThirdsAreOutOfThePicture)
{
    const FineCircle cut{160, 120, 170};
    const auto circle =
        roughCircle(pointsOf(withDisc(filled(kSize, {0, 0, 0}), cut, {90, 90, 90})), kSize);
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->x, cut.x, 2);
    EXPECT_NEAR(circle->y, cut.y, 2);
    EXPECT_NEAR(circle->radius, cut.radius, 2);
}

TEST(RoughCircle, PlausibleCirclesFitACamera)
{
    EXPECT_TRUE(plausible(kDisc, kSize));
    EXPECT_TRUE(plausible({0, 239, 40}, kSize));
    EXPECT_TRUE(plausible({0, 239, 239}, kSize));
    EXPECT_FALSE(plausible({150, 110, 39}, kSize));
    EXPECT_FALSE(plausible({150, 110, 241}, kSize));
    EXPECT_FALSE(plausible({150, 240, 90}, kSize));
    EXPECT_FALSE(plausible({-1, 110, 90}, kSize));
}

} // namespace
} // namespace lumofe
