#include "FEDSP.h"
#include "GuardedBuffer.h"
#include "GuardedBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace {

Bytes randomBytes(std::size_t count)
{
    std::mt19937 random(1);
    Bytes bytes(count);
    std::generate(bytes.begin(), bytes.end(),
                  [&] { return static_cast<unsigned char>(random() >> 24); });
    return bytes;
}

// A picture of one row whose buffers end at unreadable pages.
struct Row {
    GuardedBuffer in, out;

    Row(const Bytes& source, std::size_t outBytes) : in(source.size()), out(outBytes)
    {
        std::copy(source.begin(), source.end(), in.data());
        std::fill_n(out.data(), outBytes, static_cast<unsigned char>(0xEE));
    }
    Bytes result() { return Bytes(out.data(), out.data() + out.size()); }
};

Bytes toRgb(const Bytes& yuy2)
{
    Row row(yuy2, yuy2.size() / 4 * 6);
    FEDSP().YUY2_to_RGB24_Normal_c(row.in.data(), 0, row.out.data(), int(yuy2.size() / 2), 1, 0);
    return row.result();
}

Bytes toYuy2(const Bytes& rgb)
{
    Row row(rgb, rgb.size() / 6 * 4);
    FEDSP().RGB24_to_YUY2_Normal_c(row.in.data(), 0, row.out.data(), int(rgb.size() / 3), 1, 0);
    return row.result();
}

// One row of every luma with the same chroma.
Bytes everyLuma(int u, int v)
{
    Bytes yuy2;
    for (int y = 0; y < 256; y += 2)
        for (int byte : {y, u, y + 1, v})
            yuy2.push_back(static_cast<unsigned char>(byte));
    return yuy2;
}

int clampByte(int value)
{
    return std::clamp(value, 0, 255);
}

int rounded(double x)
{
    return int(x + 0.5);
}

} // namespace

TEST(Yuy2ToRgb24, FullLumaReaches254Only)
{
    EXPECT_EQ(toRgb({235, 128, 16, 128}), (Bytes{254, 254, 254, 0, 0, 0}));
}

TEST(Yuy2ToRgb24, ChromaAtItsEndsContributesRoundedAmounts)
{
    const auto lumaOf = [](int y) { return rounded((std::clamp(y, 16, 235) - 16) * 1.164 * 64); };
    EXPECT_EQ(lumaOf(17), 74);
    EXPECT_EQ(lumaOf(128), 8344);
    EXPECT_EQ(lumaOf(255), 16315);
    for (int y = 0; y < 256; ++y) {
        const int luma = lumaOf(y);
        const std::size_t at = std::size_t(y) * 3;
        for (int low : {0, 16}) {
            const Bytes lowU = toRgb(everyLuma(low, 128)), lowV = toRgb(everyLuma(128, low));
            ASSERT_EQ(lowU[at], clampByte((luma - 14464) >> 6)) << y;
            ASSERT_EQ(lowU[at + 1], clampByte((luma + 2803) >> 6)) << y;
            ASSERT_EQ(lowU[at + 2], clampByte(luma >> 6)) << y;
            ASSERT_EQ(lowV[at], clampByte(luma >> 6)) << y;
            ASSERT_EQ(lowV[at + 1], clampByte((luma + 5828) >> 6)) << y;
            ASSERT_EQ(lowV[at + 2], clampByte((luma - 11439) >> 6)) << y;
        }
    }
}

TEST(Yuy2ToRgb24, EveryColourIsTheSumOfRoundedContributionsNearTheFormulaInDoubles)
{
    double worst = 0;
    for (int u = 0; u < 256; ++u) {
        Bytes yuy2;
        for (int v = 0; v < 256; ++v) {
            const Bytes row = everyLuma(u, v);
            yuy2.insert(yuy2.end(), row.begin(), row.end());
        }
        const Bytes rgb = toRgb(yuy2);
        const double cu = std::clamp(u, 16, 240) - 128;
        for (int v = 0; v < 256; ++v) {
            const double cv = std::clamp(v, 16, 240) - 128;
            const int chroma[] = {rounded(cu * 2.018 * 64),
                                  rounded(cu * -0.391 * 64) + rounded(cv * -0.813 * 64),
                                  rounded(cv * 1.596 * 64)};
            const double exactChroma[] = {2.018 * cu, -0.391 * cu - 0.813 * cv, 1.596 * cv};
            for (int y = 0; y < 256; ++y) {
                const double cy = std::clamp(y, 16, 235) - 16;
                const int luma = rounded(cy * 1.164 * 64);
                for (std::size_t c = 0; c < 3; ++c) {
                    const int got = rgb[(std::size_t(v) * 256 + std::size_t(y)) * 3 + c];
                    ASSERT_EQ(got, clampByte((luma + chroma[c]) >> 6)) << y << ' ' << u << ' ' << v;
                    // The shift rounds down: a level stands for the half-open step above it.
                    const double exact = std::clamp(1.164 * cy + exactChroma[c], 0.5, 255.5);
                    worst = std::max(worst, std::abs(got + 0.5 - exact));
                }
            }
        }
    }
    // In 1/64: a positive contribution is up to 0.5 off, a negative one 1.5.
    EXPECT_LE(worst, 0.5 + (0.5 + 1.5 + 1.5) / 64);
}

TEST(Yuy2ToRgb24, AnOddWidthLeavesTheLastColumn)
{
    Row row({235, 128, 235, 128, 235, 128}, 9);
    FEDSP().YUY2_to_RGB24_Normal_c(row.in.data(), 0, row.out.data(), 3, 1, 0);
    EXPECT_EQ(row.result(), (Bytes{254, 254, 254, 254, 254, 254, 0xEE, 0xEE, 0xEE}));
}

TEST(Yuy2ToRgb24, OddRowsWithoutPaddingFollowTheWholeWidth)
{
    // Two rows of 3 pixels: the second starts at byte 6 of the source, at byte 9 of the output.
    Row row({16, 128, 16, 128, 0, 0, 235, 128, 235, 128}, 15);
    FEDSP().YUY2_to_RGB24_Normal_c(row.in.data(), 0, row.out.data(), 3, 2, 0);
    EXPECT_EQ(row.result(),
              (Bytes{0, 0, 0, 0, 0, 0, 0xEE, 0xEE, 0xEE, 254, 254, 254, 254, 254, 254}));
}

TEST(Rgb24ToYuy2, WhiteIs235)
{
    EXPECT_EQ(toYuy2({255, 255, 255, 255, 255, 255}), (Bytes{235, 128, 235, 128}));
}

TEST(Rgb24ToYuy2, BytesAreBlueGreenRed)
{
    EXPECT_EQ(toYuy2({255, 0, 0, 255, 0, 0}), (Bytes{40, 239, 40, 109})); // blue
    EXPECT_EQ(toYuy2({0, 0, 255, 0, 0, 255}), (Bytes{81, 90, 81, 239}));  // red
}

TEST(Rgb24ToYuy2, EveryColourIsTheTruncatedFormulaInDoubles)
{
    Bytes rgb(65536 * 6);
    for (int b = 0; b < 256; ++b) {
        for (std::size_t pair = 0; pair < 65536; ++pair) {
            unsigned char* p = &rgb[pair * 6];
            p[0] = p[3] = static_cast<unsigned char>(b);
            p[1] = p[4] = static_cast<unsigned char>(pair / 256);
            p[2] = p[5] = static_cast<unsigned char>(pair % 256);
        }
        const Bytes yuy2 = toYuy2(rgb);
        for (std::size_t pair = 0; pair < 65536; ++pair) {
            const int g = int(pair / 256), r = int(pair % 256);
            const int y = int(0.257 * r + 0.504 * g + 0.098 * b + 16);
            const int u = int(-0.148 * r - 0.291 * g + 0.439 * b + 128);
            const int v = int(0.439 * r - 0.368 * g - 0.071 * b + 128);
            const unsigned char* got = &yuy2[pair * 4];
            ASSERT_TRUE(got[0] == y && got[1] == u && got[2] == y && got[3] == v)
                << r << ' ' << g << ' ' << b;
        }
    }
}

TEST(Rgb24ToYuy2, ChromaIsTheMeanOfThePairBeforeItIsTruncated)
{
    const Bytes rgb = randomBytes(6 * 1000);
    const Bytes yuy2 = toYuy2(rgb);
    for (std::size_t i = 0; i < 1000; ++i) {
        const auto u = [&](std::size_t p) {
            return -0.148 * rgb[p + 2] - 0.291 * rgb[p + 1] + 0.439 * rgb[p] + 128;
        };
        const auto v = [&](std::size_t p) {
            return 0.439 * rgb[p + 2] - 0.368 * rgb[p + 1] - 0.071 * rgb[p] + 128;
        };
        EXPECT_EQ(yuy2[4 * i + 1], int((u(6 * i) + u(6 * i + 3)) / 2.0));
        EXPECT_EQ(yuy2[4 * i + 3], int((v(6 * i) + v(6 * i + 3)) / 2.0));
    }
}

TEST(Rgb24ToYuy2, AnOddWidthTakesAPixelFromBehindTheRow)
{
    Row row({0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255}, 8);
    FEDSP().RGB24_to_YUY2_Normal_c(row.in.data(), 0, row.out.data(), 3, 1, 0);
    EXPECT_EQ(row.result(), (Bytes{16, 128, 16, 128, 16, 128, 235, 128}));
}

TEST(ColourRoundTrip, StaysWithinAFewLevels)
{
    // Truncation twice, and 1.164 and its kin being rounded: greys lose most.
    for (int grey = 0; grey < 256; ++grey) {
        const Bytes rgb(6, static_cast<unsigned char>(grey));
        for (int back : toRgb(toYuy2(rgb)))
            EXPECT_LE(std::abs(back - grey), 4) << grey;
    }
    const Bytes pixel = randomBytes(3 * 2000);
    for (std::size_t i = 0; i < pixel.size(); i += 3) {
        const Bytes rgb{pixel[i], pixel[i + 1], pixel[i + 2], pixel[i], pixel[i + 1], pixel[i + 2]};
        const Bytes back = toRgb(toYuy2(rgb));
        for (std::size_t c = 0; c < 6; ++c)
            ASSERT_LE(std::abs(back[c] - rgb[c]), 6) << i;
    }
}

TEST(Rgb24ToYuy2, OddRowsWithoutPaddingFollowTheWholeWidth)
{
    // Two rows of 3 pixels, white and black: the second starts at byte 9 of the source, at byte 6
    // of the output.
    Bytes source(9, 255);
    source.resize(9 + 12, 0);
    Row row(source, 6 + 8);
    FEDSP().RGB24_to_YUY2_Normal_c(row.in.data(), 0, row.out.data(), 3, 2, 0);
    EXPECT_EQ(row.result(),
              (Bytes{235, 128, 235, 128, 235, 128, 16, 128, 16, 128, 16, 128, 16, 128}));
}

// What both conversions with strides do with them.
class Strides : public testing::Test {
protected:
    static constexpr int width = 6, height = 3;
    Bytes tightYuy2 = randomBytes(width * 2 * height);
    Bytes tightRgb = randomBytes(width * 3 * height);

    static Bytes padded(const Bytes& tight, int rowBytes, int stride)
    {
        Bytes rows(std::size_t(stride) * height, 0x55);
        for (int y = 0; y < height; ++y)
            std::copy_n(tight.begin() + y * rowBytes, rowBytes, rows.begin() + y * stride);
        return rows;
    }
    static Bytes reversed(const Bytes& tight, int rowBytes)
    {
        Bytes rows;
        for (int y = height; y-- > 0;)
            rows.insert(rows.end(), tight.begin() + y * rowBytes,
                        tight.begin() + (y + 1) * rowBytes);
        return rows;
    }
    static Bytes toRgb(Bytes source, int srcStride, int dstStride, int signedHeight)
    {
        Bytes out(std::size_t(dstStride) * height, 0xEE);
        FEDSP().YUY2_to_RGB24_Normal_c(source.data(), srcStride, out.data(), width, signedHeight,
                                       dstStride);
        return out;
    }
    static Bytes toYuy2(Bytes source, int srcStride, int dstStride, int signedHeight)
    {
        Bytes out(std::size_t(dstStride) * height, 0xEE);
        FEDSP().RGB24_to_YUY2_Normal_c(source.data(), srcStride, out.data(), width, signedHeight,
                                       dstStride);
        return out;
    }
};

TEST_F(Strides, PaddedRowsGiveTheSamePixelsAndKeepTheirPadding)
{
    const Bytes rgb = toRgb(tightYuy2, 12, 18, height);
    Bytes expected(23 * height, 0xEE);
    for (int y = 0; y < height; ++y)
        std::copy_n(rgb.begin() + y * 18, 18, expected.begin() + y * 23);
    EXPECT_EQ(toRgb(padded(tightYuy2, 12, 17), 17, 23, height), expected);

    const Bytes yuy2 = toYuy2(tightRgb, 18, 12, height);
    Bytes expectedYuy2(19 * height, 0xEE);
    for (int y = 0; y < height; ++y)
        std::copy_n(yuy2.begin() + y * 12, 12, expectedYuy2.begin() + y * 19);
    EXPECT_EQ(toYuy2(padded(tightRgb, 18, 21), 21, 19, height), expectedYuy2);
}

TEST_F(Strides, AStrideBelowOneMeansNoPadding)
{
    for (int none : {0, -1, -99}) {
        Bytes rgb(width * 3 * height), yuy2(width * 2 * height);
        FEDSP().YUY2_to_RGB24_Normal_c(tightYuy2.data(), none, rgb.data(), width, height, none);
        EXPECT_EQ(rgb, toRgb(tightYuy2, 12, 18, height)) << none;
        FEDSP().RGB24_to_YUY2_Normal_c(tightRgb.data(), none, yuy2.data(), width, height, none);
        EXPECT_EQ(yuy2, toYuy2(tightRgb, 18, 12, height)) << none;
    }
}

TEST_F(Strides, ANegativeHeightReadsTheRowsInReverse)
{
    EXPECT_EQ(toRgb(tightYuy2, 12, 18, -height), toRgb(reversed(tightYuy2, 12), 12, 18, height));
    EXPECT_EQ(toRgb(padded(tightYuy2, 12, 17), 17, 18, -height),
              toRgb(reversed(tightYuy2, 12), 12, 18, height));
    EXPECT_EQ(toRgb(tightYuy2, 0, 18, -height), toRgb(tightYuy2, 12, 18, -height));
    EXPECT_EQ(toYuy2(tightRgb, 18, 12, -height), toYuy2(reversed(tightRgb, 18), 18, 12, height));
    EXPECT_EQ(toRgb(tightYuy2, 12, 18, -1), toRgb(tightYuy2, 12, 18, 1));
}

TEST(Yuy2ToYuv444, SharesTheChromaOfAPair)
{
    Row row({1, 2, 3, 4, 5, 6, 7, 8}, 12);
    FEDSP().YUY2_to_YUV444(row.in.data(), row.out.data(), 2, 2);
    EXPECT_EQ(row.result(), (Bytes{1, 2, 4, 3, 2, 4, 5, 6, 8, 7, 6, 8}));
}

TEST(Yuy2ToYuv444, AnOddPixelAtTheEndIsLeftOut)
{
    // 3 x 3 pixels are 4 pairs: rows do not matter.
    Row row(randomBytes(16), 27);
    FEDSP().YUY2_to_YUV444(row.in.data(), row.out.data(), 3, 3);
    const Bytes out = row.result();
    EXPECT_EQ(out[21], row.in[14]);
    EXPECT_EQ(out[24], 0xEE);
    EXPECT_EQ(out[26], 0xEE);
}

TEST(Yuy2ToYuv444, LosesNothing)
{
    const Bytes yuy2 = randomBytes(2 * 64 * 8);
    Row row(yuy2, 3 * 64 * 8);
    FEDSP().YUY2_to_YUV444(row.in.data(), row.out.data(), 64, 8);
    const Bytes yuv = row.result();
    Bytes back;
    for (std::size_t i = 0; i < yuv.size(); i += 6)
        back.insert(back.end(), {yuv[i], yuv[i + 1], yuv[i + 3], yuv[i + 5]});
    EXPECT_EQ(back, yuy2);
}

TEST(Nv12ToYuv444, ChromaRunsWithThePixelsAndChangesItsOrder)
{
    // 4 x 2 pixels, pairs (101, 102) and (103, 104).
    Row row({1, 2, 3, 4, 5, 6, 7, 8, 101, 102, 103, 104}, 24);
    FEDSP().YUY2_to_NV12_YUV444(row.in.data(), row.out.data(), 4, 2);
    EXPECT_EQ(row.result(), (Bytes{1, 102, 101, 2, 102, 101, 3, 102, 101, 4, 102, 101,
                                   5, 104, 103, 6, 104, 103, 7, 104, 103, 8, 104, 103}));
}

TEST(Nv12ToYuv444, ReadsAsManyPairsAsTheHeaderSays)
{
    for (int width = 1; width <= 9; ++width) {
        const std::size_t n = std::size_t(width);
        Row row(randomBytes(n + (n + 3) / 4 * 2), 3 * n);
        FEDSP().YUY2_to_NV12_YUV444(row.in.data(), row.out.data(), width, 1);
        EXPECT_EQ(row.result()[3 * n - 1], row.in[n + (n - 1) / 4 * 2]);
    }
}

TEST(Nv12ToPairs, ChromaStartsAtItsSecondByteAndAdvancesByOne)
{
    Row row({1, 2, 3, 4, 101, 102, 103, 104, 105}, 8);
    FEDSP().YUY2_to_YUV444_NV12(row.in.data(), row.out.data(), 2, 2);
    EXPECT_EQ(row.result(), (Bytes{1, 102, 2, 103, 3, 104, 4, 105}));
}

TEST(Nv12ToPairs, ReadsOneByteMoreThanTwiceThePixels)
{
    for (int width = 1; width <= 9; ++width) {
        const std::size_t n = std::size_t(width);
        Row row(randomBytes(2 * n + 1), 2 * n);
        FEDSP().YUY2_to_YUV444_NV12(row.in.data(), row.out.data(), width, 1);
        EXPECT_EQ(row.result()[2 * n - 1], row.in[2 * n]);
    }
}

TEST(ColourConversions, NothingToConvertDoesNothing)
{
    FEDSP engine;
    Row row(randomBytes(12), 12);
    unsigned char *in = row.in.data(), *out = row.out.data();
    const int sizes[][2] = {{0, 1}, {1, 0}, {-2, 1}, {0, -1}};
    for (const auto& size : sizes) {
        engine.YUY2_to_RGB24_Normal_c(in, 0, out, size[0], size[1], 0);
        engine.RGB24_to_YUY2_Normal_c(in, 0, out, size[0], size[1], 0);
        engine.YUY2_to_YUV444(in, out, size[0], size[1]);
        engine.YUY2_to_NV12_YUV444(in, out, size[0], size[1]);
        engine.YUY2_to_YUV444_NV12(in, out, size[0], size[1]);
    }
    engine.YUY2_to_YUV444(in, out, 2, -1);
    engine.YUY2_to_NV12_YUV444(in, out, 2, -1);
    engine.YUY2_to_YUV444_NV12(in, out, 2, -1);
    EXPECT_EQ(row.result(), Bytes(12, 0xEE));

    using Buffers = std::pair<unsigned char*, unsigned char*>;
    for (const Buffers& buffers : {Buffers{nullptr, out}, Buffers{in, nullptr}}) {
        unsigned char *src = buffers.first, *dst = buffers.second;
        engine.YUY2_to_RGB24_Normal_c(src, 0, dst, 2, 1, 0);
        engine.RGB24_to_YUY2_Normal_c(src, 0, dst, 2, 1, 0);
        engine.YUY2_to_YUV444(src, dst, 2, 1);
        engine.YUY2_to_NV12_YUV444(src, dst, 2, 1);
        engine.YUY2_to_YUV444_NV12(src, dst, 2, 1);
    }
    EXPECT_EQ(row.result(), Bytes(12, 0xEE));
}
