#include "Geometry.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;

namespace {

void expectRect(const Rect& rect, double x, double y, double width, double height)
{
    EXPECT_DOUBLE_EQ(rect.x, x);
    EXPECT_DOUBLE_EQ(rect.y, y);
    EXPECT_DOUBLE_EQ(rect.width, width);
    EXPECT_DOUBLE_EQ(rect.height, height);
}

} // namespace

TEST(Geometry, PicturesKeepTheirShape)
{
    expectRect(fitted({640, 480}, {0, 0, 640, 480}), 0, 0, 640, 480);
    expectRect(fitted({640, 480}, {0, 0, 1280, 480}), 320, 0, 640, 480);
    expectRect(fitted({640, 480}, {0, 0, 320, 480}), 0, 120, 320, 240);
    expectRect(fitted({100, 100}, {10, 20, 50, 50}), 10, 20, 50, 50);
}

TEST(Geometry, TheInsetLiesInTheLowerRightCorner)
{
    expectRect(insetArea({1000, 1000}, {1000, 500}), 1000 - 8 - 200, 500 - 8 - 200, 200, 200);
}

TEST(Geometry, TheQuadHasFourViewsRowByRow)
{
    const Rect picture{10, 20, 400, 300};
    EXPECT_EQ(viewAt(View::quad, picture, {11, 21}), 1);
    EXPECT_EQ(viewAt(View::quad, picture, {409, 21}), 2);
    EXPECT_EQ(viewAt(View::quad, picture, {11, 319}), 3);
    EXPECT_EQ(viewAt(View::quad, picture, {409, 319}), 4);
    EXPECT_EQ(viewAt(View::quad, picture, {9, 21}), 0);
    EXPECT_EQ(viewAt(View::quad, picture, {410, 21}), 0);
    expectRect(viewArea(View::quad, 4, picture), 210, 170, 200, 150);
}

TEST(Geometry, The360LayoutHasTwoViewsAboveItsStrip)
{
    const Rect picture{0, 0, 1538, 1538};
    EXPECT_EQ(viewAt(View::ptz360, picture, {700, 990}), 1);
    EXPECT_EQ(viewAt(View::ptz360, picture, {800, 990}), 2);
    EXPECT_EQ(viewAt(View::ptz360, picture, {800, 1010}), 0);
}

TEST(Geometry, SingleAnd180AreOnePicture)
{
    const Rect picture{0, 0, 100, 100};
    for (View view : {View::single, View::half180}) {
        EXPECT_EQ(viewAt(view, picture, {99, 99}), 1);
        EXPECT_EQ(viewAt(view, picture, {100, 99}), 0);
    }
}

TEST(Geometry, PointsOfTheInsetArePixelsOfTheRawPicture)
{
    const Rect area{100, 200, 50, 50};
    EXPECT_EQ(rawPixelAt({1000, 1000}, area, {100, 200}).x, 0);
    EXPECT_EQ(rawPixelAt({1000, 1000}, area, {125, 210}).x, 500);
    EXPECT_EQ(rawPixelAt({1000, 1000}, area, {125, 210}).y, 200);
    EXPECT_EQ(rawPixelAt({1000, 1000}, area, {160, 260}).x, 999);
}
