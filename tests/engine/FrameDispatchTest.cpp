#include "Capture.h"
#include "Frames.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <tuple>

namespace {

bool allOf(const unsigned char* p, std::size_t n, unsigned char value)
{
    return std::all_of(p, p + n, [=](unsigned char c) { return c == value; });
}

} // namespace

TEST(FrameDispatch, ASetUpFrameClearsTheOutputAsPlanarForEveryFormat)
{
    for (FORMAT format : {FORMAT_YUYV, FORMAT_RGB, FORMAT_NV12, FORMAT_YV12}) {
        TestSlot slot(1280, 1024, 800, 600);
        FEDSP& e = slot.engine();
        e.m_bQuad = 0; // no layout: nothing is drawn
        Bytes in = patternFrame(1280, 1024, format);
        OutputFrame out(800, 600, FORMAT_RGB);
        EXPECT_EQ(slot.frame(in, out, format), 0);
        EXPECT_TRUE(allOf(out.data(), 480000, 0));
        EXPECT_TRUE(allOf(out.data() + 480000, 240000, 128));
        EXPECT_TRUE(allOf(out.data() + 720000, 720000, 0xA5));
        EXPECT_EQ(e.m_bSetup, 0);
    }
}

TEST(FrameDispatch, OrdinaryFramesDoNotClear)
{
    TestSlot slot(640, 480, 320, 240);
    slot.engine().m_bQuad = 0;
    Bytes in = patternFrame(640, 480, FORMAT_NV12);
    OutputFrame first(320, 240), second(320, 240);
    EXPECT_EQ(slot.frame(in, first), 0);
    EXPECT_EQ(slot.frame(in, second), 0);
    EXPECT_EQ(second.bytes(), OutputFrame(320, 240).bytes());
}

TEST(FrameDispatch, ASetUpFrameTakesOverTheFramesDescription)
{
    TestSlot slot(1920, 1080, 800, 600);
    FEDSP& e = slot.engine();
    Bytes in = patternFrame(1600, 1024, FORMAT_YV12);
    OutputFrame out(800, 600);
    EXPECT_EQ(VideoInput(0, in.data(), out.data(), 1600, 1024, FORMAT_YV12, false), 0);
    EXPECT_EQ(e.m_nInputW, 1600);
    EXPECT_EQ(e.m_nInputH, 1024);
    EXPECT_EQ(e.m_fScaleX, 1.25f);
    EXPECT_EQ(e.m_fScaleY, 1.0f);
    EXPECT_EQ(e.m_nFormat, FORMAT_YV12);
    EXPECT_EQ(e.m_nPitch, 1600);
    EXPECT_EQ(e.m_pInput, in.data());
    EXPECT_EQ(e.m_nRefH, 600);
}

TEST(FrameDispatch, ThresholdOfLargeInputs)
{
    for (auto [width, large] : {std::pair{2048, 0}, {2049, 1}, {2400, 1}}) {
        TestSlot slot(width, 480, 320, 240);
        EXPECT_EQ(slot.engine().m_bLargeInput, 0);
        Bytes in = patternFrame(width, 480, FORMAT_NV12);
        OutputFrame out(320, 240);
        EXPECT_EQ(slot.frame(in, out), 0);
        EXPECT_EQ(slot.engine().m_bLargeInput, large) << width;
    }
    TestSlot slot(2560, 480, 320, 240);
    EXPECT_EQ(slot.engine().m_bLargeInput, 1);
}

TEST(FrameDispatch, TheFormatBetweenSetUpFramesIsStagedButNotTakenOver)
{
    TestSlot slot(640, 480, 320, 240);
    FEDSP& e = slot.engine();
    slot.update(8, 0);
    Bytes nv12 = patternFrame(640, 480, FORMAT_NV12), rgb = patternFrame(640, 480, FORMAT_RGB, 2);
    OutputFrame out(320, 240);
    EXPECT_EQ(slot.frame(nv12, out), 0);
    EXPECT_EQ(slot.frame(rgb, out, FORMAT_RGB, true), 0);
    EXPECT_EQ(e.m_nFormat, FORMAT_NV12);
    EXPECT_TRUE(std::equal(rgb.end() - 640 * 3, rgb.end(), e.m_pStaged));
    // The mapping still reads the staged bytes as luma and chroma planes.
    OutputFrame expected(320, 240);
    e.FCMapping(FORMAT_NV12, e.m_pStaged, expected.data(), e.m_pMapTable, 640, 480, 320, 240, true);
    EXPECT_EQ(out.bytes(), expected.bytes());
}

TEST(FrameDispatch, FormatYuyvShowsTheStagingBufferAsItWas)
{
    TestSlot slot(640, 480, 320, 240);
    slot.update(8, 0);
    Bytes in(640 * 480 * 2, 99);
    OutputFrame out(320, 240);
    EXPECT_EQ(VideoInput(0, in.data(), out.data(), 640, 480, FORMAT_YUYV, false), 0);
    EXPECT_TRUE(allOf(out.data(), out.size(), 0)); // chroma too
}

TEST(FrameDispatch, RgbStagingOfAFullFrameStaysInItsBuffer)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes in(640 * 480 * 3, 77);
    OutputFrame out(320, 240, FORMAT_RGB);
    for (bool flip : {true, false}) {
        EXPECT_EQ(slot.frame(in, out, FORMAT_RGB, flip), 0);
        EXPECT_EQ(slot.engine().m_pStaged[640 * 480 * 3 - 1], 77); // kept without the flip
        EXPECT_EQ(slot.engine().m_pStaged[640 * 480 * 3], 0);
    }
}

TEST(FrameDispatch, AnUnflippedRgbFrameKeepsTheOldLastRow)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes first(640 * 480 * 3, 77), second(640 * 480 * 3, 88);
    OutputFrame out(320, 240, FORMAT_RGB);
    slot.frame(first, out, FORMAT_RGB, true);
    slot.frame(second, out, FORMAT_RGB, false);
    const unsigned char* staged = slot.engine().m_pStaged;
    EXPECT_TRUE(allOf(staged, 640 * 479 * 3, 88));
    EXPECT_TRUE(allOf(staged + 640 * 479 * 3, 640 * 3, 77));
}

TEST(FrameDispatch, BandsAfterTheFirstDoNotStage)
{
    TestSlot slot(640, 480, 320, 240);
    FEDSP& e = slot.engine();
    slot.update(8, 0);
    Bytes first = constantFrame(640, 480, FORMAT_NV12, 50);
    Bytes second = constantFrame(640, 480, FORMAT_NV12, 90);
    OutputFrame out(320, 240);
    const auto feed = [&](Bytes& in) {
        return e.LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), 640, 480, FORMAT_NV12,
                                                 false, 640);
    };
    e.m_nLineIndex = 0;
    EXPECT_TRUE(feed(first));
    e.m_nLineIndex = 64;
    EXPECT_TRUE(feed(second));
    EXPECT_EQ(e.m_pStaged[640 * 100], 50);
    e.m_nLineIndex = 0;
    EXPECT_TRUE(feed(second));
    EXPECT_EQ(e.m_pStaged[640 * 100], 90);
}

TEST(FrameDispatch, ScreenClasses)
{
    FEDSP e;
    e.FE_Initialize(0, 1280, 1024, 16);
    int* const tilts[] = {&e.m_nQuad1Tilt,    &e.m_nQuad2Tilt,    &e.m_nQuad3Tilt, &e.m_nQuad4Tilt,
                          &e.m_n360View1Tilt, &e.m_n360View2Tilt, &e.m_nSingleTilt};
    for (int* tilt : tilts)
        *tilt = 60;
    e.OnScreenres16();
    EXPECT_EQ(e.m_nAngleLimit, 60);
    EXPECT_EQ(e.m_nRefW, 800);
    EXPECT_EQ(e.m_nRefH, 450);
    for (int* tilt : tilts)
        EXPECT_EQ(*tilt, 60);
    e.m_nQuad2Tilt = 44;
    e.m_nQuad3Tilt = -50;
    e.OnScreenres4();
    EXPECT_EQ(e.m_nAngleLimit, 45);
    EXPECT_EQ(e.m_nRefH, 600);
    EXPECT_EQ(e.m_nQuad1Tilt, 45);
    EXPECT_EQ(e.m_nQuad2Tilt, 44);
    EXPECT_EQ(e.m_nQuad3Tilt, -50);
    EXPECT_EQ(e.m_nSingleTilt, 45);
}

TEST(FrameDispatch, ASetUpFrameAppliesTheScreenClass)
{
    TestSlot slot(640, 480, 320, 240);
    FEDSP& e = slot.engine();
    Bytes in = patternFrame(640, 480, FORMAT_NV12);
    OutputFrame out(320, 240);
    e.m_nQuad1Tilt = 60;
    e.m_nQuad2Tilt = 44;
    slot.frame(in, out);
    EXPECT_EQ(e.m_nQuad1Tilt, 45);
    EXPECT_EQ(e.m_nQuad2Tilt, 44);
    e.m_nQuad1Tilt = 60; // an ordinary frame leaves it
    slot.frame(in, out);
    EXPECT_EQ(e.m_nQuad1Tilt, 60);
    e.m_nScreenRes = 16;
    e.m_bSetup = 1;
    slot.frame(in, out);
    EXPECT_EQ(e.m_nAngleLimit, 60);
    EXPECT_EQ(e.m_nRefH, 450);
}

TEST(FrameDispatch, FramesThatTheBuffersCannotHoldAreRefusedUntouched)
{
    TestSlot slot(640, 480, 320, 240);
    FEDSP& e = slot.engine();
    Bytes in(4096 * 4096, 50);
    OutputFrame out(320, 240);
    for (auto [w, h] :
         {std::pair{3, 480}, {640, 3}, {0, 0}, {-640, 480}, {4096, 4096}, {1280, 960}}) {
        EXPECT_EQ(VideoInput(0, in.data(), out.data(), w, h, FORMAT_NV12, false), 16) << w;
        EXPECT_EQ(e.m_bSetup, 1);
        EXPECT_EQ(e.m_nPitch, 0);
    }
    EXPECT_EQ(out.bytes(), OutputFrame(320, 240).bytes());
}

TEST(FrameDispatch, AnEngineWithoutBuffersRefusesFrames)
{
    FEDSP e;
    e.FE_Initialize(0, 640, 480, 4);
    Bytes in = constantFrame(640, 480, FORMAT_NV12, 50);
    OutputFrame out(800, 600);
    EXPECT_FALSE(e.LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), 640, 480,
                                                   FORMAT_NV12, false, 640));
}

TEST(FrameDispatch, FramesOfMoreThanHalfTheStagingBufferInPixelsAreRefused)
{
    // The buffer holds 3 * 640 * 480 + 64 = 921664 bytes: 460832 pixels.
    for (auto [w, h, status] :
         {std::tuple{640, 720, 0}, {640, 721, 16}, {920, 500, 0}, {922, 500, 16}}) {
        TestSlot slot(640, 480, 320, 240);
        Bytes in = constantFrame(w, h, FORMAT_NV12, 50);
        OutputFrame out(320, 240);
        EXPECT_EQ(VideoInput(0, in.data(), out.data(), w, h, FORMAT_NV12, false), status) << w;
    }
}

TEST(FrameDispatch, OrdinaryFramesAreMeasuredByTheSetUpFramesHeightToo)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes in(1000 * 1000, 50);
    OutputFrame out(320, 240);
    const auto feed = [&](int w, int h) {
        return VideoInput(0, in.data(), out.data(), w, h, FORMAT_NV12, false);
    };
    EXPECT_EQ(feed(640, 480), 0);
    EXPECT_EQ(feed(960, 480), 0);
    EXPECT_EQ(feed(962, 100), 16); // 962 * 480 are too many
    EXPECT_EQ(slot.engine().m_nPitch, 960);
    slot.engine().m_bSetup = 1;
    EXPECT_EQ(feed(962, 100), 0);
}

TEST(FrameDispatch, SizesBeyondAllBoundsAreRefused)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes in(16, 50);
    OutputFrame out(320, 240);
    for (FORMAT format : {FORMAT_RGB, FORMAT_NV12})
        EXPECT_EQ(VideoInput(0, in.data(), out.data(), 2147483647, 2147483647, format, false), 16);
}
