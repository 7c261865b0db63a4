#include "Layout.h"

#include "Dewarper.h"
#include "ToolTestSupport.h"
#include "media/Pixels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace lumofe {
namespace {

constexpr View kViews[] = {View::single, View::quad, View::ptz360, View::half180};
constexpr Mount kMounts[] = {Mount::ceiling, Mount::wall, Mount::floor};

constexpr Size kInput{640, 640};
constexpr std::uint8_t kFlat[3] = {100, 150, 180}; // Y, U, V

// A frame of one colour comes out in that colour where the layout's parts meet without a gap.
Frame420 dewarpedFlat(View view, Mount mount, Size screen)
{
    DewarperSetup setup;
    setup.input = kInput;
    setup.output = screen;
    setup.circle = {320, 320, 320};
    setup.view = view;
    setup.mount = mount;
    Dewarper dewarper(setup);
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(view).views; ++number)
        aims.push_back(defaultAim(view, mount, number));
    dewarper.aim(aims);
    Frame420 input(kInput);
    for (int p = 0; p < 3; ++p) {
        const Size size = input.planeSize(p);
        std::fill_n(input.plane(p), size.width * size.height, kFlat[p]);
    }
    return dewarper.dewarp(input);
}

struct Box {
    double left, top, right, bottom; // of the frame, luma pixels
    bool holds(double x, double y) const
    {
        return x >= left && x < right && y >= top && y < bottom;
    }
};

// Where the library itself leaves lines: between two views; and along the edges of a resized
// panorama, of which it does not show the last two columns and rows of the plane. Chroma planes
// have every `scale`-th sample.
std::vector<Box> knownLines(View view, Mount mount, Size screen, int scale)
{
    const double W = screen.width, H = screen.height;
    const Box middle{W / 2, 0, W / 2 + 1, view == View::quad ? H : std::ceil(H / 1.538)};
    if (view == View::quad) return {middle};
    const bool wall = mount == Mount::wall;
    const double radius = 320, columns = wall ? 720 : 1080;
    const auto edges = [&](double top, double bottom, double width, double rows) {
        const double across = std::ceil(2 * scale * width / columns);
        const double down = std::ceil(2 * scale * (bottom - top) / rows);
        return std::vector<Box>{{0, top, across, bottom},
                                {W - across, top, W, bottom},
                                {0, top, W, top + down},
                                {0, bottom - down, W, bottom}};
    };
    if (view == View::ptz360) {
        const double top = int(H / 1.538) & ~3;
        std::vector<Box> lines = edges(top, H, W, wall ? radius * 0.75 : radius / 4);
        lines.push_back(middle);
        return lines;
    }
    if (wall) {
        std::vector<Box> lines = edges(H / 4, H * 3 / 4, W, radius * 0.5);
        lines.push_back({0, 0, W, H / 4});
        lines.push_back({0, H * 3 / 4, W, H});
        return lines;
    }
    std::vector<Box> lines = edges(0, H / 2 + 1, 2 * W, radius / 4);
    for (const Box& line : edges(H / 2, H, 2 * W, radius / 4))
        lines.push_back(line);
    return lines;
}

// Samples outside the known lines that have not got the input's colour.
int flaws(View view, Mount mount, Size screen)
{
    const Frame420 frame = dewarpedFlat(view, mount, screen);
    int count = 0;
    for (int p = 0; p < 3; ++p) {
        const Size size = frame.planeSize(p);
        const int scale = p == 0 ? 1 : 2;
        const std::vector<Box> lines = knownLines(view, mount, screen, scale);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                if (frame.plane(p)[y * size.width + x] == kFlat[p]) continue;
                // The last luma byte of the quad lands on the first chroma byte.
                if (view == View::quad && p == 1 && x == 0 && y == 0) continue;
                const auto inLine = [&](const Box& b) {
                    return b.holds(x * scale, y * scale) ||
                           (scale == 2 && b.holds(x * 2 + 1, y * 2 + 1));
                };
                count += std::ranges::none_of(lines, inLine);
            }
    }
    return count;
}

TEST(Layout, ComposingSizesLeaveNoGap)
{
    for (Mount mount : kMounts)
        for (View view : {View::quad, View::ptz360, View::half180})
            for (int w : {312, 316, 318, 320})
                for (int h = 232; h <= 256; h += 2) {
                    SCOPED_TRACE(testing::Message()
                                 << layoutRule(view).name << " " << mountRule(mount).name << " "
                                 << w << "x" << h);
                    const int found = flaws(view, mount, {w, h});
                    if (composes(view, mount, {w, h}, kInput)) {
                        EXPECT_EQ(found, 0);
                    } else if (view != View::half180) {
                        EXPECT_GT(found, 0);
                    }
                }
}

// How much lower the colour of a 180 frame lies than its luma, in luma rows: luma and chroma of the
// input are the same ramp, down the picture on the wall and outwards on the other mountings.
double colourOffset(Mount mount, Size screen)
{
    DewarperSetup setup;
    setup.input = kInput;
    setup.output = screen;
    setup.circle = {320, 320, 320};
    setup.view = View::half180;
    setup.mount = mount;
    setup.upright = false;
    Dewarper dewarper(setup);
    Frame420 input(kInput);
    const bool wall = mount == Mount::wall;
    for (int p = 0; p < 3; ++p) {
        const Size size = input.planeSize(p);
        const int scale = p == 0 ? 1 : 2;
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const double row = y * scale, column = x * scale;
                const double way = wall ? row / 2 : std::hypot(row - 320, column - 320);
                input.plane(p)[y * size.width + x] = std::uint8_t(std::min(255.0, way * 0.75));
            }
    }
    const Frame420 out = dewarper.dewarp(input);
    // The lower half; on the wall all of the picture.
    const int from = wall ? screen.height / 4 : screen.height / 2;
    const int to = wall ? screen.height * 3 / 4 : screen.height;
    const int w = screen.width;
    double difference = 0, slope = 0;
    for (int y = (from + 12) / 2; y < (to - 12) / 2; ++y)
        for (int x = w / 8; x < w * 3 / 8; ++x) {
            const std::uint8_t* luma = out.plane(0) + 2 * y * w + 2 * x;
            difference += luma[0] - out.plane(1)[y * (w / 2) + x];
            slope += (luma[4 * w] - luma[-4 * w]) / 8.0;
        }
    return difference / slope;
}

TEST(Layout, The180sColourLiesAlikeAtAllHeightsThatCompose)
{
    for (Mount mount : kMounts) {
        const double usual = colourOffset(mount, {320, 240});
        for (int h = 242; h <= 272; h += 2) {
            const double offset = colourOffset(mount, {320, h});
            SCOPED_TRACE(testing::Message() << mountRule(mount).name << " " << h);
            if (composes(View::half180, mount, {320, h}, kInput)) {
                EXPECT_NEAR(offset, usual, 0.3);
            } else if (mount != Mount::wall || h % 8 == 4) {
                EXPECT_GT(std::abs(offset - usual), 0.7);
            }
        }
    }
}

TEST(Layout, QuadAnd360LeaveGapsOnScreensLargerThanTheInput)
{
    for (View view : {View::quad, View::ptz360})
        for (Size screen : {Size{648, 480}, Size{320, 648}}) {
            EXPECT_FALSE(composes(view, Mount::ceiling, screen, kInput));
            EXPECT_GT(flaws(view, Mount::ceiling, screen), 0) << screen.width;
        }
}

TEST(Layout, A360ScreenIsNoWiderThanTheInputIsHigh)
{
    EXPECT_TRUE(composes(View::ptz360, Mount::ceiling, {1072, 600}, {1920, 1080}));
    EXPECT_FALSE(composes(View::ptz360, Mount::ceiling, {1088, 600}, {1920, 1080}));
    EXPECT_TRUE(composes(View::quad, Mount::ceiling, {1088, 600}, {1920, 1080}));
}

TEST(Layout, DefaultSizesAreLargeInShapeAndCompose)
{
    for (View view : kViews)
        for (Mount mount : kMounts)
            for (int w = 320; w <= 4096; w += 236)
                for (int h = 240; h <= 4096; h += 222) {
                    const Size size = defaultOutputSize(view, mount, {w, h});
                    const bool wide =
                        view == View::ptz360 || (view == View::half180 && mount != Mount::wall);
                    EXPECT_EQ(size.width * (wide ? 9 : 3), size.height * (wide ? 16 : 4));
                    EXPECT_TRUE(composes(view, mount, size, {w, h}));
                    EXPECT_EQ(nearestComposing(view, mount, size, {w, h}), size);
                    const int across = view == View::ptz360 ? std::min(w, h) : w;
                    EXPECT_TRUE(size.width + 96 > across || size.height + 54 > h)
                        << layoutRule(view).name << " " << w << "x" << h;
                }
}

TEST(Layout, DefaultSizesOfTheSingleViewAreTheLargest4By3InsideTheInput)
{
    const auto single = [](Size input) {
        return defaultOutputSize(View::single, Mount::ceiling, input);
    };
    EXPECT_EQ(single({1280, 1280}), (Size{1280, 960}));
    EXPECT_EQ(single({1920, 1080}), (Size{1440, 1080}));
    EXPECT_EQ(single({320, 240}), (Size{320, 240}));
    for (int w = 320; w <= 4096; w += 61)
        for (int h = 240; h <= 4096; h += 59) {
            const Size size = single({w, h});
            EXPECT_EQ(size.width % 4 + size.height % 4, 0);
            EXPECT_TRUE(size.width <= w && size.height <= h);
            EXPECT_TRUE(size.width + 16 > w || size.height + 12 > h);
        }
}

TEST(Layout, NearestSizeIsTheNearestOfAllThatCompose)
{
    constexpr Size kLarge{1280, 1024};
    for (View view : {View::quad, View::ptz360, View::half180})
        for (Size asked : {Size{643, 481}, Size{797, 599}, Size{800, 389}, Size{16, 17},
                           Size{801, 600}, Size{1019, 1023}}) {
            const Size size = nearestComposing(view, Mount::ceiling, asked, kLarge);
            EXPECT_TRUE(composes(view, Mount::ceiling, size, kLarge));
            for (int h = asked.height - 40; h < asked.height + 40; ++h)
                for (int w = asked.width - 16; w < asked.width + 16; ++w)
                    if (composes(view, Mount::ceiling, {w, h}, kLarge)) {
                        EXPECT_LE(std::abs(size.width - asked.width), std::abs(w - asked.width));
                        EXPECT_LE(std::abs(size.height - asked.height), std::abs(h - asked.height));
                    }
        }
}

TEST(Layout, TooLargeSizesShrinkInTheirShape)
{
    for (Mount mount : kMounts)
        for (View view : {View::quad, View::ptz360, View::half180}) {
            const Size size = nearestComposing(view, mount, {4096, 2304}, {1280, 1280});
            EXPECT_EQ(size.width, 1280);
            EXPECT_NEAR(size.height, 720, 4);
        }
    EXPECT_EQ(nearestComposing(View::quad, Mount::ceiling, {640, 1280}, {800, 600}),
              (Size{304, 600}));
}

TEST(Layout, TheSingleViewTakesEverySize)
{
    EXPECT_EQ(nearestComposing(View::single, Mount::wall, {4095, 17}, {320, 240}),
              (Size{4095, 17}));
}

TEST(Layout, FormatsThatComeOutRightAreFed)
{
    using F = PixelFormat;
    const struct {
        View view;
        F yv12, rgb;
    } kCases[] = {{View::single, F::yv12, F::rgb},
                  {View::quad, F::yv12, F::nv12},
                  {View::ptz360, F::nv12, F::nv12},
                  {View::half180, F::nv12, F::nv12}};
    for (const auto& c : kCases) {
        EXPECT_EQ(fedFormat(c.view, F::nv12), F::nv12);
        EXPECT_EQ(fedFormat(c.view, F::yv12), c.yv12);
        EXPECT_EQ(fedFormat(c.view, F::rgb), c.rgb);
    }
}

// What fedFormat() goes by: a format is right where its picture is that of NV12.
TEST(Layout, OtherFormatsAreGarbledWhereTheyAreNotFed)
{
    for (View view : kViews)
        for (PixelFormat format : {PixelFormat::yv12, PixelFormat::rgb}) {
            const auto render = [&](PixelFormat fed) {
                DewarperSetup setup;
                setup.input = {1280, 1280};
                setup.output = defaultOutputSize(view, Mount::ceiling, kInput);
                setup.circle = {640, 640, 640};
                setup.view = view;
                setup.format = fed;
                Dewarper dewarper(setup);
                dewarper.aim(std::vector<Aim>(std::size_t(layoutRule(view).views), {0, 60, 0}));
                return dewarper.dewarp(test::scene(Mount::ceiling));
            };
            const Image right = render(PixelFormat::nv12), other = render(format);
            const bool fed = fedFormat(view, format) == format;
            if (format == PixelFormat::yv12)
                EXPECT_EQ(right.bytes == other.bytes, fed) << layoutRule(view).name;
            else if (fed)
                EXPECT_GT(test::psnr(right, other), 35) << layoutRule(view).name;
            else
                EXPECT_LT(test::psnr(right, other), 15) << layoutRule(view).name;
        }
}

TEST(Layout, DefaultAimsAreInRangeAndShareTheTurn)
{
    for (Mount mount : kMounts)
        for (View view : kViews)
            for (int number = 1; number <= layoutRule(view).views; ++number)
                EXPECT_EQ(test::errorOf([&] { checkAim(defaultAim(view, mount, number), mount); }),
                          "");
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(defaultAim(View::quad, Mount::ceiling, i + 1).pan, 90 * i);
        EXPECT_EQ(defaultAim(View::quad, Mount::floor, i + 1).pan, (360 - 90 * i) % 360);
    }
    EXPECT_EQ(defaultAim(View::ptz360, Mount::ceiling, 2).pan, 180);
    EXPECT_EQ(defaultAim(View::ptz360, Mount::floor, 2).pan, 180);
}

// With a small input the library stops the table of the unwrap before its outer rows.
TEST(Layout, UnwrapsAreCompleteAsTold)
{
    const auto rimIsShown = [](int side) {
        DewarperSetup setup;
        setup.input = {side, side};
        setup.output = {320, 180};
        setup.circle = {side / 2, side / 2, side / 2};
        setup.view = View::half180;
        Dewarper dewarper(setup);
        Frame420 input(setup.input);
        std::ranges::fill(input.bytes, kFlat[0]);
        input.bytes[0] = 0; // what an entry without a source shows
        const Frame420 out = dewarper.dewarp(input);
        return out.plane(0)[4 * 320 + 160] == kFlat[0];
    };
    for (int side : {400, 500, 520, 560, 640}) {
        SCOPED_TRACE(side);
        EXPECT_EQ(unwrapIsComplete({side, side}, side / 2), rimIsShown(side));
    }
}

} // namespace
} // namespace lumofe
