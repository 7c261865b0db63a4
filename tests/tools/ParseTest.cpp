#include "Parse.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

TEST(Parse, CircleIsXThenYThenRadius)
{
    const Circle circle = parseCircle("808.5,867.4,625");
    EXPECT_EQ(circle.x, 809);
    EXPECT_EQ(circle.y, 867);
    EXPECT_EQ(circle.radius, 625);
}

TEST(Parse, BadCirclesNameTheOption)
{
    for (const char* text : {"", "1", "1,2", "1,2,", "1,2,3,4", "a,b,c", "640, 512,500",
                             "640x512x500", "nan,2,300", "inf,2,300", "-1,2,300", "1,-2,300",
                             "1,2,15", "1,2,0", "1,2,-300", "1,2,4097", "1e99,2,300", "5000,2,300"})
        EXPECT_EQ(errorOf([&] { parseCircle(text); }).rfind("--circle: ", 0), 0u) << text;
}

TEST(Parse, SizeIsWidthThenHeight)
{
    EXPECT_EQ(parseSize("800x600"), (Size{800, 600}));
    EXPECT_EQ(parseSize("16x4096"), (Size{16, 4096}));
}

TEST(Parse, BadSizesNameTheOption)
{
    for (const char* text : {"", "800", "800x", "x600", "800x600x1", "800X600", "800,600",
                             "800.5x600", "15x600", "800x4097", "-800x600", "0x0", "1e9x600"})
        EXPECT_EQ(errorOf([&] { parseSize(text); }).rfind("--size: ", 0), 0u) << text;
}

TEST(Parse, PtzIsPanThenTiltThenZoom)
{
    const Aim aim = parsePtz("-22.5,60,12.5");
    EXPECT_EQ(aim.pan, -22.5);
    EXPECT_EQ(aim.tilt, 60);
    EXPECT_EQ(aim.zoom, 12.5);
}

TEST(Parse, BadPtzNamesTheOption)
{
    for (const char* text : {"", "1", "1,2", "1,2,", "1,2,3,4", "a,2,3", "1, 2,3", "1;2;3",
                             "nan,2,3", "1,inf,3", "1e999,2,3"})
        EXPECT_EQ(errorOf([&] { parsePtz(text); }).rfind("--ptz: ", 0), 0u) << text;
}

TEST(Parse, NamesAreMapped)
{
    EXPECT_EQ(parseView("single"), View::single);
    EXPECT_EQ(parseView("quad"), View::quad);
    EXPECT_EQ(parseView("360"), View::ptz360);
    EXPECT_EQ(parseView("180"), View::half180);
    EXPECT_EQ(parseMount("ceiling"), Mount::ceiling);
    EXPECT_EQ(parseMount("wall"), Mount::wall);
    EXPECT_EQ(parseMount("floor"), Mount::floor);
    EXPECT_EQ(parsePixelFormat("nv12"), PixelFormat::nv12);
    EXPECT_EQ(parsePixelFormat("yv12"), PixelFormat::yv12);
    EXPECT_EQ(parsePixelFormat("rgb"), PixelFormat::rgb);
}

TEST(Parse, UnknownNamesListTheChoices)
{
    EXPECT_EQ(errorOf([] { parseView("round"); }),
              "--view: 'round' is unknown; choose one of single, quad, 360, 180");
    EXPECT_EQ(errorOf([] { parseMount("roof"); }),
              "--mount: 'roof' is unknown; choose one of ceiling, wall, floor");
    EXPECT_EQ(errorOf([] { parsePixelFormat(""); }),
              "--format: '' is unknown; choose one of nv12, yv12, rgb");
}

} // namespace
} // namespace lumofe
