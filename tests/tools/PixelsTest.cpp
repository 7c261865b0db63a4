#include "media/Pixels.h"

#include "ToolTestSupport.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;

Image filled(Size size, int r, int g, int b)
{
    Image image(size);
    for (std::size_t i = 0; i < image.bytes.size(); i += 3) {
        image.bytes[i] = std::uint8_t(r);
        image.bytes[i + 1] = std::uint8_t(g);
        image.bytes[i + 2] = std::uint8_t(b);
    }
    return image;
}

TEST(Pixels, PrimariesHaveTheirJpegValues)
{
    const struct {
        int rgb[3];
        int yuv[3];
    } kCases[] = {{{255, 255, 255}, {255, 128, 128}}, {{0, 0, 0}, {0, 128, 128}},
                  {{255, 0, 0}, {76, 85, 255}},       {{0, 255, 0}, {150, 44, 21}},
                  {{0, 0, 255}, {29, 255, 107}},      {{128, 128, 128}, {128, 128, 128}}};
    for (const auto& c : kCases) {
        const Frame420 frame = toFrame420(filled({2, 2}, c.rgb[0], c.rgb[1], c.rgb[2]));
        for (int plane = 0; plane < 3; ++plane)
            EXPECT_EQ(frame.plane(plane)[0], c.yuv[plane])
                << c.rgb[0] << " " << c.rgb[1] << " " << c.rgb[2] << " plane " << plane;
    }
}

TEST(Pixels, EvenColoursSurviveARoundTripWithinTwoSteps)
{
    for (int r = 0; r < 256; r += 51) {
        for (int g = 0; g < 256; g += 51) {
            for (int b = 0; b < 256; b += 51) {
                const Image back = toImage(toFrame420(filled({4, 4}, r, g, b)));
                EXPECT_LE(std::abs(back.pixel(1, 2)[0] - r), 2);
                EXPECT_LE(std::abs(back.pixel(1, 2)[1] - g), 2);
                EXPECT_LE(std::abs(back.pixel(1, 2)[2] - b), 2);
            }
        }
    }
}

// Measured 54.7 dB.
TEST(Pixels, GradientSurvivesARoundTrip)
{
    const Image image = test::gradient({160, 120});
    EXPECT_GT(test::psnr(image, toImage(toFrame420(image))), 50);
}

TEST(Pixels, OddSizesKeepTheirLastColumnAndRow)
{
    Image image = filled({5, 3}, 0, 0, 0);
    for (int c = 0; c < 3; ++c)
        image.pixel(4, 2)[c] = 255;
    const Frame420 frame = toFrame420(image);
    EXPECT_EQ(frame.planeSize(1), (Size{3, 2}));
    EXPECT_EQ(frame.plane(0)[14], 255);
    EXPECT_GE(toImage(frame).pixel(4, 2)[0], 250);
}

TEST(Pixels, ChromaIsInterpolatedBetweenBlocks)
{
    Frame420 frame({4, 2});
    std::fill(frame.bytes.begin(), frame.bytes.end(), std::uint8_t(128));
    frame.plane(2)[1] = 228; // red on the right
    const Image image = toImage(frame);
    EXPECT_LT(image.pixel(0, 0)[0], image.pixel(1, 0)[0]);
    EXPECT_LT(image.pixel(1, 0)[0], image.pixel(2, 0)[0]);
    EXPECT_LT(image.pixel(2, 0)[0], image.pixel(3, 0)[0]);
}

TEST(Pixels, PairsHoldUFirst)
{
    const Size size{4, 2};
    const Bytes planar{1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 20, 21};
    Bytes pairs(planar.size()), back(planar.size());
    interleaveChroma(planar.data(), pairs.data(), size);
    EXPECT_EQ(pairs, (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 10, 20, 11, 21}));
    separateChroma(pairs.data(), back.data(), size);
    EXPECT_EQ(back, planar);
}

TEST(Pixels, CroppingDropsTheLastColumnAndRow)
{
    const Image image = test::gradient({7, 5});
    const Image even = cropToEven(image);
    ASSERT_EQ(even.size, (Size{6, 4}));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(even.pixel(x, y)[c], image.pixel(x, y)[c]);
}

TEST(Pixels, CroppingAFrameKeepsItsPlanesApart)
{
    Frame420 frame({5, 3});
    for (std::size_t i = 0; i < frame.bytes.size(); ++i)
        frame.bytes[i] = std::uint8_t(i);
    // Luma 5 x 3, chroma 3 x 2 at 15 and at 21.
    EXPECT_EQ(cropToEven(frame).bytes, (Bytes{0, 1, 2, 3, 5, 6, 7, 8, 15, 16, 21, 22}));
}

TEST(Pixels, RowsAreReversed)
{
    const Bytes rows{1, 2, 3, 4, 5, 6};
    Bytes turned(6);
    copyUpsideDown(rows.data(), turned.data(), 2, 3);
    EXPECT_EQ(turned, (Bytes{5, 6, 3, 4, 1, 2}));
}

TEST(Pixels, RowsAreReversedInPlace)
{
    Bytes even{0, 1, 2, 3, 4, 5, 6, 7}, odd{0, 1, 2, 3, 4, 5}, none{7};
    reverseRows(even.data(), 2, 4);
    EXPECT_EQ(even, (Bytes{6, 7, 4, 5, 2, 3, 0, 1}));
    reverseRows(odd.data(), 2, 3);
    EXPECT_EQ(odd, (Bytes{4, 5, 2, 3, 0, 1}));
    reverseRows(none.data(), 1, 0);
    EXPECT_EQ(none, (Bytes{7}));
}

TEST(Pixels, RedAndBlueAreExchanged)
{
    Image image = filled({2, 1}, 1, 2, 3);
    exchangeRedAndBlue(image);
    EXPECT_EQ(image.bytes, (Bytes{3, 2, 1, 3, 2, 1}));
}

} // namespace
} // namespace lumofe
