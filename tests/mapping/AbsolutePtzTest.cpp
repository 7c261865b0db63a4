#include "Frames.h"

#include <gtest/gtest.h>
#include <utility>

namespace {

using PanTilt = std::pair<int, int>;

class AbsolutePtz : public testing::Test {
protected:
    // Rows are counted from m_nCenterX = 500, columns from m_nCenterY = 600; the radius is 400.
    AbsolutePtz()
    {
        engine.FE_Initialize(0, 1280, 1024, 4);
        engine.m_nCenterX = 500;
        engine.m_nCenterY = 600;
        engine.m_nRadius = 400;
    }

    PanTilt first(int right, int down)
    {
        short pan = 7777, tilt = 7777;
        engine.GetAbsolutePositionFromInputVideoPoint(600 + right, 500 + down, pan, tilt);
        return {pan, tilt};
    }
    PanTilt second(int right, int down)
    {
        short pan = 7777, tilt = 7777;
        engine.GetAbsolutePositionFromInputVideoPointCPU(600 + right, 500 + down, pan, tilt);
        return {pan, tilt};
    }
    void setMode(int mode) { engine.m_ViewParams.nViewMode = static_cast<unsigned short>(mode); }

    FEDSP engine;
};

} // namespace

TEST_F(AbsolutePtz, TheCentreIsAngleZero)
{
    EXPECT_EQ(first(0, 0), PanTilt(0, 0));
    EXPECT_EQ(second(0, 0), PanTilt(0, 0));
    engine.m_nCamPos = 2;
    EXPECT_EQ(first(0, 0), PanTilt(0, 0));
    EXPECT_EQ(second(0, 0), PanTilt(0, 0));
    engine.m_nCamPos = 1;
    EXPECT_EQ(first(0, 0), PanTilt(0, 0));
    EXPECT_EQ(second(0, 0), PanTilt(0, 0));
}

TEST_F(AbsolutePtz, AboveTheCentreIsPanZeroOrAHalfTurn)
{
    EXPECT_EQ(first(0, -200), PanTilt(0, -450));
    EXPECT_EQ(second(0, -200), PanTilt(0, 450));
    engine.m_nCamPos = 2;
    EXPECT_EQ(first(0, -200), PanTilt(1800, 450));
    EXPECT_EQ(second(0, -200), PanTilt(0, -450));
}

TEST_F(AbsolutePtz, TheAxesOnTheCeiling)
{
    EXPECT_EQ(first(0, 100).first, 1800);
    EXPECT_EQ(first(-100, 0).first, 2700);
    EXPECT_EQ(first(100, 0).first, 900);
    EXPECT_EQ(second(0, 100).first, 1800);
    EXPECT_EQ(second(-100, 0).first, 2700); // 90 degrees, against the angle
    EXPECT_EQ(second(100, 0).first, 900);
}

TEST_F(AbsolutePtz, TheAxesOnTheFloor)
{
    engine.m_nCamPos = 2;
    EXPECT_EQ(first(0, 100).first, 0);
    EXPECT_EQ(first(-100, 0).first, 2700);
    EXPECT_EQ(first(100, 0).first, 900);
    EXPECT_EQ(second(-100, 0).first, 2700);
}

TEST_F(AbsolutePtz, TheFourQuarters)
{
    // 45 degrees, with the factor 0.31831 for 1/pi: 45.00003 degrees.
    EXPECT_EQ(first(100, -100).first, 3600 - 3150);
    EXPECT_EQ(first(100, 100).first, 3600 - 2249);
    EXPECT_EQ(first(-100, 100).first, 3600 - 1350);
    EXPECT_EQ(first(-100, -100).first, 3600 - 449);
    engine.m_nCamPos = 2;
    EXPECT_EQ(first(100, -100).first, 1350);
    EXPECT_EQ(first(100, 100).first, 449);
    EXPECT_EQ(first(-100, 100).first, 3150);
    EXPECT_EQ(first(-100, -100).first, 2249);
}

TEST_F(AbsolutePtz, TheSecondVariantHasQuarterDegreeSteps)
{
    // Nearly a full turn: 359.9 degrees become 1439 quarters, then 1, then 2 tenths.
    EXPECT_EQ(second(1, -573).first, 2);
    EXPECT_EQ(first(1, -573).first, 1);
}

TEST_F(AbsolutePtz, WallPointsAreOffsets)
{
    engine.m_nCamPos = 1;
    EXPECT_EQ(second(400, 0).first, 899); // the factor 0.0175 makes 270 degrees 4.725 radians
    EXPECT_EQ(second(-400, 0).first, -899);
    EXPECT_EQ(second(0, -400), PanTilt(0, -900));
    EXPECT_EQ(second(0, 400).second, 899);
    EXPECT_EQ(first(400, 0).first, 899);
    EXPECT_EQ(first(0, -200).second, -449);
    EXPECT_EQ(first(0, 200), PanTilt(0, 450));
}

TEST_F(AbsolutePtz, OutsideTheCircleIsAsOnItsRim)
{
    for (int camPos : {0, 1, 2}) {
        engine.m_nCamPos = camPos;
        EXPECT_EQ(first(800, 0), first(400, 0));
        EXPECT_EQ(second(0, 800), second(0, 400));
    }
    engine.m_nCamPos = 0;
    EXPECT_EQ(second(0, 100000).second, 900);
}

TEST_F(AbsolutePtz, OtherMountingsWriteNothing)
{
    engine.m_nCamPos = 3;
    EXPECT_EQ(first(10, 10), PanTilt(7777, 7777));
    EXPECT_EQ(second(10, 10), PanTilt(7777, 7777));
}

TEST_F(AbsolutePtz, ARadiusOfZeroIsTheRimEverywhereButInTheCentre)
{
    engine.m_nRadius = 0;
    EXPECT_EQ(second(0, 0).second, 0);
    EXPECT_EQ(second(0, -1).second, 900);
}

TEST_F(AbsolutePtz, SteersTheSingleView)
{
    setMode(8);
    engine.SetAbsolutePTZCPU(0, 900, 450, 400, 1);
    EXPECT_EQ(engine.m_nSinglePan, 360);
    EXPECT_EQ(engine.m_nSingleZoom, 44);
    EXPECT_EQ(engine.m_nSingleTilt, 22);
    // S = 300, rExt = trunc((400 - 150) / 10) = 25, top = 44 * 9 + 25 = 421,
    // slope = 421 / 51 + 0.5 = 8.7549, aux = trunc(22 * 8.7549)
    EXPECT_EQ(engine.m_nSingleAux, 192);
    EXPECT_EQ(engine.m_ViewParams.nSubView, 1);
}

TEST_F(AbsolutePtz, TheOffsetStaysBetweenZeroAndItsTop)
{
    setMode(8);
    engine.SetAbsolutePTZCPU(0, 0, 32767, 0, 1);
    EXPECT_EQ(engine.m_nSingleAux, 25);
    engine.SetAbsolutePTZCPU(0, 0, -900, 0, 1);
    EXPECT_EQ(engine.m_nSingleTilt, -45);
    EXPECT_EQ(engine.m_nSingleAux, 0);
}

TEST_F(AbsolutePtz, TheFloorNegatesTheTilt)
{
    setMode(8);
    engine.m_nCamPos = 2;
    engine.SetAbsolutePTZCPU(0, 0, -900, 0, 1);
    EXPECT_EQ(engine.m_nSingleTilt, 45);
    engine.SetAbsolutePTZCPU(0, 0, -32768, 0, 1);
    EXPECT_EQ(engine.m_nSingleTilt, 1638);
}

TEST_F(AbsolutePtz, ANegativeZoomKeepsTheZoom)
{
    setMode(8);
    engine.m_nSingleZoom = 33;
    engine.SetAbsolutePTZCPU(0, 0, 0, -1, 1);
    EXPECT_EQ(engine.m_nSingleZoom, 33);
}

TEST_F(AbsolutePtz, ScreensLargerThanTheInputUseHalfTheInput)
{
    setMode(8);
    engine.m_nScreenW = 1281;
    engine.SetAbsolutePTZCPU(0, 0, 32767, 0, 1);
    EXPECT_EQ(engine.m_nSingleAux, 14); // S = 512, (400 - 256) / 10
}

TEST_F(AbsolutePtz, OtherSingleViewsOnlyStoreTheirNumber)
{
    setMode(8);
    engine.SetAbsolutePTZCPU(0, 900, 450, 400, 2);
    EXPECT_EQ(engine.m_ViewParams.nSubView, 2);
    EXPECT_EQ(engine.m_nSinglePan, 0);
    EXPECT_EQ(engine.m_nSingleZoom, 0);
}

TEST_F(AbsolutePtz, ViewsOutsideTheOtherLayoutsChangeNothing)
{
    engine.m_ViewParams.nSubView = 77;
    for (auto [mode, view] : {PanTilt{1, 0}, {1, 5}, {2, 0}, {2, 3}, {4, 1}, {3, 1}}) {
        setMode(mode);
        engine.SetAbsolutePTZCPU(0, 900, 450, 400, static_cast<unsigned short>(view));
        EXPECT_EQ(engine.m_ViewParams.nSubView, 77) << mode << " " << view;
    }
    EXPECT_EQ(engine.m_nQuad1Pan + engine.m_nQuad4Pan + engine.m_n360View1Pan, 0);
}

TEST_F(AbsolutePtz, PanOffsetsOfTheQuadAnd360Views)
{
    setMode(1);
    for (unsigned short view = 1; view <= 4; ++view)
        engine.SetAbsolutePTZCPU(0, 900, 0, 400, view);
    EXPECT_EQ(engine.m_nQuad1Pan, 360);
    EXPECT_EQ(engine.m_nQuad2Pan, 270);
    EXPECT_EQ(engine.m_nQuad3Pan, 180);
    EXPECT_EQ(engine.m_nQuad4Pan, 90);
    EXPECT_EQ(engine.m_nQuad3Zoom, 22);
    setMode(2);
    engine.SetAbsolutePTZCPU(0, 900, 450, 400, 1);
    engine.SetAbsolutePTZCPU(0, 900, 450, 400, 2);
    EXPECT_EQ(engine.m_n360View1Pan, 360);
    EXPECT_EQ(engine.m_n360View2Pan, 270);
    // top = 22 * 9 + 25 = 223, slope = 223 / 61 + 0.5, aux = trunc(22 * 4.1557)
    EXPECT_EQ(engine.m_n360View2Aux, 91);
    EXPECT_EQ(engine.m_ViewParams.nSubView, 2);
}

TEST_F(AbsolutePtz, TheFourthQuadViewKeepsItsZoom)
{
    setMode(1);
    engine.m_nQuad4Zoom = 17;
    for (int camPos : {0, 2})
        for (const short zoom : std::initializer_list<short>{0, 5, 400, 800}) {
            engine.m_nCamPos = camPos;
            engine.SetAbsolutePTZCPU(0, 0, 0, zoom, 4);
            EXPECT_EQ(engine.m_nQuad4Zoom, 17);
        }
    engine.m_nCamPos = 1;
    engine.SetAbsolutePTZCPU(0, 0, 0, 400, 4);
    EXPECT_EQ(engine.m_nQuad4Zoom, 17);
    engine.SetAbsolutePTZCPU(0, 0, 0, 9, 4); // only the floor of the wall mounting applies
    EXPECT_EQ(engine.m_nQuad4Zoom, 10);
}

TEST_F(AbsolutePtz, WallZoomLimitsLookAtTheArgument)
{
    setMode(8);
    engine.m_nCamPos = 1;
    for (auto [zoom, expected] : {PanTilt{0, 10}, {9, 10}, {10, 1}, {69, 7}, {70, 70}, {800, 70}}) {
        engine.SetAbsolutePTZCPU(0, 0, 0, static_cast<short>(zoom), 1);
        EXPECT_EQ(engine.m_nSingleZoom, expected) << zoom;
    }
    setMode(2);
    engine.SetAbsolutePTZCPU(0, 0, 0, 800, 1);
    EXPECT_EQ(engine.m_n360View1Zoom, 44);
}

TEST_F(AbsolutePtz, WallPanIsAnOffset)
{
    engine.m_nCamPos = 1;
    setMode(8);
    engine.SetAbsolutePTZCPU(0, 450, 450, 400, 1);
    EXPECT_EQ(engine.m_nSinglePan, 180);
    // Zoom 70, top = 720, slope = 720 / 180 = 4, aux = 22 * 4
    EXPECT_EQ(engine.m_nSingleAux, 88);
    setMode(1);
    engine.SetAbsolutePTZCPU(0, 450, 450, 400, 2);
    EXPECT_EQ(engine.m_nQuad2Pan, 180);
    // Zoom 22, top = 144, slope = 144 / 120
    EXPECT_EQ(engine.m_nQuad2Aux, 26);
}

TEST_F(AbsolutePtz, TwoViewsTakeTheCeilingsPanOnTheWallToo)
{
    engine.m_nCamPos = 1;
    setMode(2);
    engine.SetAbsolutePTZCPU(0, 450, 0, 400, 1);
    engine.SetAbsolutePTZCPU(0, 450, 0, 400, 2);
    EXPECT_EQ(engine.m_n360View1Pan, 180);
    EXPECT_EQ(engine.m_n360View2Pan, 180);
    setMode(1);
    engine.SetAbsolutePTZCPU(0, 450, 0, 400, 4);
    EXPECT_EQ(engine.m_nQuad4Pan, 180 - 270);
}

TEST_F(AbsolutePtz, ScreensHigherThanTheInputUseHalfTheInputToo)
{
    setMode(8);
    engine.m_nScreenH = 1025;
    engine.SetAbsolutePTZCPU(0, 0, 32767, 0, 1);
    EXPECT_EQ(engine.m_nSingleAux, 14);
}
