#include "CBilinear.h"
#include "Capture.h"
#include "Frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

// The fixed map as the built library has it.

namespace {

constexpr int kWidth = 1280, kHeight = 1024;

const FEMM_DATA& entry(int row, int col)
{
    return FMMTbl[row * kWidth + col];
}
int sourceRow(const FEMM_DATA& e)
{
    return int(e.index) / kWidth;
}
int sourceCol(const FEMM_DATA& e)
{
    return int(e.index) % kWidth;
}
// Source position in 1/256 pixel.
int rowPosition(int row, int col)
{
    return sourceRow(entry(row, col)) * 256 + entry(row, col).fy;
}
int colPosition(int row, int col)
{
    return sourceCol(entry(row, col)) * 256 + entry(row, col).fx;
}

} // namespace

TEST(FixedMap, RecordsHaveTwelveBytesAndBeginLikeAMappingTableEntry)
{
    static_assert(sizeof(FEMM_DATA) == 12 && alignof(FEMM_DATA) == 4);
    static_assert(offsetof(FEMM_DATA, fy) == 0 && offsetof(FEMM_DATA, fx) == 2);
    static_assert(offsetof(FEMM_DATA, index) == 4 && offsetof(FEMM_DATA, index2) == 8);
    static_assert(sizeof FMMTbl == 1310720 * 12);
    unsigned int word;
    std::memcpy(&word, &entry(512, 640), 4);
    EXPECT_EQ(word, 179u << 16 | 48u);
}

TEST(FixedMap, EveryRecordNamesASourceWithinTheLimitsAndAllFourAreReached)
{
    int rows[2] = {kHeight, 0}, cols[2] = {kWidth, 0};
    for (const FEMM_DATA& e : FMMTbl) {
        rows[0] = std::min(rows[0], sourceRow(e));
        rows[1] = std::max(rows[1], sourceRow(e));
        cols[0] = std::min(cols[0], sourceCol(e));
        cols[1] = std::max(cols[1], sourceCol(e));
        ASSERT_TRUE(e.fy < 256 && e.fx < 256);
        ASSERT_LT(e.index2, 1280u * 1024u);
    }
    EXPECT_EQ(rows[0], 127);
    EXPECT_EQ(rows[1], 896);
    EXPECT_EQ(cols[0], 225);
    EXPECT_EQ(cols[1], 1053);
}

TEST(FixedMap, CornersAndEdgesLeadWhereHostsExpect)
{
    struct Expected {
        int row, col, sourceRow, sourceCol, fy, fx;
    };
    const Expected all[] = {
        {0, 0, 127, 540, 252, 189},      {0, 1, 127, 541, 246, 71},
        {0, 640, 128, 569, 237, 32},     {0, 1279, 129, 554, 195, 213},
        {512, 0, 510, 485, 181, 104},    {512, 640, 510, 1023, 48, 179},
        {512, 1279, 511, 278, 175, 172}, {1023, 640, 895, 693, 122, 224},
        {1023, 1279, 896, 734, 1, 225},
    };
    for (const Expected& t : all) {
        const FEMM_DATA& e = entry(t.row, t.col);
        EXPECT_EQ(sourceRow(e), t.sourceRow) << t.row << ' ' << t.col;
        EXPECT_EQ(sourceCol(e), t.sourceCol) << t.row << ' ' << t.col;
        EXPECT_EQ(e.fy, t.fy) << t.row << ' ' << t.col;
        EXPECT_EQ(e.fx, t.fx) << t.row << ' ' << t.col;
    }
}

TEST(FixedMap, TheFirstRowStartsWithEqualSteps)
{
    for (int x = 0; x < 32; ++x) {
        EXPECT_EQ((entry(0, x + 1).fx - entry(0, x).fx) & 255, 138) << x;
        EXPECT_EQ(colPosition(0, x + 1) - colPosition(0, x), 138) << x;
        const int fall = entry(0, x).fy - entry(0, x + 1).fy;
        EXPECT_TRUE(fall == 6 || fall == 7) << x << ": " << fall;
    }
}

TEST(FixedMap, NeighboursLieCloseAndStepsChangeSlowly)
{
    int step = 0, change = 0; // largest ones, in 1/256 pixel
    const auto look = [&](int a, int b, int c) {
        step = std::max(step, std::abs(b - a));
        change = std::max(change, std::abs(a - 2 * b + c));
    };
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (x + 2 < kWidth) {
                look(rowPosition(y, x), rowPosition(y, x + 1), rowPosition(y, x + 2));
                look(colPosition(y, x), colPosition(y, x + 1), colPosition(y, x + 2));
            }
            if (y + 2 < kHeight) {
                look(rowPosition(y, x), rowPosition(y + 1, x), rowPosition(y + 2, x));
                look(colPosition(y, x), colPosition(y + 1, x), colPosition(y + 2, x));
            }
        }
    }
    EXPECT_LE(step, 3 * 256);
    EXPECT_LE(change, 8);
}

TEST(FixedMap, TheThirdWordIsTheEntrysOwnPlace)
{
    for (unsigned k = 0; k < unsigned(kWidth * kHeight); ++k)
        ASSERT_EQ(FMMTbl[k].index2, k);
}

TEST(FixedMap, IsTheSameInEveryBuild)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(FMMTbl);
    EXPECT_EQ(hashOf(bytes, sizeof FMMTbl), 15650669357691931699u);
}

TEST(FixedMap, KeepsAFlatPictureFlat)
{
    Bytes source(kWidth * kHeight * 3 / 2, 77), out(source.size());
    std::vector<int> table(kWidth * kHeight * 2);
    for (int value : {0, 1, 128, 254, 255}) {
        std::fill_n(source.begin(), kWidth * kHeight, static_cast<unsigned char>(value));
        printedBy([&] {
            CBilinear().invBilinear_NV12_C(source.data(), out.data(), table.data(), kWidth, kHeight,
                                           kWidth, kHeight, FMMTbl);
        });
        const auto chroma = out.begin() + kWidth * kHeight;
        EXPECT_EQ(std::count(out.begin(), chroma, value), kWidth * kHeight) << value;
        EXPECT_EQ(std::count(chroma, out.end(), 128), kWidth * kHeight / 2) << value;
    }
}

TEST(FixedMap, HostsMayWriteToIt)
{
    FEMM_DATA& last = FMMTbl[kWidth * kHeight - 1];
    const FEMM_DATA before = last;
    last.index2 = 0;
    EXPECT_EQ(FMMTbl[1310719].index2, 0u);
    last = before;
}
