#include "Frames.h"
#include "Isas.h"
#include "mapping/MapEntry.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>

using namespace fe;

namespace {

constexpr int kW = 720, kR = 512, kPitch = 2048;

class PanoramaRemap : public testing::Test {
protected:
    PanoramaRemap() : table(std::size_t(kR) * kW * 2, -1) { engine.m_nPitch = kPitch; }

    void build(int c1 = 600, int c2 = 700, int inW = 1400, int inH = 1200)
    {
        engine.Mercator_Projection_360(c1, c2, kR, inW, inH, table.data(), 1441, nullptr, nullptr,
                                       7, kW);
    }
    MapEntry at(int row, int column) const
    {
        return loadEntry(table.data(), std::size_t(row) * kW + std::size_t(column));
    }
    double row(int r, int c) const
    {
        return at(r, c).index / kPitch + (at(r, c).fractions & 0xFFFF) / 256.0;
    }
    double col(int r, int c) const
    {
        return at(r, c).index % kPitch + (at(r, c).fractions >> 16) / 256.0;
    }
    bool empty(int r, int c) const { return at(r, c).fractions == 0 && at(r, c).index == 0; }

    FEDSP engine;
    std::vector<int> table;
};

} // namespace

TEST_F(PanoramaRemap, SpansTheWidthAndAPartOfTheHeight)
{
    build();
    EXPECT_NEAR(row(0, 360), 600 - 435.2, 1 / 128.0);
    EXPECT_EQ(row(256, 360), 600);
    EXPECT_NEAR(row(510, 360), 600 + 508 * 0.85, 1 / 128.0);
    for (int r : {0, 100, 256, 510}) {
        EXPECT_EQ(col(r, 360), 700);
        EXPECT_NEAR(col(r, 0), 700 - 512, 1 / 128.0);
        EXPECT_NEAR(col(r, 719), 700 + 718 * 512.0 / 720, 1 / 128.0);
    }
}

TEST_F(PanoramaRemap, HasOneRowLessThanTheRadius)
{
    build();
    EXPECT_NE(at(kR - 2, 100).index, -1);
    EXPECT_EQ(at(kR - 1, 0).index, -1);
}

TEST_F(PanoramaRemap, PointsOutsideTheInputAreEmpty)
{
    build(400, 500, 900, 800);
    EXPECT_TRUE(empty(0, 360));    // row -35.2
    EXPECT_TRUE(empty(256, 0));    // column -12
    EXPECT_FALSE(empty(256, 10));  // column 2.2
    EXPECT_TRUE(empty(256, 719));  // column 1010
    EXPECT_FALSE(empty(490, 360)); // row 797.8 is at most 798 - 0.2
    EXPECT_TRUE(empty(491, 360));  // row 799.5
}

TEST_F(PanoramaRemap, BeyondFourRadiiIsEmpty)
{
    // Twice as wide as it counts: at 4 * 20 columns and more from the middle of 400, nothing.
    engine.Mercator_Projection_360(600, 700, 20, 1400, 1200, table.data(), 0, nullptr, nullptr, 0,
                                   400);
    const auto entry = [&](int c) { return loadEntry(table.data(), std::size_t(10 * 400 + c)); };
    EXPECT_EQ(entry(200 - 41).index, 0); // 2 * 41 columns
    EXPECT_NE(entry(200 - 39).index, 0);
    EXPECT_NE(entry(200).index, 0);
}

TEST_F(PanoramaRemap, NullTablesAndEmptySizesDoNothing)
{
    engine.Mercator_Projection_360(1, 2, 512, 1400, 1200, nullptr, 0, nullptr, nullptr, 0, kW);
    for (auto [radius, width] :
         {std::pair{512, 0}, {512, -3}, {1, 720}, {0, 720}, {-4, 720}, {INT_MIN, 720}})
        engine.Mercator_Projection_360(1, 2, radius, 1400, 1200, table.data(), 0, nullptr, nullptr,
                                       0, width);
    EXPECT_EQ(table, std::vector<int>(table.size(), -1));
}

TEST_F(PanoramaRemap, AnInputOfTheLowestSizeLeavesEveryEntryEmpty)
{
    build(600, 700, INT_MIN, INT_MIN);
    EXPECT_TRUE(empty(0, 0));
    EXPECT_TRUE(empty(kR / 2, kW / 2));
}

TEST(Remap, EveryInstructionSetBuildsTheSameTable)
{
    std::mt19937 random(5);
    const auto between = [&](int low, int high) {
        return low + int(std::uint32_t(random()) % std::uint32_t(high - low + 1));
    };
    for (int round = 0; round < 300; ++round) {
        const int inW = between(1, 700), inH = between(1, 700), radius = between(0, 300);
        const int width = between(1, round % 5 == 0 ? 1400 : 700);
        const int c1 = between(-50, 700), c2 = between(-50, 700);
        FEDSP e;
        e.m_nPitch = round % 7 == 0 ? between(-3, 70000) : inW;
        const std::size_t entries = std::size_t(std::max(radius - 1, 0)) * std::size_t(width);
        SCOPED_TRACE(testing::Message() << "round " << round);
        expectSameWithEveryIsa(entries * kMapEntryBytes, [&](unsigned char* table) {
            e.Mercator_Projection_360(c1, c2, radius, inW, inH,
                                      static_cast<int*>(static_cast<void*>(table)), 0, nullptr,
                                      nullptr, 0, width);
        });
        if (HasFailure()) return;
    }
}
