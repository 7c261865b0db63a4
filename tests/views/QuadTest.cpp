#include "ViewTestSupport.h"

#include "mapping/MapEntry.h"

#include <algorithm>
#include <cstring>

namespace {

// 1280x1024 to 800x600: views of 400x300, circle radius 640, so the offset's base is 49.
class Quad : public testing::Test, protected LayoutSlot {
protected:
    Quad() : LayoutSlot(1280, 1024, 800, 600) {}

    void steer(int camPos, int view, int pan, int tilt)
    {
        LayoutSlot::steer(1, camPos, view, pan, tilt, 640);
    }
    // A quadrant of the frame without its first column, which the view beside it spills into.
    Bytes quadrant(int number) const
    {
        Bytes pixels;
        const std::size_t left = number % 2 == 0 ? 401 : 1, top = number > 2 ? 300 : 0;
        for (std::size_t y = 0; y < 299; ++y)
            for (std::size_t x = 0; x < 398; ++x)
                pixels.push_back(out[(top + y) * 800 + left + x + (number % 2 == 0 ? 1 : 0)]);
        return pixels;
    }
};

using Quad12 = Quad;
using Quad34 = Quad;

struct ViewFields {
    int FEDSP::*pan;
    int FEDSP::*tilt;
    int FEDSP::*zoom;
    int FEDSP::*aux;
};
constexpr ViewFields kViews[4] = {
    {&FEDSP::m_nQuad1Pan, &FEDSP::m_nQuad1Tilt, &FEDSP::m_nQuad1Zoom, &FEDSP::m_nQuad1Aux},
    {&FEDSP::m_nQuad2Pan, &FEDSP::m_nQuad2Tilt, &FEDSP::m_nQuad2Zoom, &FEDSP::m_nQuad2Aux},
    {&FEDSP::m_nQuad3Pan, &FEDSP::m_nQuad3Tilt, &FEDSP::m_nQuad3Zoom, &FEDSP::m_nQuad3Aux},
    {&FEDSP::m_nQuad4Pan, &FEDSP::m_nQuad4Tilt, &FEDSP::m_nQuad4Zoom, &FEDSP::m_nQuad4Aux}};

} // namespace

TEST_F(Quad, ASetUpFrameBuildsFourTablesAQuarterTurnOfOffsetsApart)
{
    steer(0, 0, 0, 0);
    const std::string text = printed();
    EXPECT_EQ(occurrences(text, "Init_byArea:"), 4);
    for (int view = 0; view < 4; ++view)
        EXPECT_EQ(printedNumber(text, "Ang[", view), 90 * view);
    EXPECT_EQ(occurrences(text, "Tick"), 8); // two lines for each view
    EXPECT_EQ(builds(), 0);
}

TEST_F(Quad, TheSecondFrameShowsViewFourTwice)
{
    steer(0, 0, 0, 0);
    frame();
    const Bytes three = quadrant(3), four = quadrant(4);
    frame();
    EXPECT_EQ(quadrant(4), four);
    EXPECT_NE(three, four);
    // One column further right, for that is how the right-hand views are shifted.
    Bytes left;
    for (std::size_t y = 0; y < 299; ++y)
        for (std::size_t x = 0; x < 398; ++x)
            left.push_back(out[(300 + y) * 800 + x + 1]);
    EXPECT_EQ(left, four);
}

TEST_F(Quad, TheSetUpFlagOnEachFrameShowsAllFour)
{
    steer(0, 0, 0, 0);
    frame();
    const Bytes first = out.bytes();
    e.m_bSetup = 1;
    frame();
    EXPECT_EQ(out.bytes(), first);
}

TEST_F(Quad, TheFramesFirstChromaByteIsViewFoursLastPixel)
{
    steer(0, 0, 0, 0);
    frame();
    OutputFrame view(400, 300);
    e.FCMapping(FORMAT_NV12, e.m_pStaged, view.data(), e.m_pMapTable, 1280, 1024, 400, 300, true);
    EXPECT_EQ(out[480000], view[400 * 300 - 1]);
    for (std::size_t y = 0; y < 600; ++y)
        ASSERT_EQ(out[y * 800 + 400], 0) << y; // the column between the views is never written
}

TEST_F(Quad12, View1TiltStepsRepeatAndItsOffsetPassesTheTop)
{
    steer(0, 1, 0, -10);
    Values tilts, offsets;
    for (int i = 0; i < 7; ++i) {
        frame();
        tilts.push_back(e.m_nQuad1Tilt);
        offsets.push_back(e.m_nQuad1Aux);
    }
    EXPECT_EQ(tilts, (Values{10, 20, 30, 40, 45, 45, 45}));
    EXPECT_EQ(offsets, (Values{8, 16, 24, 32, 40, 48, 56})); // 49 / 55 * 10 a frame, not limited
    EXPECT_EQ(e.m_nQuad2Tilt | e.m_nQuad3Tilt | e.m_nQuad4Tilt, 0);
    steer(0, 1, 1, 0); // a pan step limits it
    frame();
    EXPECT_EQ(e.m_nQuad1Aux, 49);
}

TEST_F(Quad12, View1TiltStepsDownEndAtZero)
{
    steer(0, 1, 0, 20);
    e.m_nQuad1Tilt = 45;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Tilt, 4), (Values{25, 5, 0, 0}));
    EXPECT_EQ(e.m_nQuad1Aux, -68); // 17.8 a frame: -17, -34, -51, -68; not limited
}

TEST_F(Quad12, APanStepMovesOnEveryFrameWithoutARebuild)
{
    steer(0, 1, 10, 0);
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Pan, 1), (Values{32})); // 40 / (49 / 55 / 4 + 1) = 32.7
    EXPECT_EQ(builds(), 0);
    EXPECT_EQ(e.m_nQuad1Pan, 64);
    EXPECT_EQ(e.m_nQuad1PanBuilt, 32);
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Pan, 1), (Values{96}));
    e.m_nQuad1Tilt = 1;
    const std::string text = printed();
    EXPECT_EQ(printedNumber(text, "Ang["), 128); // shown by the next rebuild
    EXPECT_EQ(e.m_nQuad1PanBuilt, 128);
}

TEST_F(Quad12, PanIsTruncatedWithItsStep)
{
    steer(0, 1, -10, 0);
    e.m_nQuad1Pan = 100;
    // 100 - 32.7 = 67.3, 34.3, 1.3, -31.7 truncated towards zero
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Pan, 4), (Values{67, 34, 1, -31}));
}

TEST_F(Quad12, View2TiltMayPassItsLimitByOneStep)
{
    steer(0, 2, 0, -10);
    e.m_nQuad2Tilt = 40;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Tilt, 4), (Values{50, 45, 55, 45}));
    steer(0, 2, 0, 10);
    e.m_nQuad2Tilt = 5;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Tilt, 4), (Values{-5, 0, 0, 0}));
    steer(2, 2, 0, 10); // on the floor the directions change places
    e.m_nQuad2Tilt = 40;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Tilt, 3), (Values{50, 45, 55}));
}

TEST_F(Quad12, View2sOffsetIsLimitedOnTheCeilingOnly)
{
    steer(0, 2, 0, -10);
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Aux, 8), (Values{8, 16, 24, 32, 40, 48, 49, 49}));
    steer(2, 2, 0, 10);
    e.m_nQuad2Aux = 48;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Aux, 2), (Values{56, 64})); // never limited on the floor
    steer(2, 2, 10, 0);
    frame();
    EXPECT_EQ(e.m_nQuad2Aux, 64);
}

TEST_F(Quad12, View1IsLimitedOnTheFloorAfterEitherStep)
{
    steer(2, 1, 0, 10);
    e.m_nQuad1Aux = 48;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Aux, 2), (Values{49, 49}));
    EXPECT_EQ(e.m_nQuad1Tilt, 20);
    steer(2, 1, 10, 0);
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad1Pan, 2), (Values{-32, -64}));
}

TEST_F(Quad34, Views3And4AreLimitedAfterEveryStep)
{
    for (int view : {3, 4}) {
        const ViewFields& fields = kViews[view - 1];
        for (int camPos : {0, 2}) {
            steer(camPos, view, 0, camPos == 0 ? -10 : 10);
            e.*fields.tilt = 40;
            e.*fields.aux = 45;
            frame();
            EXPECT_EQ(e.*fields.tilt, 45);
            EXPECT_EQ(e.*fields.aux, 49);
            steer(camPos, view, 0, camPos == 0 ? 10 : -10);
            e.*fields.tilt = 5;
            e.*fields.aux = 3;
            frame();
            EXPECT_EQ(e.*fields.tilt, 0);
            EXPECT_EQ(e.*fields.aux, 0);
            steer(camPos, view, 10, 0);
            e.*fields.pan = 0;
            frame();
            EXPECT_EQ(e.*fields.pan, camPos == 0 ? 32 : -32);
        }
    }
}

TEST_F(Quad, OnlyTheRecordedViewIsSteered)
{
    for (int view = 1; view <= 4; ++view) {
        steer(0, view, 10, 0);
        for (const ViewFields& fields : kViews)
            e.*fields.pan = 0;
        frame();
        for (int other = 1; other <= 4; ++other)
            EXPECT_EQ(e.*kViews[other - 1].pan, other == view ? 32 : 0);
    }
    steer(0, 0, 10, 0);
    e.m_nQuad4Pan = 0;
    frame();
    EXPECT_EQ(e.m_nQuad4Pan, 0);
}

TEST_F(Quad, TheWallRaisesEveryZoomToTenAndShiftsTheCentre)
{
    steer(1, 1, 10, 0);
    for (const ViewFields& fields : kViews)
        e.*fields.zoom = 4;
    const std::string text = printed();
    for (const ViewFields& fields : kViews)
        EXPECT_EQ(e.*fields.zoom, 10);
    // Pan 20 * 1 / (0 + 1); the limit is (1 * 90 + 2 * 0) * 1.
    EXPECT_EQ(e.m_nQuad1Pan, 20);
    EXPECT_NE(text.find("u[512] v[660], Lr[640], Sr[640] Ang[720.000000] Scale_N[10] "
                        "Tile_Angle[0] CamPos[2]"),
              std::string::npos);
    e.m_nQuad1Pan = 500;
    e.m_bSetup = 1;
    frame();
    EXPECT_EQ(e.m_nQuad1Pan, 90);
    e.m_nQuad1Pan = -500;
    e.m_bSetup = 1;
    frame();
    EXPECT_EQ(e.m_nQuad1Pan, -90);
}

TEST_F(Quad, WallSteering)
{
    for (int view : {1, 3, 4}) {
        const ViewFields& fields = kViews[view - 1];
        steer(1, view, 0, -10);
        e.*fields.zoom = 40;
        // top (40 - 10) * 10.5 = 315, gain 315 / (30 + 90) = 2.625: tilt by 3.8, offset by 26.25,
        // lowest (30 - 120) * 3 = -270
        EXPECT_EQ(overFrames(fields.aux, 3), (Values{-26, -52, -78}));
        EXPECT_EQ(e.*fields.tilt, -9); // -3.8, -6.8, -9.8
        e.*fields.tilt = -44;
        frame();
        EXPECT_EQ(e.*fields.tilt, -45);
        steer(1, view, 0, 32767);
        frame();
        EXPECT_EQ(e.*fields.tilt, 45);
        EXPECT_EQ(e.*fields.aux, 315);
        steer(1, view, 0, -32767);
        frame();
        EXPECT_EQ(e.*fields.aux, -270);
    }
}

TEST_F(Quad12, View2OnTheWallIsOnlyBroughtBackWhenItWasTooLowBefore)
{
    steer(1, 2, 0, -10);
    e.m_nQuad2Tilt = -40;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Tilt, 4), (Values{-50, -45, -55, -45}));
    e.m_nQuad2Tilt = -46;
    e.m_nQuad2Aux = 33; // no step is applied then
    frame();
    EXPECT_EQ(e.m_nQuad2Tilt, -45);
    EXPECT_EQ(e.m_nQuad2Aux, 0); // but the limits at zoom 10 are
    steer(1, 2, 0, 10);
    e.m_nQuad2Tilt = 40;
    EXPECT_EQ(overFrames(&FEDSP::m_nQuad2Tilt, 2), (Values{45, 45}));
}

TEST_F(Quad, EachViewsKeyRebuildsIt)
{
    steer(0, 0, 0, 0);
    frame();
    e.m_nQuad1Zoom = 1;
    EXPECT_EQ(builds(), 1);
    e.m_nQuad1Aux = 1;
    EXPECT_EQ(builds(), 1);
    e.m_nQuad3Tilt = 1;
    EXPECT_EQ(builds(), 1);
    e.m_bKeyFlag1 = 1;
    EXPECT_EQ(builds(), 4);
    e.m_bKeyFlag2 = 1;
    EXPECT_EQ(builds(), 4);
    e.m_bKeyFlag3 = 1; // not looked at here
    EXPECT_EQ(builds(), 0);
    e.m_nQuad3Pan = 100;
    EXPECT_EQ(builds(), 0);
}

TEST_F(Quad34, View4IsRebuiltWhenView2MovesNotWhenItMovesItself)
{
    steer(0, 0, 0, 0);
    frame();
    e.m_nQuad4Zoom = 7;
    const std::vector<int> before(e.m_pMapTable, e.m_pMapTable + 2 * 400 * 300);
    EXPECT_EQ(builds(), 0);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), e.m_pMapTable));
    e.m_nQuad2Zoom = 3;
    const std::string text = printed();
    EXPECT_EQ(occurrences(text, "Init_byArea:"), 2);
    EXPECT_EQ(printedNumber(text, "Scale_N[", 0), 3); // view 2
    EXPECT_EQ(printedNumber(text, "Scale_N[", 1), 7); // view 4, with its own position
    EXPECT_EQ(printedNumber(text, "Ang[", 1), 270);
}

TEST_F(Quad, RadiusAndAreaFollowTheZoom)
{
    steer(0, 0, 0, 0);
    e.m_nQuad1Zoom = 30;
    std::vector<int> expected(2 * 400 * 300);
    const std::string text = printed();
    EXPECT_EQ(printedNumber(text, "Lr["), 640 + 36); // 30 * 1.2
    // The area: left 676 - 200 + 120, top 676 - 150 + 90, size 400 - 240 by 300 - 180
    e.Fisheye_calibration_Init_byArea(512, 640, 676, 676, {596, 616, 160, 120}, 0, 30, 400, 300,
                                      expected.data(), 0, 0);
    EXPECT_TRUE(std::equal(expected.begin() + 2, expected.end(), e.m_pSubMapB + 2));
}

TEST_F(Quad, TheAreasTopIsNotNegative)
{
    steer(0, 0, 0, 0);
    e.m_nQuad1Aux = 600;
    frame();
    std::vector<int> expected(2 * 400 * 300);
    e.Fisheye_calibration_Init_byArea(512, 640, 640, 640, {440, 0, 400, 300}, 0, 0, 400, 300,
                                      expected.data(), 0, 0);
    EXPECT_TRUE(std::equal(expected.begin() + 2, expected.end(), e.m_pSubMapB + 2));
}

TEST_F(Quad12, ARebuildClearsTheFirstHalfOfTheTable)
{
    steer(0, 0, 0, 0);
    frame();
    for (int* table : {e.m_pSubMapA, e.m_pSubMapB, e.m_pMapTable})
        std::fill_n(table, 2 * 400 * 300, 257);
    e.m_nCamPos = 3; // nothing is built over it
    EXPECT_EQ(builds(), 0);
    for (const int* table : {e.m_pSubMapA, e.m_pSubMapB}) {
        EXPECT_TRUE(std::all_of(table, table + 400 * 300, [](int w) { return w == 0; }));
        EXPECT_EQ(table[400 * 300], 257);
    }
    EXPECT_EQ(e.m_pMapTable[0], 257); // views 3 and 4 do not clear theirs
    EXPECT_EQ(e.m_nQuad1Key, 400 + 3 + 4);
    EXPECT_EQ(e.m_nQuad4Key, 400 + 3 + 4);
}

TEST_F(Quad12, View2SharesItsKeyWithTheSingleView)
{
    steer(0, 0, 0, 0);
    frame();
    EXPECT_EQ(e.m_nSingleKey, 404);
    FE_CurPosParams position;
    e.LmFEGetPosition(0, &position);
    position.nViewMode = 8;
    std::memset(position.view, 0, sizeof position.view);
    e.LmFESetPosition(0, &position);
    EXPECT_EQ(builds(), 1); // the single view's key is 804
    EXPECT_EQ(e.m_nSingleKey, 804);
    position.nViewMode = 1;
    e.LmFESetPosition(0, &position);
    // View 2 is rebuilt; the others keep their tables, and 3 and 4 map what the single view left.
    EXPECT_EQ(builds(), 1);
    EXPECT_EQ(e.m_nSingleKey, 404);
}

TEST_F(Quad34, TheByteCounterGrowsOnEveryFrame)
{
    steer(0, 0, 0, 0);
    EXPECT_EQ(overFrames(&FEDSP::m_nQuadBytes, 2), (Values{1440000, 2880000}));
    FEDSP other;
    other.FE_Initialize(0, 1280, 1024, 4);
    for (int i = 0; i < 400; ++i) // without buffers, formats or views it only counts
        other.AccessCtr_FEQuad34(nullptr, nullptr, 0, 0, 1920, 1080);
    EXPECT_EQ(other.m_nQuadBytes, int(std::uint32_t(400u * 6220800u)));
}

TEST_F(Quad, UnknownFormatsComposeWhatTheViewImageHeld)
{
    steer(0, 0, 0, 0);
    frame();
    std::fill_n(e.m_pViewImage, 400 * 300 * 3 / 2, static_cast<unsigned char>(99));
    e.m_nFormat = FORMAT(7);
    EXPECT_EQ(occurrences(printed(), "Bilinear"), 0);
    EXPECT_EQ(out[0], 99);
    EXPECT_EQ(out[300 * 800 + 700], 99);
}

TEST_F(Quad, PackedFramesAreComposedInTheirLumaBytesOnly)
{
    steer(0, 0, 0, 0);
    Bytes rgb(1280 * 1024 * 3, 50);
    OutputFrame packed(800, 600, FORMAT_RGB);
    EXPECT_EQ(occurrences(printedBy([&] { slot.frame(rgb, packed, FORMAT_RGB, true); }), "Tick"),
              0);
    EXPECT_EQ(packed[0], 50);
    EXPECT_EQ(packed[479999], 50);
    // Then the last quadrant's spilled byte, what the set-up cleared, and what nobody touched.
    EXPECT_EQ(packed[480000], 50);
    for (std::size_t i = 480001; i < packed.size(); ++i)
        ASSERT_EQ(packed[i], i < 720000 ? 128 : 0xA5) << i;
}

TEST_F(Quad, BandsComposeWithTheLastOne)
{
    steer(0, 0, 0, 0);
    frame();
    frame();
    const Bytes whole = out.bytes();
    OutputFrame banded(800, 600);
    const Bytes untouched = banded.bytes();
    for (int line = 0; line < 300; line += 64) {
        EXPECT_EQ(banded.bytes(), untouched);
        e.m_nLineIndex = line;
        const bool last = line + 64 >= 300;
        EXPECT_EQ(e.AccessCtr_FEQuad12(e.m_pStaged, banded.data(), 1280, 1024, 800, 600), last);
        EXPECT_EQ(e.AccessCtr_FEQuad34(e.m_pStaged, banded.data(), 1280, 1024, 800, 600), last);
    }
    for (std::size_t y = 0; y < 600; ++y)
        for (std::size_t x = 0; x < 800; ++x)
            ASSERT_TRUE(x == 400 || banded[y * 800 + x] == whole[y * 800 + x]) << x << " " << y;
    // The band kernel exchanges the chroma bytes; byte 0 is view 4's spilled pixel in both.
    for (std::size_t i = 480002; i < 720000; i += 2) {
        ASSERT_EQ(banded[i], whole[i + 1]);
        ASSERT_EQ(banded[i + 1], whole[i]);
    }
}

TEST_F(Quad, EveryBandCallSteers)
{
    steer(0, 1, 10, 0);
    frame();
    for (int line : {0, 64, 128}) {
        e.m_nLineIndex = line;
        e.AccessCtr_FEQuad12(e.m_pStaged, out.data(), 1280, 1024, 800, 600);
    }
    EXPECT_EQ(e.m_nQuad1Pan, 32 * 4);
}

TEST(QuadSizes, WideInputsGrowTheRadiusFaster)
{
    LayoutSlot wide(1920, 1080, 800, 600);
    wide.slot.update(1, 0);
    wide.e.m_nQuad1Zoom = wide.e.m_nQuad3Zoom = 10;
    const std::string text = wide.printed();
    EXPECT_EQ(printedNumber(text, "Lr[", 0), 540 + 40); // 10 * 1.2 * 1.5^3 = 40.5
    EXPECT_EQ(printedNumber(text, "Lr[", 2), 540 + 40);
}

TEST(QuadSizes, LargeInputsGrowTheRadiusByThreeAStep)
{
    LayoutSlot large(2560, 1080, 800, 600);
    large.slot.update(1, 0);
    large.e.m_nQuad2Zoom = 10;
    EXPECT_EQ(printedNumber(large.printed(), "Lr[", 1), 561 + 30); // 540 * 1.04 + 30 = 591.6
}

TEST(QuadSizes, ScreensLargerThanTheInputShowSmallerLowerViews)
{
    LayoutSlot s(640, 480, 1280, 960);
    s.slot.update(1, 0);
    s.frame();
    EXPECT_EQ(s.e.m_nQuad1Key, 320 + 4);
    EXPECT_EQ(s.e.m_nQuad3Key, 160 + 4);
    s.frame();
}

TEST(QuadScreenClass, WideScreensMoveTheAreaByLess)
{
    LayoutSlot s(1280, 1024, 800, 600);
    s.slot.update(1, 0);
    s.e.m_nScreenRes = 16;
    s.e.m_bSetup = 1;
    s.e.m_nQuad1Zoom = 11;
    s.frame();
    // Reference 800x450: quarters 200 and 112, halves 400 and 225; 11 * 2.25 = 24.75 rows.
    const int radius = 512 + 13;
    std::vector<int> expected(2 * 400 * 300);
    s.e.Fisheye_calibration_Init_byArea(512, 640, radius, radius,
                                        {radius - 200 + 44, radius - 112 + 24, 400 - 88, 175}, 0,
                                        11, 400, 300, expected.data(), 0, 0);
    EXPECT_TRUE(std::equal(expected.begin() + 2, expected.end(), s.e.m_pSubMapB + 2));
}

TEST(QuadSizes, ScreensThatDoNotFitAreClippedToTheFrame)
{
    renderOnAwkwardScreens(1, false);
}
