#include "Capture.h"
#include "Frames.h"
#include "GuardedBuffer.h"
#include "Isas.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

// A table of w * h entries, all {0, 0}.
struct Table {
    std::vector<int> words;
    explicit Table(int entries) : words(std::size_t(entries) * 2) {}
    int* data() { return words.data(); }
    void set(std::size_t k, std::uint32_t fx, std::uint32_t fy, int index)
    {
        storeEntry(words.data(), k, {fy | fx << 16, index});
    }
};

// Runs the NV12 kernel for one output pixel on a source of `stride` bytes a row.
int sampleOne(Bytes source, int stride, std::uint32_t fx, std::uint32_t fy, int index)
{
    Table table(1);
    table.set(0, fx, fy, index);
    source.resize(source.size() + 64, 128);
    unsigned char out[3] = {};
    CBilinear().Bilinear_NV12_C(source.data(), out, table.data(), 0, 2, 1, 1, stride);
    return out[0];
}

} // namespace

TEST(CBilinear, StartsWithTheSemiPlanarKernel)
{
    EXPECT_TRUE(CBilinear().m_pKernel == &CBilinear::Bilinear_NV12_C);
}

TEST(BilinearSample, NoFractionsGiveTheTopLeftSample)
{
    EXPECT_EQ(sampleOne({7, 9, 11, 200, 201, 202}, 3, 0, 0, 1), 9);
}

TEST(BilinearSample, HalfwayIsTheMeanRoundedDown)
{
    EXPECT_EQ(sampleOne({10, 13, 0, 0}, 2, 128, 0, 0), 11);
    EXPECT_EQ(sampleOne({10, 0, 13, 0}, 2, 0, 128, 0), 11);
    EXPECT_EQ(sampleOne({255, 255, 255, 255}, 2, 128, 128, 0), 255);
}

TEST(BilinearSample, FractionOf256IsTheNeighbour)
{
    EXPECT_EQ(sampleOne({10, 20, 30, 40}, 2, 256, 0, 0), 20);
    EXPECT_EQ(sampleOne({10, 20, 30, 40}, 2, 0, 256, 0), 30);
    EXPECT_EQ(sampleOne({10, 20, 30, 40}, 2, 256, 256, 0), 40);
}

TEST(BilinearSample, WeightsAreExactWithoutRounding)
{
    // (10 * (206 * 250) + 20 * (50 * 250) + 30 * (206 * 6) + 41 * (50 * 6)) >> 16
    EXPECT_EQ(sampleOne({10, 20, 30, 41}, 2, 50, 6, 0), (515000 + 250000 + 37080 + 12300) >> 16);
}

TEST(Packed, ExchangesTheOuterBytesForRgbOnly)
{
    const unsigned char pixel[] = {10, 20, 30};
    Bytes source;
    for (int i = 0; i < 9; ++i)
        source.insert(source.end(), pixel, pixel + 3);
    Table table(4);
    for (std::size_t k = 0; k < 4; ++k)
        table.set(k, 77, 200, 3 * int(k % 2));
    unsigned char rgb[12], yuv[12];
    CBilinear().Bilinear_RGB24_C(source.data(), rgb, table.data(), 3, 3, 2, 2);
    CBilinear().Bilinear_YUV444_C(source.data(), yuv, table.data(), 3, 3, 2, 2);
    for (int k = 0; k < 12; k += 3) {
        EXPECT_EQ(Bytes(rgb + k, rgb + k + 3), (Bytes{30, 20, 10}));
        EXPECT_EQ(Bytes(yuv + k, yuv + k + 3), (Bytes{10, 20, 30}));
    }
}

TEST(Packed, InterpolatesEachByteOnItsOwn)
{
    Bytes source{0, 100, 200, 10, 120, 240, 20, 140, 210, 30, 160, 250};
    Table table(1);
    table.set(0, 128, 128, 0);
    unsigned char out[3];
    CBilinear().Bilinear_YUV444_C(source.data(), out, table.data(), 2, 2, 1, 1);
    EXPECT_EQ(Bytes(out, out + 3), (Bytes{15, 130, 225}));
}

TEST(WholeFrame, AnEmptyEntryShowsTheFirstSampleAndChromaPair)
{
    Bytes nv12{91, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 61, 62, 1, 2, 3, 4, 5, 6};
    Table table(4);
    Bytes out(6);
    CBilinear().Bilinear_NV12_C(nv12.data(), out.data(), table.data(), 4, 4, 2, 2, 4);
    EXPECT_EQ(out, (Bytes{91, 91, 91, 91, 61, 62}));

    Bytes yv12{91, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 61, 1, 1, 1, 62, 2, 2, 2};
    CBilinear().Bilinear_YV12_C(yv12.data(), out.data(), table.data(), 4, 4, 2, 2, 4);
    EXPECT_EQ(out, (Bytes{91, 91, 91, 91, 61, 62}));
}

TEST(WholeFrame, ChromaComesFromTheBlockOfTheTopLeftPixel)
{
    // 8 x 4 source in rows of 8; pair p holds (100 + p, 200 + p).
    Bytes source(48);
    for (int p = 0; p < 8; ++p) {
        source[std::size_t(32 + 2 * p)] = static_cast<unsigned char>(100 + p);
        source[std::size_t(33 + 2 * p)] = static_cast<unsigned char>(200 + p);
    }
    Table table(4);
    table.set(0, 255, 255, 3 * 8 + 5); // row 3, column 5: pair of block row 1, block column 2
    Bytes out(6);
    CBilinear().Bilinear_NV12_C(source.data(), out.data(), table.data(), 0, 4, 2, 2, 8);
    EXPECT_EQ(out[4], 106);
    EXPECT_EQ(out[5], 206);
}

TEST(WholeFrame, OddSizesRoundTheChromaUp)
{
    // 16 x 6 source; chroma sample n of the source holds n.
    Bytes source(16 * 6 * 3 / 2);
    for (int n = 0; n < 24; ++n)
        source[std::size_t(96 + 2 * n)] = source[std::size_t(97 + 2 * n)] =
            static_cast<unsigned char>(n);
    Table table(15); // 5 x 3, entry (x, y) from (2x, 2y)
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            table.set(std::size_t(y * 5 + x), 0, 0, 2 * y * 16 + 2 * x);
    Bytes out(15 + 2 * 6 + 1, 0xEE);
    CBilinear().Bilinear_NV12_C(source.data(), out.data(), table.data(), 16, 6, 5, 3, 16);
    EXPECT_EQ(Bytes(out.begin() + 15, out.end()),
              (Bytes{0, 0, 2, 2, 4, 4, 16, 16, 18, 18, 20, 20, 0xEE}));

    // Separate planes of 8 x 3, the second one a quarter of the luma behind the first.
    for (int n = 0; n < 24; ++n) {
        source[std::size_t(96 + n)] = static_cast<unsigned char>(n);
        source[std::size_t(120 + n)] = static_cast<unsigned char>(100 + n);
    }
    out.assign(out.size(), 0xEE);
    CBilinear().Bilinear_YV12_C(source.data(), out.data(), table.data(), 16, 6, 5, 3, 16);
    // The second output plane begins 15 / 4 bytes behind the first and overwrites its end.
    EXPECT_EQ(Bytes(out.begin() + 15, out.begin() + 25),
              (Bytes{0, 2, 4, 100, 102, 104, 116, 118, 120, 0xEE}));
}

TEST(WholeFrame, OddSourceHeightsRoundTheSecondPlanesOffsetDown)
{
    // 6 x 5 source: luma 30 bytes, first plane at 30, second at 30 + 30 / 4 = 37.
    Bytes source(48);
    source[30] = 1;
    source[37] = 2;
    Table table(4);
    Bytes out(6);
    CBilinear().Bilinear_YV12_C(source.data(), out.data(), table.data(), 6, 5, 2, 2, 6);
    EXPECT_EQ(out[4], 1);
    EXPECT_EQ(out[5], 2);
    // In bands the offset is (6 / 2) * 5 / 2 = 7 as well, but 5 x 5 gives 25 / 4 = 6 and 2 * 5 / 2
    // = 5.
    source.assign(48, 0);
    source[25 + 6] = 3;
    source[25 + 5] = 4;
    CBilinear().Bilinear_YV12_C(source.data(), out.data(), table.data(), 5, 5, 2, 2, 5);
    EXPECT_EQ(out[5], 3);
    CBilinear().Bilinear_YV12_S(source.data(), out.data(), table.data(), 5, 5, 2, 2, 0);
    EXPECT_EQ(out[4], 4);
}

// Widths on both sides of where a row's chroma is copied in pieces.
TEST(WholeFrame, EveryWidthHasTheSameChromaWithEveryInstructionSet)
{
    constexpr int kStride = 40, kRows = 30, kH = 3;
    GuardedBuffer source(kStride * kRows * 3 / 2);
    for (std::size_t i = 0; i < source.size(); ++i)
        source.data()[i] = static_cast<unsigned char>(i * 2654435761u >> 13);
    for (int w = 1; w < 300; w = w == 40 ? 120 : w == 140 ? 250 : w + 1) {
        SCOPED_TRACE(w);
        Table table(w * kH);
        for (int k = 0; k < w * kH; ++k)
            table.set(std::size_t(k), 0x80, 0x40, k * 37 % (kStride * (kRows - 2)));
        const std::size_t pairs = std::size_t((w + 1) / 2 * ((kH + 1) / 2));
        expectSameWithEveryIsa(std::size_t(w * kH) + 2 * pairs, [&](unsigned char* out) {
            const StdoutCapture quiet;
            CBilinear().Bilinear_NV12_C(source.data(), out, table.data(), 0, kRows, w, kH, kStride);
        });
    }
}

TEST(WholeFrame, PrintsTwoTimingLinesWithNoEmptyPixels)
{
    Bytes source = constantFrame(16, 16, FORMAT_NV12, 50);
    Bytes out(6);
    Table table(4);
    const std::string nv12 = printedBy([&] {
        CBilinear().Bilinear_NV12_C(source.data(), out.data(), table.data(), 16, 16, 2, 2, 16);
    });
    EXPECT_EQ(maskTicks(nv12), "Bilinear_NV12_C: luma Tick N, sum_empty_pixel 0\n"
                               "Bilinear_NV12_C: chroma Tick N\n");
    const std::string yv12 = printedBy([&] {
        CBilinear().Bilinear_YV12_C(source.data(), out.data(), table.data(), 16, 16, 2, 2, 16);
    });
    EXPECT_EQ(maskTicks(yv12), "Bilinear_YV12_C: luma Tick N, sum_empty_pixel 0\n"
                               "Bilinear_YV12_C: chroma Tick N\n");
}

TEST(WholeFrame, ReadsNoNeighbourOfWeightZero)
{
    GuardedBuffer source(16 * 8 * 3 / 2);
    for (std::size_t i = 0; i < source.size(); ++i)
        source[i] = static_cast<unsigned char>(i);
    Table table(16 * 8);
    for (int k = 0; k < 16 * 8; ++k)
        table.set(std::size_t(k), 0, 0, k);
    Bytes out(16 * 8 * 3 / 2);
    CBilinear().Bilinear_NV12_C(source.data(), out.data(), table.data(), 16, 8, 16, 8, 16);
    EXPECT_EQ(out, Bytes(source.data(), source.data() + source.size()));
    CBilinear().Bilinear_YV12_C(source.data(), out.data(), table.data(), 16, 8, 16, 8, 16);
    EXPECT_EQ(out, Bytes(source.data(), source.data() + source.size()));

    GuardedBuffer packed(4 * 4 * 3);
    for (std::size_t i = 0; i < packed.size(); ++i)
        packed[i] = static_cast<unsigned char>(3 * i);
    for (int k = 0; k < 16; ++k)
        table.set(std::size_t(k), 0, 0, 3 * k);
    Bytes same(packed.size());
    CBilinear().Bilinear_YUV444_C(packed.data(), same.data(), table.data(), 4, 4, 4, 4);
    EXPECT_EQ(same, Bytes(packed.data(), packed.data() + packed.size()));
}

TEST(WholeFrame, NothingToDoIsHarmless)
{
    unsigned char byte[8] = {1, 2, 3};
    int table[16] = {};
    CBilinear k;
    const std::string printed = printedBy([&] {
        k.Bilinear_NV12_C(nullptr, byte, table, 4, 4, 2, 2, 4);
        k.Bilinear_NV12_C(byte, nullptr, table, 4, 4, 2, 2, 4);
        k.Bilinear_NV12_C(byte, byte, nullptr, 4, 4, 2, 2, 4);
        k.Bilinear_NV12_C(byte, byte, table, 4, 4, 0, 2, 4);
        k.Bilinear_YV12_C(byte, byte, table, 4, 4, 2, -1, 4);
        k.Bilinear_YV12_C(byte, byte, table, 4, 4, 2, 2, 0);
        k.Bilinear_RGB24_C(byte, byte, nullptr, 4, 4, 2, 2);
        k.Bilinear_RGB24_SSE2(byte, byte, table, 4, 4, 1, 1);
        k.Bilinear_RGB24_SSSE3(byte, byte, table, 4, 4, 1, 1);
    });
    EXPECT_EQ(printed, "");
    EXPECT_EQ(Bytes(byte, byte + 3), (Bytes{1, 2, 3}));
}

TEST(Rgb24Forwarder, NeedsElevenColumns)
{
    Bytes source = constantFrame(16, 4, FORMAT_NV12, 50);
    Table table(11 * 2);
    Bytes out(11 * 2 * 2, 0xEE);
    CBilinear k;
    k.Bilinear_RGB24(source.data(), out.data(), table.data(), 16, 4, 10, 2, 16);
    EXPECT_EQ(out[0], 0xEE);
    k.Bilinear_RGB24(nullptr, out.data(), table.data(), 16, 4, 11, 2, 16);
    EXPECT_EQ(out[0], 0xEE);
    k.Bilinear_RGB24(source.data(), out.data(), table.data(), 16, 4, 11, 2, 16);
    EXPECT_EQ(out[0], 50);
    EXPECT_EQ(out[22], 128);
    k.m_pKernel = &CBilinear::Bilinear_YV12_C;
    const std::string printed = printedBy(
        [&] { k.Bilinear_RGB24(source.data(), out.data(), table.data(), 16, 4, 11, 2, 16); });
    EXPECT_EQ(occurrences(printed, "Bilinear_YV12_C"), 2);
}

TEST(InverseMap, AConstantPictureStaysConstantAndTurnsGrey)
{
    // Every combination of a few fractions, on a source of 16 x 4 pixels and chroma 99.
    std::vector<FEMM_DATA> map;
    const unsigned short fractions[] = {0, 1, 128, 255};
    for (auto fy : fractions)
        for (auto fx : fractions)
            map.push_back({fy, fx, unsigned(map.size()) * 2, 0});
    Table table(16);
    for (int luma : {0, 1, 127, 255}) {
        Bytes source(16 * 4 * 3 / 2, 99);
        std::fill_n(source.begin(), 16 * 4, static_cast<unsigned char>(luma));
        GuardedBuffer out(16 * 3 / 2);
        CBilinear().invBilinear_NV12_C(source.data(), out.data(), table.data(), 16, 4, 4, 4,
                                       map.data());
        EXPECT_EQ(Bytes(out.data(), out.data() + 16), Bytes(16, static_cast<unsigned char>(luma)));
        EXPECT_EQ(Bytes(out.data() + 16, out.data() + 24), Bytes(8, 128));
    }
}

TEST(InverseMap, SamplesLumaAsTheMappingTableOfTheSameEntriesDoes)
{
    Bytes source(32 * 8 * 3 / 2);
    for (std::size_t i = 0; i < source.size(); ++i)
        source[i] = static_cast<unsigned char>(i * 37);
    std::vector<FEMM_DATA> map;
    Table table(64);
    for (std::size_t k = 0; k < 64; ++k) {
        const auto fy = static_cast<unsigned short>(k * 29 % 256);
        const auto fx = static_cast<unsigned short>(k * 91 % 256);
        map.push_back({fy, fx, unsigned(k * 3), unsigned(k)});
        table.set(k, fx, fy, int(k * 3));
    }
    Bytes expected(64 * 3 / 2), out(64 * 3 / 2);
    CBilinear().Bilinear_NV12_C(source.data(), expected.data(), table.data(), 32, 8, 8, 8, 32);
    CBilinear().invBilinear_NV12_C(source.data(), out.data(), table.data(), 32, 8, 8, 8,
                                   map.data());
    std::fill(expected.begin() + 64, expected.end(), static_cast<unsigned char>(128));
    EXPECT_EQ(out, expected);
}

TEST(InverseMap, OddSizesHaveAChromaPairForEachSecondPixelOfEachSecondRow)
{
    Bytes source(16 * 4 * 3 / 2, 50);
    std::vector<FEMM_DATA> map(5 * 3);
    Table table(5 * 3);
    GuardedBuffer out(5 * 3 + 3 * 2 * 2);
    CBilinear().invBilinear_NV12_C(source.data(), out.data(), table.data(), 16, 4, 5, 3,
                                   map.data());
    EXPECT_EQ(Bytes(out.data() + 15, out.data() + out.size()), Bytes(12, 128));
}

TEST(InverseMap, PrintsOneLineWithoutLineFeed)
{
    Bytes source(64), out(6);
    FEMM_DATA map[4] = {};
    Table table(4);
    const std::string text = printedBy([&] {
        CBilinear().invBilinear_NV12_C(source.data(), out.data(), table.data(), 4, 4, 2, 2, map);
    });
    EXPECT_EQ(maskTicks(text), "invBilinear_NV12_C: Tick N");
}

TEST(InverseMap, NothingToMapDoesNothing)
{
    Bytes source(64), out(6, 7);
    FEMM_DATA map[4] = {};
    Table table(4);
    CBilinear kernel;
    unsigned char *src = source.data(), *dst = out.data();
    int* tbl = table.data();
    const std::string text = printedBy([&] {
        kernel.invBilinear_NV12_C(nullptr, dst, tbl, 4, 4, 2, 2, map);
        kernel.invBilinear_NV12_C(src, nullptr, tbl, 4, 4, 2, 2, map);
        kernel.invBilinear_NV12_C(src, dst, nullptr, 4, 4, 2, 2, map);
        kernel.invBilinear_NV12_C(src, dst, tbl, 4, 4, 2, 2, nullptr);
        kernel.invBilinear_NV12_C(src, dst, tbl, 0, 4, 2, 2, map);
        kernel.invBilinear_NV12_C(src, dst, tbl, 4, 4, 0, 2, map);
        kernel.invBilinear_NV12_C(src, dst, tbl, 4, 4, 2, -1, map);
    });
    EXPECT_EQ(text, "");
    EXPECT_EQ(out, Bytes(6, 7));
}
