#include "media/Drawing.h"

#include "ToolTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

constexpr Rgb kPaper{200, 210, 220}, kInk{10, 20, 30};

bool is(const Image& image, int x, int y, Rgb colour)
{
    const std::uint8_t* p = image.pixel(x, y);
    return p[0] == colour.r && p[1] == colour.g && p[2] == colour.b;
}

// The picture as text: # is ink.
std::string inkRows(const Image& image)
{
    std::string rows;
    for (int y = 0; y < image.size.height; ++y) {
        for (int x = 0; x < image.size.width; ++x)
            rows += is(image, x, y, kInk) ? '#' : '.';
        rows += '\n';
    }
    return rows;
}

TEST(Drawing, ScaledDownPixelsAreMeans)
{
    Image image({4, 2});
    for (int x = 0; x < 4; ++x)
        for (int y = 0; y < 2; ++y)
            for (int c = 0; c < 3; ++c)
                image.pixel(x, y)[c] = std::uint8_t(40 * x + 20 * y + c);
    const Image half = scaled(image, {2, 1});
    ASSERT_EQ(half.size, (Size{2, 1}));
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(half.pixel(0, 0)[c], 30 + c); // 0, 20, 40, 60
        EXPECT_EQ(half.pixel(1, 0)[c], 110 + c);
    }
    EXPECT_EQ(scaled(image, {4, 2}).bytes, image.bytes);
}

TEST(Drawing, ScalingKeepsAFlatPictureFlatAtAnySize)
{
    const Image flat = filled({37, 23}, kPaper);
    for (Size size : {Size{1, 1}, Size{36, 22}, Size{10, 23}, Size{80, 50}})
        EXPECT_EQ(scaled(flat, size).bytes, filled(size, kPaper).bytes);
}

TEST(Drawing, PasteIsClippedToTheTarget)
{
    for (int y : {-3, 0, 4, 9, 20})
        for (int x : {-3, 0, 4, 9, 20}) {
            Image target = filled({10, 10}, kPaper);
            paste(target, filled({5, 5}, kInk), x, y);
            for (int row = 0; row < 10; ++row)
                for (int column = 0; column < 10; ++column) {
                    const bool inside = column >= x && column < x + 5 && row >= y && row < y + 5;
                    ASSERT_TRUE(is(target, column, row, inside ? kInk : kPaper))
                        << x << " " << y << " " << column << " " << row;
                }
        }
}

TEST(Drawing, TextIsLegible)
{
    Image image = filled({9, 9}, kPaper);
    drawText(image, 1, 0, 1, "T", kInk);
    EXPECT_EQ(inkRows(image), ".#####...\n"
                              "...#.....\n"
                              "...#.....\n"
                              "...#.....\n"
                              "...#.....\n"
                              "...#.....\n"
                              "...#.....\n"
                              ".........\n"
                              ".........\n");
}

TEST(Drawing, TextFillsItsWidthTimesTheScale)
{
    for (int scale : {1, 2, 3}) {
        Image image = filled({400, 40}, kPaper);
        drawText(image, 5, 2, scale, "HjH", kInk);
        int right = 0, bottom = 0;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 400; ++x)
                if (is(image, x, y, kInk)) {
                    right = std::max(right, x);
                    bottom = std::max(bottom, y);
                }
        EXPECT_LT(right, 5 + scale * textWidth("HjH"));
        EXPECT_GT(right, 5 + scale * (textWidth("HjH") - 4));
        EXPECT_LT(bottom, 2 + scale * kTextHeight);
        EXPECT_GT(bottom, 2 + scale * (kTextHeight - 5));
    }
}

TEST(Drawing, OtherCharactersBecomeQuestionMarks)
{
    const auto drawn = [](const std::string& text) {
        Image image = filled({60, 16}, kPaper);
        drawText(image, 0, 0, 1, text, kInk);
        return image.bytes;
    };
    EXPECT_EQ(drawn("a\xC3\xBC\n\x7F"), drawn("a????"));
    EXPECT_NE(drawn("~"), drawn("?"));
    EXPECT_EQ(drawn(" "), drawn(""));
}

TEST(Drawing, LongTextsAreClipped)
{
    Image image = filled({20, 5}, kPaper);
    drawText(image, -4, -2, 2, std::string(1000, 'W'), kInk);
    EXPECT_GT(std::ranges::count(inkRows(image), '#'), 10);
}

TEST(Drawing, CirclesAreDrawnWhereTheyLie)
{
    Image image = filled({7, 7}, kPaper);
    drawCircle(image, 3, 3, 2, 1, kInk);
    for (const auto& [x, y] : {std::pair{1, 3}, {5, 3}, {3, 1}, {3, 5}})
        EXPECT_TRUE(is(image, x, y, kInk)) << x << " " << y;
    for (const auto& [x, y] : {std::pair{3, 3}, {0, 0}, {3, 0}, {6, 6}})
        EXPECT_TRUE(is(image, x, y, kPaper)) << x << " " << y;
}

TEST(Drawing, CirclesHaveSoftEdgesAndMayLeaveThePicture)
{
    Image image = filled({6, 6}, kPaper);
    drawCircle(image, -2, 0, 3.25, 1, kInk);
    // 0.25 off the line's middle: three quarters covered.
    EXPECT_NEAR(image.pixel(1, 0)[0], 200 * 0.25 + 10 * 0.75, 1);
    EXPECT_NEAR(image.pixel(2, 0)[0], 200 * 0.75 + 10 * 0.25, 1);
    EXPECT_TRUE(is(image, 4, 0, kPaper));
}

} // namespace
} // namespace lumofe
