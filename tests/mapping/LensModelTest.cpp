#include "Capture.h"
#include "Frames.h"
#include "kernels/Isa.h"
#include "mapping/MapEntry.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace fe;

namespace {

constexpr int kW = 200, kH = 150;
constexpr std::uint32_t kOld = 0xABCD1234u;

// An engine for a 1280x1280 input with the circle filling it, and a table of kW x kH entries.
class LensModel : public testing::Test {
protected:
    LensModel()
    {
        engine.FE_Initialize(0, 1280, 1280, 4);
        engine.m_nPitch = 1280;
        reset();
    }

    void reset() { table.assign(std::size_t(kW) * kH * 2, int(kOld)); }

    // Builds the table of the reference area in the middle of the circle.
    void build(float angle = 0, int tilt = 0, int camPos = 0)
    {
        build(FEDSP::ClonefishRect{640 - 200, 640 - 150, 400, 300}, angle, tilt, camPos);
    }
    void build(FEDSP::ClonefishRect area, float angle = 0, int tilt = 0, int camPos = 0,
               int radius = 640)
    {
        engine.Fisheye_calibration_Init_byArea(640, 640, radius, radius, area, angle, 0, kW, kH,
                                               table.data(), tilt, camPos);
    }

    MapEntry at(int x, int y) const
    {
        return loadEntry(table.data(), std::size_t(y) * kW + std::size_t(x));
    }
    bool untouched(int x, int y) const
    {
        return at(x, y).fractions == kOld && at(x, y).index == int(kOld);
    }
    double row(int x, int y) const
    {
        return at(x, y).index / 1280 + (at(x, y).fractions & 0xFFFF) / 256.0;
    }
    double col(int x, int y) const
    {
        return at(x, y).index % 1280 + (at(x, y).fractions >> 16) / 256.0;
    }

    FEDSP engine;
    std::vector<int> table;
};

} // namespace

TEST_F(LensModel, ANullTableDoesNothingAtAll)
{
    EXPECT_EQ(printedBy([&] {
                  engine.Fisheye_calibration_Init_byArea(640, 640, 640, 640, {0, 0, 10, 10}, 0, 0,
                                                         kW, kH, nullptr, 0, 0);
              }),
              "");
}

TEST_F(LensModel, PrintsItsArguments)
{
    EXPECT_EQ(printedBy([&] {
                  engine.Fisheye_calibration_Init_byArea(1, 2, 3, 4, {0, 0, 10, 10}, 5.5f, 6, 2, 2,
                                                         table.data(), 7, 8);
              }),
              "Fisheye_calibration_Init_byArea: u[1] v[2], Lr[3], Sr[4] Ang[5.500000] Scale_N[6] "
              "Tile_Angle[7] CamPos[8]\n");
}

// The model in exact arithmetic: a pinhole picture of an equidistant lens.
TEST_F(LensModel, AgreesWithTheEquidistantLawInExactArithmetic)
{
    for (int quarterDegrees : {0, 137, 720, 1111}) {
        reset();
        build(float(quarterDegrees));
        const double a = quarterDegrees * 0.25 * 3.14159 * 0.00556; // the tables' radians
        double worst = 0;
        for (int y = 0; y < kH; y += 7)
            for (int x = 0; x < kW; x += 7) {
                const double c = -200 + x * 2.0 - 1, r = -150 + y * 2.0;
                const double dX = c * std::cos(a) - r * std::sin(a);
                const double dY = c * std::sin(a) + r * std::cos(a);
                const double d = std::hypot(dX, dY) + 1e-9;
                const double theta = std::atan(d * 1.115007 * 5.67139 / 640);
                const double distance = 2 * 640 * (theta * 180 / M_PI) / (160 * 1.115007);
                worst = std::max(worst, std::hypot(row(x, y) - (640 + dY / d * distance),
                                                   col(x, y) - (640 + dX / d * distance)));
            }
        // The approximations are off by 0.0016 radians, and the radius by 0.18 %.
        EXPECT_LT(worst, 1.6) << quarterDegrees;
    }
}

TEST_F(LensModel, WithoutTiltRowsBeforeAndBehindTheMiddleAreAlike)
{
    build();
    // One output row is 2 input rows, so row 75 + n mirrors row 75 - n.
    for (int n = 1; n < 75; ++n)
        EXPECT_NEAR(row(50, 75 + n) - 640, 640 - row(50, 75 - n), 1 / 64.0);
}

TEST_F(LensModel, TiltWidensOneHalfAndNarrowsTheOther)
{
    build();
    const double topBefore = row(100, 10), bottomBefore = row(100, 140);
    reset();
    build(0, 20);
    EXPECT_LT(row(100, 10), topBefore - 5);
    EXPECT_LT(row(100, 140), bottomBefore - 5);
    EXPECT_NEAR(row(100, 75), 640, 1); // the middle row stays
}

TEST_F(LensModel, TheOpticalAxisMapsToTheCentreExactly)
{
    // The columns start one input pixel to the left, so output column n looks 2n - 201 pixels to
    // the side; an odd area puts a pixel exactly on the axis.
    build({640 - 199, 640 - 150, 400, 300});
    EXPECT_EQ(at(100, 75).index, 640 * 1280 + 640);
    EXPECT_EQ(at(100, 75).fractions, 0u);
}

TEST_F(LensModel, ASourceOutsideTheInputClearsEntryZeroAndKeepsItsOwn)
{
    engine.m_nInputW = 700; // columns beyond 698 have no source
    build();
    EXPECT_EQ(at(0, 0).fractions, 0u);
    EXPECT_EQ(at(0, 0).index, 0);
    EXPECT_TRUE(untouched(kW - 1, 75));
    EXPECT_FALSE(untouched(kW / 2, 75));
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            if (!untouched(x, y) && (x || y)) {
                ASSERT_LT(col(x, y), 698);
            }
}

TEST_F(LensModel, SourcesAtTheLowerEdgesCountAsOutside)
{
    engine.m_nInputH = 642; // rows from 640 have no source
    build();
    EXPECT_FALSE(untouched(20, 74));
    EXPECT_TRUE(untouched(20, 75));
    EXPECT_TRUE(untouched(20, 76));
    EXPECT_EQ(at(0, 0).index, 0);
}

TEST_F(LensModel, PixelsFarOutsideTheCircleAreSkippedAltogether)
{
    // Not even entry 0 is cleared for them.
    const auto before = table;
    build({640 + 700, 640 + 700, 400, 300});
    EXPECT_EQ(table, before);
}

TEST_F(LensModel, TheTwoRadiusLimitsAreAlternatives)
{
    // The area's left edge lies 500 plane pixels off the axis: outside a radius of 300 on a 900
    // wide input, but inside half of a 1280 wide one.
    const FEDSP::ClonefishRect area{300 - 450, 300 - 10, 900, 20};
    build(area, 0, 0, 0, 300);
    EXPECT_FALSE(untouched(0, 75));
    reset();
    engine.m_nInputW = 800;
    build(area, 0, 0, 0, 300);
    EXPECT_TRUE(untouched(0, 75));
}

TEST_F(LensModel, MirroredMountingsMirrorTheTable)
{
    build(300.0f, 12, 0);
    const auto plain = table;
    for (int camPos : {1, 2}) {
        reset();
        build(300.0f, 12, camPos);
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) {
                const MapEntry expected =
                    loadEntry(plain.data(), std::size_t(y) * kW + std::size_t(kW - 1 - x));
                ASSERT_EQ(at(x, y).fractions, expected.fractions);
                ASSERT_EQ(at(x, y).index, expected.index);
            }
    }
}

TEST_F(LensModel, TheFractionOfTheAngleIsDropped)
{
    build(10.75f);
    const auto fractional = table;
    reset();
    build(10.0f);
    EXPECT_EQ(table, fractional);
}

TEST_F(LensModel, AnglesOutsideOneTurnAreReduced)
{
    build(10.0f);
    const auto expected = table;
    for (float angle : {1450.0f, -1430.0f, 1440.0f * 1000 + 10}) {
        reset();
        build(angle);
        EXPECT_EQ(table, expected) << angle;
    }
}

TEST_F(LensModel, TheSingleViewIsMagnified)
{
    // Nearly on the axis the lens is linear, so distances shrink by the factor itself.
    build({640 - 19, 640 - 15, 40, 30});
    const double nominal = col(kW - 1, 75) - 640;
    reset();
    engine.m_bSingle = 1;
    build({640 - 19, 640 - 15, 40, 30});
    EXPECT_NEAR((col(kW - 1, 75) - 640) / nominal, 0.5625, 0.03);
}

TEST_F(LensModel, LargeInputsUseTheWideLensExceptOnTheWall)
{
    const auto edge = [&](int large, int engineCamPos) {
        reset();
        engine.m_bLargeInput = static_cast<unsigned char>(large);
        engine.m_nCamPos = engineCamPos;
        build();
        return col(0, 75);
    };
    const double normal = edge(0, 0);
    EXPECT_EQ(edge(0, 1), normal);
    EXPECT_EQ(edge(1, 1), normal);
    EXPECT_GT(std::fabs(edge(1, 0) - normal), 20);
    EXPECT_EQ(edge(1, 2), edge(1, 0));
    // 201 plane pixels off the axis, in the 170 degree lens.
    const double theta = std::atan(201 * 1.115007 * 11.430509 / 640) * 180 / M_PI;
    EXPECT_NEAR(640 - edge(1, 0), 2 * 640 * theta / (170 * 1.115007), 1.6);
}

TEST_F(LensModel, TheFirstCentreCoordinateCountsRows)
{
    engine.Fisheye_calibration_Init_byArea(500, 700, 400, 400, {399 - 50, 400 - 50, 100, 100}, 0, 0,
                                           100, 100, table.data(), 0, 0);
    bool found = false;
    for (std::size_t k = 0; k < 100 * 100; ++k)
        found |= loadEntry(table.data(), k).index == 500 * 1280 + 700;
    EXPECT_TRUE(found);
    EXPECT_NEAR(loadEntry(table.data(), 50 * 100 + 52).index / 1280, 500, 2);
}

// With the tilt at its stop the keystone divisor is exactly 0 on the first row of these screens,
// and a NaN arises there.
TEST_F(LensModel, RowsWhereTheTiltedPlanePassesThroughTheCameraHaveNoSource)
{
    engine.m_bSingle = 1;
    for (int height : {720, 1080}) {
        const int width = height * 16 / 9;
        std::vector<int> big(std::size_t(width) * std::size_t(height) * 2, int(kOld));
        engine.Fisheye_calibration_Init_byArea(640, 640, 640, 640, {240, 340, 800, 600}, 0, 0,
                                               width, height, big.data(), 45, 0);
        EXPECT_EQ(loadEntry(big.data(), 0).index, 0);
        EXPECT_EQ(loadEntry(big.data(), 0).fractions, 0u);
        for (std::size_t x = 1; x < std::size_t(width); ++x)
            ASSERT_EQ(loadEntry(big.data(), x).fractions, kOld) << "column " << x;
        // Further down there are sources, and all of them lie inside the frame.
        std::size_t sources = 0;
        for (std::size_t k = std::size_t(width); k < big.size() / 2; ++k) {
            const MapEntry entry = loadEntry(big.data(), k);
            if (entry.fractions == kOld) continue;
            ++sources;
            ASSERT_LE(entry.fractions & 0xFFFF, 255u);
            ASSERT_LE(entry.fractions >> 16, 255u);
            ASSERT_GE(entry.index, 0);
            ASSERT_LT(entry.index, 1278 * 1280 + 1278);
        }
        EXPECT_GT(sources, big.size() / 8);
    }
}

TEST_F(LensModel, OddArgumentsLeaveTheTableSound)
{
    const FEDSP::ClonefishRect areas[] = {
        {0, 0, 0, 0}, {-100000, 70000, -5, 3}, {2147483647, -2147483647, 2147483647, -1}};
    for (const auto& area : areas)
        for (int tilt : {0, -45, 45, 32767, -32768})
            for (int radius : {0, 1, 640, 65535, -7}) {
                table.assign(table.size(), 0);
                build(area, 3, tilt, 2, radius);
                for (std::size_t k = 0; k < table.size() / 2; ++k) {
                    ASSERT_GE(loadEntry(table.data(), k).index, 0);
                    ASSERT_LT(loadEntry(table.data(), k).index, 1278 * 1280 + 1278);
                }
            }
}

TEST_F(LensModel, SourcesAtTheRightEdgeCountAsOutside)
{
    engine.m_nInputW = 642; // columns from 640 have no source
    // Column 99 of the output looks one pixel to the left of the axis, column 100 exactly along it.
    build({640 - 199, 640 - 150, 400, 300});
    EXPECT_FALSE(untouched(99, 60));
    EXPECT_TRUE(untouched(100, 60));
    EXPECT_TRUE(untouched(100, 75));
}

TEST_F(LensModel, ThePlaneRadiusMayComeWithinThreePixelsOfTheCircle)
{
    engine.m_nInputW = 160; // half of it does not reach the pixels in question
    engine.m_nInputH = 4096;
    // One output column is one plane pixel: column x looks x - 101 pixels to the side.
    engine.Fisheye_calibration_Init_byArea(640, 80, 88, 88, {88 - 100, 88 - 75, kW, kH}, 0, 0, kW,
                                           kH, table.data(), 0, 0);
    // The plane radius times 1.115 plus 3 must stay below 88: 76 pixels (84.7), not 77 (85.9).
    EXPECT_FALSE(untouched(101 - 76, 75));
    EXPECT_TRUE(untouched(101 - 77, 75));
}

// The keystone: a row's distances from the centre are divided by 1 - rows from the middle * slope *
// tilt / scale before the lens bends them.
TEST_F(LensModel, TheTiltSlopeDependsOnTheLayout)
{
    const auto dividers = [&](int single, float scale) {
        reset();
        engine.m_bSingle = static_cast<unsigned char>(single);
        engine.m_fScaleX = scale;
        build(0, 20);
        // From the stored source back to the view plane, along the column through the centre.
        const double d = 640 - row(100, 15);
        const double theta = d * 160 * 1.115007 / (2 * 640) * M_PI / 180;
        const double plane = std::tan(theta) * 640 / (1.115007 * 5.67139);
        return (150 - 2.0 * 15) * (single ? 0.5625 : 1) / plane;
    };
    // 60 rows above the middle, 2 input rows each: slope 1 / 75 * 0.0222, or 1 / 150 / 45.
    EXPECT_NEAR(dividers(0, 1), 1 - 60 * 20 * 0.0222 / 75, 0.02);
    EXPECT_NEAR(dividers(1, 1), 1 - 60 * 20 / (150.0 * 45), 0.02);
    // The input's scale cancels: the slope grows with it and is divided by it.
    EXPECT_NEAR(dividers(0, 2), dividers(0, 1), 1e-3);
    EXPECT_NEAR(dividers(1, 2), dividers(1, 1), 1e-3);
}

TEST_F(LensModel, EveryInstructionSetBuildsTheSameTable)
{
    std::vector<std::vector<int>> tables;
    for (const Isa isa : kIsas) {
        limitIsa(isa);
        tables.emplace_back();
        for (int camPos : {0, 1, 2})
            for (int tilt : {0, 20, -70}) {
                reset();
                build({640 - 400, 640 - 150, 900, 700}, 300, tilt, camPos);
                tables.back().insert(tables.back().end(), table.begin(), table.end());
            }
    }
    limitIsa(Isa::avx2);
    for (const auto& each : tables)
        EXPECT_EQ(each, tables.front());
}

// A pixel without a source clears entry 0 after the pixels before it and before those behind it.
TEST_F(LensModel, EntryZeroIsWrittenInThePixelsOrder)
{
    engine.m_nInputW = 700; // columns beyond 698 have no source
    const auto entryZero = [&](float angle, int camPos, int rows) {
        reset();
        engine.Fisheye_calibration_Init_byArea(640, 640, 640, 640, {440, 490, 400, 300}, angle, 0,
                                               kW, rows, table.data(), 0, camPos);
        return at(0, 0).fractions == 0 && at(0, 0).index == 0;
    };
    for (const Isa isa : kIsas) {
        limitIsa(isa);
        // The first pixel has a source, and the last one clears its entry.
        EXPECT_TRUE(entryZero(0, 0, 1)) << nameOf(isa);
        // Mirrored and turned round, the first pixels clear it before the last one has its turn.
        EXPECT_FALSE(entryZero(720, 2, 1)) << nameOf(isa);
        EXPECT_FALSE(untouched(0, 0)) << nameOf(isa);
        // The next row clears it again.
        EXPECT_TRUE(entryZero(720, 2, 2)) << nameOf(isa);
        // Here that last pixel is one of those without a source.
        EXPECT_TRUE(entryZero(0, 2, 1)) << nameOf(isa);
    }
    limitIsa(Isa::avx2);
}

// Columns half a pixel apart have exact places, so they do not depend on the view's width.
TEST_F(LensModel, AVeryWideViewIsMadeOfNarrowOnesSideBySide)
{
    constexpr int kWide = 4400, kPart = 100, kRows = 2;
    engine.m_nInputW = engine.m_nInputH = 4096;
    std::vector<int> wide(2 * kWide * kRows), part(2 * kPart * kRows);
    for (int camPos : {0, 2}) {
        engine.Fisheye_calibration_Init_byArea(2048, 2048, 2048, 2048,
                                               {900, 2048, kWide / 2, kRows}, 0, 0, kWide, kRows,
                                               wide.data(), 0, camPos);
        for (int x = 0; x < kWide; x += kPart) {
            engine.Fisheye_calibration_Init_byArea(2048, 2048, 2048, 2048,
                                                   {900 + x / 2, 2048, kPart / 2, kRows}, 0, 0,
                                                   kPart, kRows, part.data(), 0, camPos);
            ASSERT_GT(part[1], 0);
            for (int row = 0; row < kRows; ++row) {
                const int column = camPos == 0 ? x : kWide - kPart - x;
                ASSERT_TRUE(std::equal(part.begin() + row * 2 * kPart,
                                       part.begin() + (row + 1) * 2 * kPart,
                                       wide.begin() + 2 * (row * kWide + column)))
                    << "column " << column << " of row " << row << ", mounting " << camPos;
            }
        }
    }
}
