#include "Frames.h"
#include "Isas.h"
#include "mapping/MapEntry.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace fe;

namespace {

constexpr int kW = 1080, kRadius = 300, kIn = 1280;
constexpr std::uint32_t kOld = 0xABCD1234u;

class PanoramaPolar : public testing::Test {
protected:
    PanoramaPolar() { engine.m_nPitch = kIn; }

    void build(int mode, int rotation = 0, int shift = 0, int width = kW, int radius = kRadius,
               int inW = kIn, int inH = 1024)
    {
        table.assign((std::size_t(radius) * std::size_t(width) + 1) * 2, int(kOld));
        engine.InitCPIBuffer_360(500, 600, radius, inW, inH, table.data(), rotation, nullptr,
                                 nullptr, mode, shift, width);
    }
    MapEntry at(int row, int column, int width = kW) const
    {
        return loadEntry(table.data(), std::size_t(row) * std::size_t(width) + std::size_t(column));
    }
    double row(const MapEntry& e) const { return e.index / kIn + (e.fractions & 0xFFFF) / 256.0; }
    double col(const MapEntry& e) const { return e.index % kIn + (e.fractions >> 16) / 256.0; }
    bool empty(const MapEntry& e) const { return e.fractions == 0 && e.index == 0; }
    bool old(const MapEntry& e) const { return e.fractions == kOld && e.index == int(kOld); }

    FEDSP engine;
    std::vector<int> table;
};

} // namespace

TEST_F(PanoramaPolar, TheFirstRowIsTheCentre)
{
    build(0);
    for (int c = 0; c < kW; ++c) {
        EXPECT_EQ(at(0, c).index, 500 * kIn + 600);
        EXPECT_EQ(at(0, c).fractions, 0u);
    }
}

TEST_F(PanoramaPolar, AColumnIsAThirdOfADegreeClockwiseFromTheColumnAxis)
{
    build(0);
    for (int n : {1, 20, 100, 147}) {
        EXPECT_NEAR(row(at(n, 0)), 500, 1 / 128.0);
        EXPECT_NEAR(col(at(n, 0)), 600 + 2 * n, 1 / 128.0);
        EXPECT_NEAR(row(at(n, 270)), 500 + 2 * n, 1 / 128.0); // straight down the image
        EXPECT_NEAR(col(at(n, 270)), 600, 1 / 128.0);
        EXPECT_NEAR(row(at(n, 540)), 500, 1 / 128.0);
        EXPECT_NEAR(col(at(n, 540)), 600 - 2 * n, 1 / 128.0);
        EXPECT_NEAR(row(at(n, 810)), 500 - 2 * n, 1 / 128.0);
        const double last = (kW - 1) / 3.0 * M_PI / 180; // one step short of a full turn
        EXPECT_NEAR(row(at(n, kW - 1)), 500 + 2 * n * std::sin(last), 1 / 64.0);
        EXPECT_NEAR(col(at(n, kW - 1)), 600 + 2 * n * std::cos(last), 1 / 64.0);
    }
}

TEST_F(PanoramaPolar, RowsStandForTwoPixelsAndEndThreeBeforeTheCircle)
{
    build(0);
    EXPECT_NEAR(col(at(148, 0)), 600 + 296, 1 / 128.0); // the last even radius below 297
    EXPECT_TRUE(old(at(149, 0)));
}

TEST_F(PanoramaPolar, TheRotationTurnsTheFirstColumnAndIsReducedByTheWidth)
{
    build(0, 90);
    EXPECT_NEAR(row(at(50, 0)), 600, 1 / 128.0);
    build(0, 5);
    const auto five = table;
    build(0, kW + 5);
    EXPECT_EQ(table, five);
    build(0, -90);
    EXPECT_NEAR(row(at(50, 0)), 400, 1 / 128.0);
}

TEST_F(PanoramaPolar, APointThatLeavesTheFrameOnOneAxisIsEmpty)
{
    build(0, 0, 0, kW, 700);           // reaches column 1294, row 1194 and rows below 0
    EXPECT_FALSE(empty(at(338, 0)));   // column 1276
    EXPECT_TRUE(empty(at(339, 0)));    // column 1278 > 1280 - 3
    EXPECT_FALSE(empty(at(260, 270))); // row 1020
    EXPECT_TRUE(empty(at(261, 270)));  // row 1022 > 1024 - 3
    EXPECT_FALSE(empty(at(249, 810))); // row 2
    EXPECT_TRUE(empty(at(251, 810)));  // row -2
}

TEST_F(PanoramaPolar, TablesLargerThanTheInputStopThere)
{
    build(0, 0, 0, 100, 300, 70, 70); // 4900 pixels: radii 0 to 48 of 100 columns
    EXPECT_TRUE(empty(at(24, 99, 100)));
    EXPECT_FALSE(old(at(24, 99, 100)));
    EXPECT_TRUE(empty(at(25, 0, 100))); // the one empty entry at the end
    EXPECT_TRUE(old(at(25, 1, 100)));
}

TEST_F(PanoramaPolar, StraightCopy)
{
    build(1);
    for (int n : {0, 3, 148})
        for (int c : {1, 500, 1079}) {
            EXPECT_EQ(at(n, c).index, (2 * n + 150) * kIn + c);
            EXPECT_EQ(at(n, c).fractions, 0u);
        }
    EXPECT_TRUE(empty(at(3, 0))); // column 0 counts as outside
}

TEST_F(PanoramaPolar, TheMirroredUnwrapRunsRightToLeftWithABlankCentre)
{
    build(2);
    for (int r = 0; r < 60; r += 2)
        for (int c : {0, 1, 1079})
            EXPECT_TRUE(empty(loadEntry(table.data(), std::size_t(kW * (r + 1) - c)))) << r;
    // Radius 100 looking along the column axis is the first entry of the next row.
    const MapEntry first = loadEntry(table.data(), std::size_t(kW) * 101);
    EXPECT_NEAR(col(first), 700, 1 / 128.0);
    const MapEntry quarter = loadEntry(table.data(), std::size_t(kW) * 101 - 270);
    EXPECT_NEAR(row(quarter), 600, 1 / 128.0);
    EXPECT_TRUE(old(loadEntry(table.data(), std::size_t(kW) * 101 + 5))); // odd rows stay
    EXPECT_TRUE(old(at(0, 0)));
}

TEST_F(PanoramaPolar, TheMirroredUnwrapTurnsTheOtherWay)
{
    build(2, 90);
    EXPECT_NEAR(row(loadEntry(table.data(), std::size_t(kW) * 101)), 400, 1 / 128.0);
}

TEST_F(PanoramaPolar, TheShiftMovesAllButTheBlankCentre)
{
    build(2, 0, 1);
    const int rows = kRadius / 5;
    EXPECT_NEAR(col(loadEntry(table.data(), std::size_t(kW) * std::size_t(101 - rows))), 700,
                1 / 128.0);
    EXPECT_TRUE(old(loadEntry(table.data(), std::size_t(kW) * 239))); // 296 - 60 was the last

    // Moved as well, the centre would lie before the table.
    std::vector<int> room(std::size_t(2 * kW) * std::size_t(kRadius + rows), int(kOld));
    int* inside = room.data() + 2 * kW * rows;
    engine.InitCPIBuffer_360(500, 600, kRadius, kIn, 1024, inside, 0, nullptr, nullptr, 2, 1, kW);
    EXPECT_TRUE(std::all_of(room.data(), inside, [](int w) { return w == int(kOld); }));
    EXPECT_NE(inside[2], int(kOld));
}

TEST_F(PanoramaPolar, OtherModesNullTablesAndEmptySizesDoNothing)
{
    for (int mode : {3, -1}) {
        build(mode);
        EXPECT_TRUE(std::all_of(table.begin(), table.end(), [](int w) { return w == int(kOld); }));
    }
    engine.InitCPIBuffer_360(1, 2, 300, kIn, 1024, nullptr, 0, nullptr, nullptr, 0, 0, kW);
    for (auto [width, radius] :
         {std::pair{0, 300}, {-5, 300}, {100, 3}, {100, -300}, {100, INT_MIN}}) {
        table.assign(100, int(kOld));
        engine.InitCPIBuffer_360(1, 2, radius, kIn, 1024, table.data(), 7, nullptr, nullptr, 0, 0,
                                 width);
        EXPECT_EQ(table, std::vector<int>(100, int(kOld)));
    }
}

TEST_F(PanoramaPolar, ATinyInputHasOneEntryForEachPixelAndAnEmptyOne)
{
    const int width = 10, pixels = 6;
    table.assign((pixels + 2) * 2, int(kOld));
    engine.InitCPIBuffer_360(1, 1, 40, 3, 2, table.data(), 0, nullptr, nullptr, 0, 0, width);
    EXPECT_TRUE(empty(at(0, pixels, width)));
    EXPECT_EQ(table[(pixels + 1) * 2], int(kOld));
}

TEST_F(PanoramaPolar, NegativeSizesHaveNoPixels)
{
    table.assign(4, int(kOld));
    engine.InitCPIBuffer_360(1, 1, 40, -5, -7, table.data(), 0, nullptr, nullptr, 0, 0, kW);
    EXPECT_TRUE(empty(at(0, 0)));
    EXPECT_EQ(table[2], int(kOld));
}

TEST_F(PanoramaPolar, AnInputOfTheLowestSizeLeavesEveryEntryEmpty)
{
    table.assign((37 * kW + 1) * 2, int(kOld));
    engine.InitCPIBuffer_360(1, 1, 40, INT_MIN, INT_MIN, table.data(), 0, nullptr, nullptr, 2, 0,
                             kW);
    EXPECT_TRUE(empty(at(8, 20)));
}

TEST(Polar, EveryInstructionSetBuildsTheSameTable)
{
    std::mt19937 random(4);
    const auto between = [&](int low, int high) {
        return low + int(std::uint32_t(random()) % std::uint32_t(high - low + 1));
    };
    for (int round = 0; round < 300; ++round) {
        const int inW = between(1, 700), inH = between(1, 700), radius = between(0, 300);
        const int width = round % 10 == 0 ? 1080 : between(1, 600), mode = between(0, 2);
        const int c1 = between(-50, 700), c2 = between(-50, 700), rotation = between(-400, 400);
        const int shift = between(0, 1);
        FEDSP e;
        e.m_nPitch = round % 7 == 0 ? between(-3, 70000) : inW;
        const std::size_t entries = std::size_t(std::max(radius, 1)) * std::size_t(width) + 1;
        SCOPED_TRACE(testing::Message() << "round " << round << " mode " << mode);
        expectSameWithEveryIsa(entries * kMapEntryBytes, [&](unsigned char* table) {
            e.InitCPIBuffer_360(c1, c2, radius, inW, inH,
                                static_cast<int*>(static_cast<void*>(table)), rotation, nullptr,
                                nullptr, mode, shift, width);
        });
        if (HasFailure()) return;
    }
}

TEST(Polar, TheFramesEdgesAreOutsideForEveryInstructionSet)
{
    const int in = 100, radius = 40, width = 36; // directions of 10 degrees
    FEDSP e;
    e.m_nPitch = in;
    for (const int c1 : {0, 20, in - 3, in - 2})
        for (const int c2 : {0, 20, in - 3, in - 2}) {
            SCOPED_TRACE(testing::Message() << "centre " << c1 << ", " << c2);
            const std::size_t entries = std::size_t(radius / 2 * width);
            expectSameWithEveryIsa(entries * kMapEntryBytes, [&](unsigned char* table) {
                e.InitCPIBuffer_360(c1, c2, radius, in, in,
                                    static_cast<int*>(static_cast<void*>(table)), 0, nullptr,
                                    nullptr, 0, 0, width);
            });
        }
}
