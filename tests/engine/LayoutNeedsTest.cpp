#include "engine/LayoutNeeds.h"

#include "Frames.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

// A slot of 640x480 on 320x240.
class LayoutNeeds : public testing::Test {
protected:
    LayoutNeeds() : slot(640, 480, 320, 240), e(slot.engine()) {}

    int frame(FORMAT format = FORMAT_NV12)
    {
        Bytes in = constantFrame(640, 480, format, 50);
        OutputFrame out(320, 240, format);
        return slot.frame(in, out, format);
    }
    void select(int mode, int radius, int camPos = 0)
    {
        FE_ViewParams view = slot.view(mode, camPos);
        view.nRadius = static_cast<unsigned short>(radius);
        FE_EventParams event;
        ParamsUpdated(0, &event, &view);
    }

    TestSlot slot;
    FEDSP& e;
};

} // namespace

TEST_F(LayoutNeeds, PanoramasAreRefusedWhenTheCircleIsTooLargeForThem)
{
    for (int mode : {2, 4})
        for (int camPos : {0, 1, 2}) {
            select(mode, 1024, camPos); // the longest side that every slot has room for
            EXPECT_EQ(frame(), 0) << mode << " " << camPos;
            select(mode, 65535, camPos);
            EXPECT_EQ(frame(), 16);
        }
}

TEST_F(LayoutNeeds, PerspectiveViewsTakeAnyCircle)
{
    for (int mode : {1, 8})
        for (int radius : {0, 1, 65535}) {
            select(mode, radius);
            EXPECT_EQ(frame(), 0) << mode << " " << radius;
        }
}

TEST_F(LayoutNeeds, ACircleRaisedWithoutAModeChangeIsCheckedOnTheNextFrame)
{
    select(2, 240);
    EXPECT_EQ(frame(), 0);
    e.m_nRadius = 65535;
    EXPECT_EQ(frame(), 16);
    e.m_nRadius = 240;
    EXPECT_EQ(frame(), 0);
}

TEST_F(LayoutNeeds, LeaveRoomForTheElementThatAMirrorReadsBehindItsPicture)
{
    const auto planar = [](std::int64_t w, std::int64_t h) { return w * h * 3 / 2; };
    select(8, 240, 2);
    EXPECT_GE(layoutNeeds(e, 640, 480, FORMAT_NV12)[kViewImage], planar(320, 240) + 2);
    select(1, 240, 2);
    EXPECT_GE(layoutNeeds(e, 640, 480, FORMAT_NV12)[kWorkImageA], planar(160, 120) + 2);
    select(2, 240, 2);
    EXPECT_GE(layoutNeeds(e, 640, 480, FORMAT_NV12)[kWorkImageA], planar(320, 84) + 2);
}

TEST(LayoutNeedsOfEverySlot, HeapBuffersServeEveryLayoutFormatAndMounting)
{
    for (auto [inW, inH] : {std::pair{320, 240}, {1280, 1024}, {640, 2000}, {321, 243}})
        for (auto [screenW, screenH] : {std::pair{320, 240}, {132, 98}, {1920, 1080}, {1080, 1920}})
            for (int mode : {1, 2, 4, 8})
                for (FORMAT format : {FORMAT_NV12, FORMAT_RGB})
                    for (int camPos : {0, 1}) {
                        TestSlot any(inW, inH, screenW, screenH);
                        FEDSP& engine = any.engine();
                        any.update(mode, camPos);
                        engine.m_nRadius = inW / 2;
                        const auto needs = layoutNeeds(engine, inW, inH, format);
                        for (int b = 0; b < kBufferCount; ++b)
                            ASSERT_LE(needs[std::size_t(b)], std::int64_t(engine.m_nCapacity[b]))
                                << inW << "x" << inH << " on " << screenW << "x" << screenH
                                << " mode " << mode << " format " << format << " buffer " << b;
                    }
}

TEST(LayoutNeedsOfABlock, CarvedBuffersRefuseWhatTheyCannotHold)
{
    FEDSP engine;
    engine.FE_Initialize(0, 640, 480, 4);
    const int estimate = engine.MemoryAllocated_DSPBuff_Estimate(640, 480, 800, 600);
    const std::size_t size = std::size_t(estimate) + 24 * 1080 * 400 + 1;
    Bytes block(size);
    ASSERT_EQ(engine.MemoryAllocated_AccessCtr_DSP(640, 480, 800, 600, block.data(),
                                                   static_cast<unsigned int>(size)),
              0);
    Bytes in = constantFrame(640, 480, FORMAT_RGB, 50);
    OutputFrame out(800, 600, FORMAT_RGB);
    const auto feed = [&](FORMAT format) {
        return engine.LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), 640, 480, format,
                                                      false, 640);
    };
    EXPECT_TRUE(feed(FORMAT_NV12));
    engine.m_bSetup = 1;
    EXPECT_FALSE(feed(FORMAT_RGB)); // two bytes a pixel are no room for three
    engine.m_bQuad = 0;
    engine.m_bSingle = 1;
    EXPECT_FALSE(feed(FORMAT_NV12)); // the screen is larger than the input
    engine.DeleteAccess_ctr_Mem();
}
