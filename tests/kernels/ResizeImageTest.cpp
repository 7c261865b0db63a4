#include "Capture.h"
#include "Frames.h"
#include "GuardedBuffer.h"
#include "Isas.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

int resize(unsigned char* src, unsigned char* dst, int srcW, int srcH, int dstW, int dstH)
{
    return FEDSP().resize_image(src, dst, srcW, srcH, dstW, dstH);
}

} // namespace

TEST(ResizeImage, EqualSizesReproduceAllButTheLastTwoRowsAndColumns)
{
    Bytes src = patternFrame(32, 24, FORMAT_NV12), out(src.size(), 0xEE);
    EXPECT_EQ(resize(src.data(), out.data(), 32, 24, 32, 24), 0);
    for (std::size_t y = 0; y < 24; ++y)
        for (std::size_t x = 0; x < 32; ++x)
            ASSERT_EQ(out[32 * y + x], x < 30 && y < 22 ? src[32 * y + x] : 0);
    for (std::size_t y = 0; y < 12; ++y)
        for (std::size_t x = 0; x < 32; ++x) {
            const std::size_t i = 32 * (24 + y) + x;
            ASSERT_EQ(out[i], x < 28 && y < 10 ? src[i] : 0x80);
        }
}

TEST(ResizeImage, HalvesAndDoubles)
{
    Bytes src(16 * 16 * 3 / 2, 128);
    for (std::size_t i = 0; i < 256; ++i)
        src[i] = static_cast<unsigned char>(i % 16 * 10);
    Bytes half(8 * 8 * 3 / 2), twice(32 * 32 * 3 / 2);
    EXPECT_EQ(resize(src.data(), half.data(), 16, 16, 8, 8), 0);
    EXPECT_EQ(half[3], 60);
    EXPECT_EQ(half[6], 120);
    EXPECT_EQ(half[7], 0); // source column 14
    EXPECT_EQ(resize(src.data(), twice.data(), 16, 16, 32, 32), 0);
    EXPECT_EQ(twice[7], 35);
    EXPECT_EQ(twice[27], 135);
    EXPECT_EQ(twice[28], 0);
    EXPECT_EQ(twice[32 * 28], 0);
}

TEST(ResizeImage, AConstantImageStaysConstantInside)
{
    Bytes src = constantFrame(1080, 256, FORMAT_NV12, 77);
    Bytes out(1280 * 252 * 3 / 2);
    EXPECT_EQ(resize(src.data(), out.data(), 1080, 256, 1280, 252), 0);
    // Source column 1078 begins at 1277.6, source row 254 at 250.03.
    for (std::size_t y = 0; y < 252; ++y)
        for (std::size_t x = 0; x < 1280; ++x)
            ASSERT_EQ(out[1280 * y + x], x <= 1277 && y <= 250 ? 77 : 0) << x << " " << y;
}

TEST(ResizeImage, ASizeOfZeroCannotBeInverted)
{
    Bytes src(96), out(96, 0xEE);
    const std::string line = "resize_image:: RTInv() Error!! ";
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(resize(src.data(), out.data(), 8, 8, 0, 8), 31); }),
              "Z ~= 0  0.000000\n" + line);
    EXPECT_EQ(out, Bytes(96, 0xEE));
    EXPECT_EQ(resize(src.data(), out.data(), 0, 8, 8, 8), -1);
    EXPECT_EQ(resize(src.data(), out.data(), 8, 8, 8, -8), -1);
    // Their product fits no 32-bit offset.
    EXPECT_EQ(resize(src.data(), out.data(), -2147483647 - 1, 21, 1 << 30, 21), -1);
    EXPECT_EQ(out, Bytes(96, 0xEE));
}

TEST(ResizeImage, OddSizesStayInsideTheirImages)
{
    for (auto [w, h] : {std::pair{33, 21}, {32, 21}, {33, 20}}) {
        GuardedBuffer src(std::size_t(w * h + w / 2 * (h / 2) * 2));
        std::fill_n(src.data(), src.size(), static_cast<unsigned char>(90));
        GuardedBuffer out(std::size_t(47 * 31 + 23 * 15 * 2));
        EXPECT_EQ(resize(src.data(), out.data(), w, h, 47, 31), 0);
        EXPECT_EQ(out[0], 90);
        EXPECT_EQ(out[47 * 31], 90);
    }
}

TEST(ResizeImage, EveryInstructionSetGivesTheSamePicture)
{
    std::mt19937 random(6);
    const auto side = [&](int most) {
        return 1 + int(std::uint32_t(random()) % std::uint32_t(most));
    };
    for (int round = 0; round < 400; ++round) {
        const int most = round % 8 == 0 ? 1200 : 90;
        const int srcW = side(most), srcH = side(90), dstW = side(most), dstH = side(90);
        const auto bytes = [](int w, int h) { return std::size_t(w * h + w / 2 * (h / 2) * 2); };
        GuardedBuffer src(bytes(srcW, srcH));
        for (std::size_t i = 0; i < src.size(); ++i)
            src[i] = static_cast<unsigned char>(round % 3 == 0 ? random() % 2 * 255 : random());
        SCOPED_TRACE(testing::Message()
                     << srcW << " x " << srcH << " to " << dstW << " x " << dstH);
        expectSameWithEveryIsa(bytes(dstW, dstH), [&](unsigned char* out) {
            resize(src.data(), out, srcW, srcH, dstW, dstH);
        });
        if (HasFailure()) return;
    }
}
