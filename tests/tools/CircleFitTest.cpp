#include "calibrate/CircleFit.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lumofe {
namespace {

constexpr FineCircle kCircle{120.25, -31.5, 77.75};

// Points on the circle between two angles, degrees, each `off` further out or in, in turn.
std::vector<Point> arc(double from, double to, int count, double off = 0)
{
    std::vector<Point> points;
    for (int i = 0; i < count; ++i) {
        const double angle = (from + (to - from) * i / count) * std::numbers::pi / 180;
        const double d = kCircle.radius + (i % 2 == 0 ? off : -off);
        points.push_back({kCircle.x + d * std::cos(angle), kCircle.y + d * std::sin(angle)});
    }
    return points;
}

void expectCircle(const FineCircle& circle, double tolerance)
{
    EXPECT_NEAR(circle.x, kCircle.x, tolerance);
    EXPECT_NEAR(circle.y, kCircle.y, tolerance);
    EXPECT_NEAR(circle.radius, kCircle.radius, tolerance);
}

TEST(CircleFit, DistanceIsPositiveOutside)
{
    EXPECT_DOUBLE_EQ(distance({1, 2, 5}, {4, 6}), 0);
    EXPECT_DOUBLE_EQ(distance({1, 2, 5}, {7, 10}), 5);
    EXPECT_DOUBLE_EQ(distance({1, 2, 5}, {1, 2}), -5);
}

TEST(CircleFit, ThreePointsMakeACircle)
{
    const std::vector<Point> p = arc(10, 250, 3);
    const auto circle = circleThrough(p[0], p[1], p[2]);
    ASSERT_TRUE(circle);
    expectCircle(*circle, 1e-9);
}

TEST(CircleFit, PointsOnALineMakeNone)
{
    EXPECT_FALSE(circleThrough({0, 0}, {10, 20}, {30, 60}));
    EXPECT_FALSE(circleThrough({5, 5}, {5, 5}, {9, 1}));
    EXPECT_FALSE(fitCircle({{0, 0}, {10, 0}, {20, 0}, {30, 0}}, {15, 400, 400}, 5));
}

TEST(CircleFit, IsExactForExactPoints)
{
    for (const double end : {60.0, 180.0, 360.0}) {
        const auto fit = fitCircle(arc(0, end, 40), {118, -30, 79}, 10);
        ASSERT_TRUE(fit) << end;
        expectCircle(fit->circle, 1e-6);
        EXPECT_NEAR(fit->residual, 0, 1e-6);
    }
}

TEST(CircleFit, StraysDoNotPull)
{
    std::vector<Point> points = arc(0, 360, 60);
    for (int i = 0; i < 25; ++i)
        points.push_back({kCircle.x + i, kCircle.y + 50.0});
    const auto fit = fitCircle(points, {121, -31, 77}, 4);
    ASSERT_TRUE(fit);
    expectCircle(fit->circle, 1e-6);
}

TEST(CircleFit, ShortArcsAreLessCertain)
{
    const auto whole = fitCircle(arc(0, 360, 60, 0.5), kCircle, 10);
    const auto part = fitCircle(arc(0, 40, 60, 0.5), kCircle, 10);
    ASSERT_TRUE(whole && part);
    EXPECT_NEAR(whole->residual, 0.5, 0.01);
    EXPECT_NEAR(part->residual, 0.5, 0.02);
    EXPECT_LT(whole->error, 0.2);
    EXPECT_GT(part->error, 5 * whole->error);
}

TEST(CircleFit, TooFewPointsFitNothing)
{
    EXPECT_FALSE(fitCircle({}, kCircle, 5));
    EXPECT_FALSE(fitCircle(arc(0, 180, 2), kCircle, 5));
    EXPECT_FALSE(fitCircle(arc(0, 360, 50), {kCircle.x, kCircle.y, 2 * kCircle.radius}, 5));
}

} // namespace
} // namespace lumofe
