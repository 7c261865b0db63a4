#include "Capture.h"
#include "Frames.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

constexpr int kInW = 64, kInH = 160;
constexpr int kOutW = 40, kOutH = 150;

// A table that walks the source with changing fractions.
std::vector<int> walkingTable()
{
    std::vector<int> words(kOutW * kOutH * 2);
    for (int y = 0; y < kOutH; ++y)
        for (int x = 0; x < kOutW; ++x) {
            const std::size_t k = std::size_t(y * kOutW + x);
            const std::uint32_t fx = std::uint32_t(x * 37 + y) % 256,
                                fy = std::uint32_t(y * 91) % 256;
            storeEntry(words.data(), k, {fy | fx << 16, (y + x % 3) * kInW + x + y % 5});
        }
    return words;
}

} // namespace

TEST(BandKernels, ALineOutsideTheFrameIsReturnedAndNothingWritten)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_NV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2, 0xEE);
    CBilinear k;
    for (int line : {kOutH, kOutH + 7, -3}) {
        EXPECT_EQ(k.Bilinear_NV12_S(source.data(), out.data(), table.data(), kInW, kInH, kOutW,
                                    kOutH, line),
                  line);
        EXPECT_EQ(k.Bilinear_YV12_S(source.data(), out.data(), table.data(), kInW, kInH, kOutW,
                                    kOutH, line),
                  line);
    }
    EXPECT_EQ(out, Bytes(out.size(), 0xEE));
}

TEST(BandKernels, TheLastBandIsShort)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_NV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2, 0xEE), whole(out.size());
    CBilinear k;
    k.Bilinear_NV12_C(source.data(), whole.data(), table.data(), kInW, kInH, kOutW, kOutH, kInW);
    EXPECT_EQ(k.Bilinear_NV12_S(source.data(), out.data(), table.data(), kInW, kInH, kOutW, kOutH,
                                kOutH - 10),
              kOutH);
    const std::size_t start = std::size_t(kOutH - 10) * kOutW, end = std::size_t(kOutH) * kOutW;
    for (std::size_t i = 0; i < out.size(); ++i)
        ASSERT_EQ(out[i], i >= start && i < end ? whole[i] : 0xEE) << i;
}

TEST(BandKernels, BandsJoinToTheWholeFrameWithChromaExchanged)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_NV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2, 0xEE), whole(out.size());
    CBilinear k;
    k.Bilinear_NV12_C(source.data(), whole.data(), table.data(), kInW, kInH, kOutW, kOutH, kInW);
    std::vector<int> cursors;
    for (int line = 0; line < kOutH;)
        cursors.push_back(line = k.Bilinear_NV12_S(source.data(), out.data(), table.data(), kInW,
                                                   kInH, kOutW, kOutH, line));
    EXPECT_EQ(cursors, (std::vector<int>{64, 128, 150}));
    for (std::size_t i = kOutW * kOutH; i < whole.size(); i += 2)
        std::swap(whole[i], whole[i + 1]);
    EXPECT_EQ(out, whole);
}

TEST(BandKernels, ChromaRowsAreNumberedLikeTheBandsLumaRows)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_NV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2, 0xEE);
    CBilinear().Bilinear_NV12_S(source.data(), out.data(), table.data(), kInW, kInH, kOutW, kOutH,
                                0);
    const auto chroma = [&](int row) { return out[std::size_t(kOutW * (kOutH + row))]; };
    EXPECT_NE(chroma(0), 0xEE);
    EXPECT_NE(chroma(63), 0xEE);
    EXPECT_EQ(chroma(64), 0xEE); // comes with the second band, together with rows 65 to 74
}

TEST(BandKernels, ThreePlaneBandsPutTheSecondPlaneInTheFirst)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_YV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2, 0xEE), whole(out.size());
    CBilinear k;
    k.Bilinear_YV12_C(source.data(), whole.data(), table.data(), kInW, kInH, kOutW, kOutH, kInW);
    for (int line = 0; line < kOutH;)
        line = k.Bilinear_YV12_S(source.data(), out.data(), table.data(), kInW, kInH, kOutW, kOutH,
                                 line);
    const std::ptrdiff_t luma = kOutW * kOutH, plane = luma / 4;
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + luma, whole.begin()));
    EXPECT_TRUE(
        std::equal(out.begin() + luma, out.begin() + luma + plane, whole.begin() + luma + plane));
    EXPECT_EQ(Bytes(out.begin() + luma + plane, out.end()), Bytes(std::size_t(plane), 0xEE));
}

TEST(BandKernels, PrintNothing)
{
    Bytes source = patternFrame(kInW, kInH, FORMAT_NV12);
    auto table = walkingTable();
    Bytes out(kOutW * kOutH * 3 / 2);
    EXPECT_EQ(printedBy([&] {
                  CBilinear().Bilinear_NV12_S(source.data(), out.data(), table.data(), kInW, kInH,
                                              kOutW, kOutH, 0);
                  CBilinear().Bilinear_YV12_S(source.data(), out.data(), table.data(), kInW, kInH,
                                              kOutW, kOutH, 0);
              }),
              "");
}
