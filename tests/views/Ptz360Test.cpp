#include "ViewTestSupport.h"

#include <algorithm>

namespace {

// 1280x1024 to 800x600: views of 400x388, so the offset's base is trunc((640 - 194) / 10) = 44.
class Ptz360 : public testing::Test, protected LayoutSlot {
protected:
    Ptz360() : LayoutSlot(1280, 1024, 800, 600) {}

    void steer(int camPos, int view, int pan, int tilt)
    {
        LayoutSlot::steer(2, camPos, view, pan, tilt, 640);
    }
};

} // namespace

TEST_F(Ptz360, BothViewsLookFromTheSameAngle)
{
    steer(0, 0, 0, 0);
    const std::string text = printed();
    EXPECT_EQ(occurrences(text, "Init_byArea:"), 2);
    EXPECT_EQ(printedNumber(text, "Ang[", 0), 468);
    EXPECT_EQ(printedNumber(text, "Ang[", 1), 468);
    EXPECT_EQ(occurrences(text, "Tick"), 6); // the strip's lines too
    EXPECT_EQ(builds(), 0);
}

TEST_F(Ptz360, StepsFollowTheScreensHeight)
{
    for (auto [view, tilt, aux] : {std::tuple{1, &FEDSP::m_n360View1Tilt, &FEDSP::m_n360View1Aux},
                                   {2, &FEDSP::m_n360View2Tilt, &FEDSP::m_n360View2Aux}}) {
        steer(0, view, 0, -20);
        // 20 * 1 * 44 / 45 = 19.6 a frame, top 44
        EXPECT_EQ(overFrames(aux, 4), (Values{19, 38, 44, 44}));
        EXPECT_EQ(e.*tilt, 45);
        steer(0, view, 0, 20);
        EXPECT_EQ(overFrames(tilt, 3), (Values{25, 5, 0}));
        EXPECT_EQ(e.*aux, 0);
    }
}

TEST(Ptz360Sizes, HigherScreensMoveTheOffsetFurther)
{
    LayoutSlot high(1280, 1024, 800, 1000);
    high.slot.update(2, 0, 1, 0, -10);
    high.e.m_nRadius = 1000;
    high.frame();
    // Views of 648 rows: base (1000 - 324) / 10 = 67; 10 * (1000 / 600) * 67 / 45 = 24.8
    EXPECT_EQ(high.e.m_n360View1Aux, 24);
}

TEST_F(Ptz360, PanSteps)
{
    steer(0, 1, 10, 0);
    EXPECT_EQ(overFrames(&FEDSP::m_n360View1Pan, 2), (Values{32, 64})); // 40 / (44/45/4 + 1) = 32.1
    EXPECT_EQ(builds(), 0);                                             // not keyed
    steer(2, 2, 10, 0);
    EXPECT_EQ(overFrames(&FEDSP::m_n360View2Pan, 2), (Values{-32, -64}));
}

TEST_F(Ptz360, TheFirstViewsZoomWidensBoth)
{
    steer(0, 0, 0, 0);
    frame();
    e.m_n360View1Zoom = 20;
    std::string text = printed();
    EXPECT_EQ(occurrences(text, "Init_byArea:"), 1); // the second view's key is its own
    EXPECT_EQ(printedNumber(text, "Lr["), 640 + 24);
    e.m_n360View2Tilt = 1;
    text = printed();
    EXPECT_EQ(occurrences(text, "Init_byArea:"), 1);
    EXPECT_EQ(printedNumber(text, "Lr["), 640 + 24); // by view 1's zoom
    EXPECT_EQ(printedNumber(text, "Scale_N["), 0);
}

TEST(Ptz360Large, LargeInputsGrowByTheirOwnZoom)
{
    LayoutSlot s(2560, 1080, 800, 600);
    s.slot.update(2, 0);
    s.e.m_n360View1Zoom = 20;
    s.e.m_n360View2Zoom = 10;
    const std::string text = s.printed();
    EXPECT_EQ(printedNumber(text, "Lr[", 0), 561 + 60); // 540 * 1.04 = 561.6
    EXPECT_EQ(printedNumber(text, "Lr[", 1), 561 + 30);
}

TEST_F(Ptz360, TheWallsRadiusComesWithSteering)
{
    steer(1, 0, 0, 0);
    e.m_n360View1Zoom = 30;
    e.m_n360View2Zoom = 20;
    std::string text = printed();
    EXPECT_EQ(printedNumber(text, "Lr[", 0), 640 + 36); // 30 * 1.2, though it is on the wall
    EXPECT_EQ(printedNumber(text, "Lr[", 1), 640 + 36);
    steer(1, 1, 0, 5);
    e.m_n360View1Zoom = 30;
    e.m_bSetup = 1;
    text = printed();
    EXPECT_EQ(printedNumber(text, "Lr[", 0), 640 + 24); // (30 - 10) * 1.2
    EXPECT_EQ(printedNumber(text, "Lr[", 1), 640 + 24); // and for the second view too
    steer(1, 2, 0, 5);
    e.m_n360View2Zoom = 20;
    e.m_bSetup = 1;
    text = printed();
    EXPECT_EQ(printedNumber(text, "Lr[", 0), 640 + 36);
    EXPECT_EQ(printedNumber(text, "Lr[", 1), 640 + 12);
}

TEST_F(Ptz360, TheWallDoesNotRaiseTheZoomByItself)
{
    steer(1, 0, 0, 0);
    e.m_n360View1Zoom = 4;
    frame();
    EXPECT_EQ(e.m_n360View1Zoom, 4);
}

TEST_F(Ptz360, TheWallsPanLimitIsKeptForTheSecondView)
{
    steer(1, 0, 0, 0);
    e.m_n360View2Zoom = 20;
    e.m_n360View1Pan = e.m_n360View2Pan = 999;
    const std::string text = printed();
    EXPECT_EQ(e.m_n360View1Pan, 90);
    EXPECT_EQ(e.m_n360View2Pan, 110); // 90 + 2 * (20 - 10)
    EXPECT_EQ(e.m_f360PanLimit, 110.0f);
    EXPECT_EQ(printedNumber(text, "v[", 1), 640 + 110);
    EXPECT_EQ(printedNumber(text, "Ang[", 1), 720);
    EXPECT_EQ(printedNumber(text, "CamPos[", 1), 2);
}

TEST_F(Ptz360, WallSteering)
{
    steer(1, 1, 0, -10);
    e.m_n360View1Zoom = 40; // gain 315 / 120 = 2.625
    EXPECT_EQ(overFrames(&FEDSP::m_n360View1Aux, 3), (Values{-26, -52, -78}));
    steer(1, 1, 10, 0);
    // 20 / (2.625 / 4 + 1) = 12.07
    EXPECT_EQ(overFrames(&FEDSP::m_n360View1Pan, 2), (Values{12, 24}));
}

TEST_F(Ptz360, TheThirdKeyFlagRebuildsBoth)
{
    steer(0, 0, 0, 0);
    frame();
    e.m_bKeyFlag3 = 1;
    EXPECT_EQ(builds(), 2);
    EXPECT_EQ(builds(), 0);
    EXPECT_EQ(e.m_n360View1Key, 400 + 4 + 1);
    e.m_nCamPos = 3;
    EXPECT_EQ(builds(), 0);
    EXPECT_EQ(e.m_n360View1Key, 400 + 4 + 1 + 3);
}

TEST_F(Ptz360, TheAreaMovesByWholeRows)
{
    steer(0, 0, 0, 0);
    e.m_nScreenRes = 16;
    e.m_bSetup = 1;
    e.m_n360View1Zoom = 11; // 24.75 rows: 24
    frame();
    const int radius = 640 + 13;
    std::vector<int> expected(2 * 400 * 388);
    e.Fisheye_calibration_Init_byArea(512, 640, radius, radius,
                                      {radius - 200 + 44, radius - 112 + 24, 400 - 88, 225 - 48},
                                      468, 11, 400, 388, expected.data(), 0, 0);
    EXPECT_TRUE(std::equal(expected.begin() + 2, expected.end(), e.m_pSubMapB + 2));
}

TEST_F(Ptz360, TablesAreNotCleared)
{
    steer(0, 0, 0, 0);
    frame();
    std::fill_n(e.m_pSubMapA, 2 * 400 * 388, 257);
    e.m_nCamPos = 3;
    frame();
    EXPECT_EQ(e.m_pSubMapA[0], 257);
}

TEST_F(Ptz360, TheRightViewLosesItsLastColumn)
{
    steer(0, 0, 0, 0);
    frame();
    OutputFrame view(400, 388);
    e.FCMapping(FORMAT_NV12, e.m_pStaged, view.data(), e.m_pSubMapA, 1280, 1024, 400, 388, true);
    for (std::size_t y = 0; y < 388; ++y) {
        ASSERT_EQ(out[y * 800 + 400], 0); // never written
        ASSERT_EQ(out[y * 800 + 401], view[y * 400]);
        ASSERT_EQ(out[y * 800 + 799], view[y * 400 + 398]);
    }
}

TEST_F(Ptz360, BandsComposeWithTheLastOne)
{
    steer(0, 0, 0, 0);
    frame();
    const Bytes whole = out.bytes();
    OutputFrame banded(800, 600);
    const Bytes untouched = banded.bytes();
    for (int line = 0; line < 388; line += 64) {
        EXPECT_EQ(banded.bytes(), untouched);
        e.m_nLineIndex = line;
        EXPECT_EQ(e.AccessCtr_FE360PTZ(e.m_pStaged, banded.data(), 1280, 1024, 800, 600),
                  line + 64 >= 388);
    }
    for (std::size_t i = 0; i < 388 * 800; ++i)
        ASSERT_TRUE(i % 800 == 400 || banded[i] == whole[i]) << i;
    for (std::size_t i = 480000; i < 480000 + 194 * 800; i += 2) {
        ASSERT_EQ(banded[i], whole[i + 1]); // the band kernel exchanges the chroma bytes
        ASSERT_EQ(banded[i + 1], whole[i]);
    }
}
