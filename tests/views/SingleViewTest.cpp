#include "ViewTestSupport.h"

#include <algorithm>

namespace {

// A slot in the single view, 1280x1024 to 800x600.
class SingleView : public testing::Test, protected LayoutSlot {
protected:
    SingleView() : LayoutSlot(1280, 1024, 800, 600) {}

    void select(int camPos, int pan = 0, int tilt = 0, int radius = 640)
    {
        steer(8, camPos, 0, pan, tilt, radius);
    }
    bool frameBuilds() { return builds() > 0; }
};

} // namespace

TEST_F(SingleView, AHeldTiltStepMovesTheOffsetUpToItsTop)
{
    select(0, 0, -10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleAux, 6), (Values{14, 28, 42, 56, 64, 64}));
    EXPECT_EQ(e.m_nSingleTilt, 45);
    select(0, 0, 10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 6), (Values{35, 25, 15, 5, 0, 0}));
    EXPECT_EQ(e.m_nSingleAux, 0);
}

TEST_F(SingleView, AHeldPanStepTurnsOnWhateverTheSubViewAndRebuilds)
{
    select(0, 10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 3), (Values{33, 66, 99}));
    EXPECT_TRUE(frameBuilds());
    select(0, -10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 2), (Values{99, 66}));
    select(0, 0);
    frameBuilds();
    EXPECT_FALSE(frameBuilds());
}

TEST_F(SingleView, TheFloorSteersTheOtherWayRound)
{
    select(2, 10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 2), (Values{-33, -66}));
    select(2, 0, 10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 5), (Values{10, 20, 30, 40, 45}));
    select(2, 0, -10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 5), (Values{35, 25, 15, 5, 0}));
}

TEST_F(SingleView, EqualStepsCountAsAPanStep)
{
    select(0, 10, -10);
    slot.frame(in, out);
    EXPECT_EQ(e.m_nSinglePan, 33);
    EXPECT_EQ(e.m_nSingleTilt, 0);
}

TEST_F(SingleView, NoStepIsAPanStepOfNothingThatLimitsTheOffset)
{
    select(0);
    e.m_nSingleAux = 1000;
    slot.frame(in, out);
    EXPECT_EQ(e.m_nSinglePan, 0);
    EXPECT_EQ(e.m_nSingleAux, 64);
    e.m_nSingleAux = -3;
    slot.frame(in, out);
    EXPECT_EQ(e.m_nSingleAux, 0);
}

TEST_F(SingleView, TheTiltStaysInItsLimitsOnCeilingAndFloor)
{
    for (int camPos : {0, 2})
        for (int step : {-32768, 32767}) {
            select(camPos, 0, step);
            overFrames(&FEDSP::m_nSingleTilt, 2);
            EXPECT_EQ(e.m_nSingleTilt, (step < 0) == (camPos == 0) ? 45 : 0);
        }
    select(0, 0, 1);
    e.m_nSingleTilt = -7; // set from outside
    slot.frame(in, out);
    EXPECT_EQ(e.m_nSingleTilt, 0);
}

TEST_F(SingleView, ZoomSlowsThePanAndWidensTheOffset)
{
    select(0, 10);
    e.m_nSingleZoom = 44;
    // top = 44 * 9 + 64 = 460, slope = 10.222; 80 / 11.222 = 7.13
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 2), (Values{7, 14}));
    select(0, 0, -3);
    // 3 * 10.222 = 30.67, 61.67 and 92.67 truncated
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleAux, 3), (Values{30, 60, 90}));
}

TEST_F(SingleView, TheWallTiltsBothWays)
{
    select(1, 0, -10);
    EXPECT_EQ(e.m_nSingleZoom, 10);
    // At zoom 10 the slope is 0, raised to 1; the offset may not leave 0..45.
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 6), (Values{-10, -20, -30, -40, -45, -45}));
    EXPECT_EQ(e.m_nSingleAux, 45);
    select(1, 0, 10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 10),
              (Values{-35, -25, -15, -5, 5, 15, 25, 35, 45, 45}));
}

TEST_F(SingleView, TheWallsOffsetFollowsTheTiltWhenZoomedIn)
{
    select(1, 0, -10);
    e.m_nSingleZoom = 50;
    // top = (150 - 30) * 3 = 360, slope = 2: tilt by 10 / 2, offset by 10 * 2, lowest
    // -(25 - 10) * 9 = -135.
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleAux, 8),
              (Values{-20, -40, -60, -80, -100, -120, -135, -135}));
    EXPECT_EQ(e.m_nSingleTilt, -40);
    select(1, 0, 32767);
    slot.frame(in, out);
    EXPECT_EQ(e.m_nSingleAux, 360);
    EXPECT_EQ(e.m_nSingleTilt, 45);
}

TEST_F(SingleView, TheWallsPanIsLimitedByTheZoom)
{
    select(1, 10);
    // Zoom 10: 20 * 1 / (0 + 1) a frame; limit (1 * 90 + (5 - 10) * 3) * 1 = 75
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 5), (Values{20, 40, 60, 75, 75}));
    select(1, -10);
    EXPECT_EQ(overFrames(&FEDSP::m_nSinglePan, 8), (Values{55, 35, 15, -5, -25, -45, -65, -75}));
}

TEST_F(SingleView, TheWallMovesTheCentreSidewaysInsteadOfTurning)
{
    select(1, 10);
    EXPECT_NE(printedBy([&] { slot.frame(in, out); })
                  .find("u[512] v[660], Lr[640], Sr[640] Ang[720.000000] Scale_N[10] "
                        "Tile_Angle[0] CamPos[2]"),
              std::string::npos);
}

TEST_F(SingleView, ArgumentsOfTheTableOnCeilingAndFloor)
{
    select(0, 10);
    EXPECT_NE(printedBy([&] { slot.frame(in, out); })
                  .find("u[512] v[640], Lr[640], Sr[640] Ang[123.000000] Scale_N[0] "
                        "Tile_Angle[0] CamPos[0]"),
              std::string::npos);
    e.m_nSinglePan = -100 - 33;
    EXPECT_NE(printedBy([&] { slot.frame(in, out); }).find("Ang[1430.000000]"), std::string::npos);
    select(2);
    e.m_nSinglePan = 1440 * 5 + 7;
    EXPECT_NE(printedBy([&] { slot.frame(in, out); }).find("Ang[97.000000]"), std::string::npos);
    EXPECT_EQ(e.m_nSinglePan, 1440 * 5 + 7);
}

TEST_F(SingleView, TheLensRadiusGrowsWithTheZoom)
{
    const auto radiusAt = [&](int zoom) {
        e.m_nSingleZoom = zoom;
        e.m_bSetup = 1;
        const std::string line = printedBy([&] { slot.frame(in, out); });
        return std::stoi(line.substr(line.find("Lr[") + 3));
    };
    select(0);
    EXPECT_EQ(radiusAt(7), 640 + 4);   // 7 * 1.5 * 0.4 = 4.2
    EXPECT_EQ(radiusAt(88), 640 + 52); // 52.8
    select(1);
    EXPECT_EQ(radiusAt(25), 640 + 22); // 15 * 1.5
}

TEST(SingleViewRadius, WideInputsGrowItFaster)
{
    const auto radiusAt = [](int width, int camPos, int zoom) {
        TestSlot slot(width, 1024, 800, 600);
        slot.update(8, camPos);
        slot.engine().m_nRadius = 500;
        slot.engine().m_nSingleZoom = zoom;
        Bytes in = constantFrame(width, 1024, FORMAT_NV12, 5);
        OutputFrame out(800, 600);
        const std::string line = printedBy([&] { slot.frame(in, out); });
        return std::stoi(line.substr(line.find("Lr[") + 3));
    };
    EXPECT_EQ(radiusAt(1920, 0, 20), 500 + 60); // 20 * 1.5 * 1.5^3 * 0.4 * 1.5 = 60.75
    EXPECT_EQ(radiusAt(1920, 1, 20), 500 + 50); // 10 * 1.5 * 1.5^3 = 50.6
    EXPECT_EQ(radiusAt(2560, 0, 21), 520 + 31); // 520 + 31.5
    EXPECT_EQ(radiusAt(2560, 1, 21), 500 + 33);
}

TEST_F(SingleView, EveryKeyedChangeRebuilds)
{
    select(0);
    frameBuilds();
    EXPECT_FALSE(frameBuilds());
    for (int FEDSP::*field : {&FEDSP::m_nSingleZoom, &FEDSP::m_nSingleTilt, &FEDSP::m_nSingleAux,
                              &FEDSP::m_nSinglePan}) {
        e.*field += 1;
        EXPECT_TRUE(frameBuilds());
        EXPECT_FALSE(frameBuilds());
    }
    e.m_nScreenRes = 16;
    EXPECT_TRUE(frameBuilds());
    EXPECT_FALSE(frameBuilds());
    e.m_nCamPos = 2;
    EXPECT_TRUE(frameBuilds());
    EXPECT_FALSE(frameBuilds());
    e.m_bKeyFlag1 = 1;
    EXPECT_TRUE(frameBuilds());
    e.m_bKeyFlag2 = 1;
    EXPECT_TRUE(frameBuilds());
    EXPECT_FALSE(frameBuilds());
    e.m_nScreenW = 796;
    EXPECT_TRUE(frameBuilds());
    e.m_bSetup = 1;
    EXPECT_TRUE(frameBuilds());
    EXPECT_FALSE(frameBuilds());
    e.m_bKeyFlag3 = 1; // rebuilds on every frame while it is set
    EXPECT_TRUE(frameBuilds());
    EXPECT_TRUE(frameBuilds());
}

TEST_F(SingleView, HeightCentreAndRadiusAreNotKeyed)
{
    select(0);
    frameBuilds();
    e.m_nScreenH = 596;
    EXPECT_FALSE(frameBuilds());
    select(0, 0, 0, 500);
    EXPECT_FALSE(frameBuilds());
    e.m_nCenterX += 10;
    EXPECT_FALSE(frameBuilds());
    e.m_bSetup = 1;
    EXPECT_TRUE(frameBuilds());
}

TEST_F(SingleView, ChangesThatCancelInTheKeyDoNotRebuild)
{
    select(0);
    frameBuilds();
    e.m_nSingleZoom += 3;
    e.m_nSingleTilt -= 3;
    EXPECT_FALSE(frameBuilds());
}

TEST_F(SingleView, OtherMountingsBuildNothingButStoreTheKeyAndFlip)
{
    select(0);
    slot.frame(in, out);
    e.m_nCamPos = 3;
    e.m_nSinglePan = 5;
    OutputFrame turned(800, 600);
    EXPECT_EQ(printedBy([&] { slot.frame(in, turned); }).find("Fisheye_calibration_Init_byArea:"),
              std::string::npos);
    EXPECT_EQ(e.m_nSinglePanBuilt, 5);
    EXPECT_EQ(e.m_nSingleKey, 800 + 3 + 4);
    for (const std::size_t row : {std::size_t(0), std::size_t(77), std::size_t(599)})
        EXPECT_TRUE(std::equal(out.data() + row * 800, out.data() + row * 800 + 800,
                               turned.data() + (599 - row) * 800));
}

TEST_F(SingleView, TheFloorIsTurnedUpsideDown)
{
    select(2);
    slot.frame(in, out);
    OutputFrame direct(800, 600);
    e.FCMapping(FORMAT_NV12, e.m_pStaged, direct.data(), e.m_pMapTable, 1280, 1024, 800, 600, true);
    Bytes expected(out.size());
    e.TransferButtomToUpPlanar(direct.data(), expected.data(), 800, 600, true);
    EXPECT_EQ(out.bytes(), expected);
}

TEST_F(SingleView, UnknownFormatsDrawNothing)
{
    select(0);
    for (int format : {4, -1, 1000}) {
        e.m_bSetup = 1;
        OutputFrame frame(800, 600);
        const std::string printed = printedBy([&] { slot.frame(in, frame, FORMAT(format)); });
        EXPECT_EQ(printed.find("Bilinear"), std::string::npos);
        EXPECT_EQ(occurrences(printed, "Fisheye_calibration_Init_byArea:"), 1);
        EXPECT_EQ(frame[0], 0); // cleared by the set-up frame
        EXPECT_EQ(frame[480000], 128);
    }
}

TEST_F(SingleView, PrintsTwoTimingLinesAFrame)
{
    select(0);
    slot.frame(in, out);
    EXPECT_EQ(maskTicks(printedBy([&] { slot.frame(in, out); })),
              "Bilinear_NV12_C: luma Tick N, sum_empty_pixel 0\nBilinear_NV12_C: chroma Tick N\n");
}

TEST_F(SingleView, BandsJoinToTheWholeFrame)
{
    select(0, 10);
    slot.frame(in, out);
    select(0);
    slot.frame(in, out);
    OutputFrame banded(800, 600);
    int line = 0;
    for (; line < 600; line += 64) {
        e.m_nLineIndex = line;
        EXPECT_EQ(e.AccessCtr_FESingleView(e.m_pStaged, banded.data(), 1280, 1024, 800, 600),
                  line + 64 >= 600);
        // Untouched below the band.
        if (line + 64 < 600) {
            EXPECT_EQ(banded[std::size_t(line + 64) * 800], 0xA5);
        }
    }
    EXPECT_TRUE(std::equal(out.data(), out.data() + 480000, banded.data()));
    for (std::size_t i = 480000; i < 720000; i += 2) {
        ASSERT_EQ(banded[i], out[i + 1]); // the band kernel exchanges the chroma bytes
        ASSERT_EQ(banded[i + 1], out[i]);
    }
}

TEST_F(SingleView, AFlippedBandedFrameAppearsWithItsLastBand)
{
    select(2);
    slot.frame(in, out);
    OutputFrame banded(800, 600);
    for (int line = 0; line < 600; line += 64) {
        EXPECT_EQ(banded.bytes(), OutputFrame(800, 600).bytes()) << line;
        e.m_nLineIndex = line;
        e.AccessCtr_FESingleView(e.m_pStaged, banded.data(), 1280, 1024, 800, 600);
    }
    EXPECT_TRUE(std::equal(out.data(), out.data() + 480000, banded.data()));
}

TEST_F(SingleView, SteersOnceABandedFrame)
{
    select(0, 10);
    for (int line : {0, 64, 128}) {
        e.m_nLineIndex = line;
        e.AccessCtr_FESingleView(e.m_pStaged, out.data(), 1280, 1024, 800, 600);
    }
    EXPECT_EQ(e.m_nSinglePan, 33);
}

TEST_F(SingleView, RgbInBandsIsRefusedWithALine)
{
    select(0);
    e.m_nFormat = FORMAT_RGB;
    e.m_nLineIndex = 0;
    bool done = true;
    EXPECT_EQ(occurrences(printedBy([&] {
                              done = e.AccessCtr_FESingleView(e.m_pStaged, out.data(), 1280, 1024,
                                                              800, 600);
                          }),
                          "FORMAT_RGB is Not support \n"),
              1);
    EXPECT_FALSE(done);
}

TEST(SingleViewSizes, OddPortraitAndLargeScreensStayInTheirFrame)
{
    renderOnAwkwardScreens(8, true);
}

TEST(SingleViewSizes, OddWholeFramesHoldTheKernelsBytes)
{
    TestSlot slot(640, 480, 319, 239);
    slot.update(8, 0);
    Bytes in = patternFrame(640, 480, FORMAT_NV12);
    OutputFrame out(319, 239), room(330, 250);
    slot.frame(in, out);
    FEDSP& e = slot.engine();
    e.FCMapping(FORMAT_NV12, e.m_pStaged, room.data(), e.m_pMapTable, 640, 480, 319, 239, true);
    EXPECT_TRUE(std::equal(out.data(), out.data() + out.size(), room.data()));
}

TEST_F(SingleView, RestoringAPositionWithAnotherCircleDoesNotRebuild)
{
    select(0);
    frameBuilds();
    FE_CurPosParams position;
    e.LmFEGetPosition(0, &position);
    position.nRadius = 500;
    position.nCenterX = position.nCenterY = 600;
    e.LmFESetPosition(0, &position);
    EXPECT_EQ(e.m_nRadius, 500);
    EXPECT_FALSE(frameBuilds());
    position.view[0].nPan = 8;
    e.LmFESetPosition(0, &position);
    EXPECT_TRUE(frameBuilds());
}

TEST_F(SingleView, TheWideScreenClassHasItsOwnLimitAndRows)
{
    e.m_nScreenRes = 16;
    select(0, 0, -30);
    EXPECT_EQ(overFrames(&FEDSP::m_nSingleTilt, 3), (Values{30, 60, 60}));
    // 64 / 60 * 30 = 32; the offset's top is 64
    EXPECT_EQ(e.m_nSingleAux, 64);

    // Zoomed in by 20 steps, the area is 800 - 160 by 450 - 90 pixels, 45 rows down.
    select(0);
    e.m_nSingleTilt = e.m_nSingleAux = 0;
    e.m_nSingleZoom = 20;
    slot.frame(in, out);
    std::vector<int> expected(800 * 600 * 2);
    e.m_nPitch = 1280;
    e.Fisheye_calibration_Init_byArea(512, 640, 652, 652,
                                      {652 - 400 + 80, 652 - 225 + 45, 640, 360}, 90, 20, 800, 600,
                                      expected.data(), 0, 0);
    EXPECT_TRUE(std::equal(expected.begin() + 2, expected.end(), e.m_pMapTable + 2));
}

TEST(SingleViewScreens, WiderScreensPanFaster)
{
    for (auto [camPos, expected] : {std::pair{0, 66}, {2, -66}, {1, 40}}) {
        TestSlot slot(1600, 1024, 1600, 600);
        slot.update(8, camPos, 1, 10);
        slot.engine().m_nRadius = 640;
        Bytes in = constantFrame(1600, 1024, FORMAT_NV12, 5);
        OutputFrame out(1600, 600);
        slot.frame(in, out);
        // 2 * 40 * 2 / (64 / 45 + 1) = 66.06; on the wall 20 * 2 / 1
        EXPECT_EQ(slot.engine().m_nSinglePan, expected);
    }
}

TEST_F(SingleView, TheLastLineOfAFlippedFrameShowsIt)
{
    select(2);
    slot.frame(in, out);
    OutputFrame banded(800, 600);
    // A band that begins with the last line reports 600 lines; one beyond it reports its own line.
    for (int line : {600, 601}) {
        e.m_nLineIndex = line;
        EXPECT_TRUE(e.AccessCtr_FESingleView(e.m_pStaged, banded.data(), 1280, 1024, 800, 600));
        EXPECT_EQ(banded.bytes(), out.bytes()) << line;
        banded = OutputFrame(800, 600);
    }
}
