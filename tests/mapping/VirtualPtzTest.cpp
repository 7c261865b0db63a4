#include "Frames.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

FE_CurPosParams position(int mode)
{
    FE_CurPosParams p;
    std::memset(&p, 0, sizeof p);
    p.nViewMode = static_cast<unsigned short>(mode);
    p.nCamPos = 2;
    p.nCenterX = 40000; // above the signed range: widened without sign
    p.nCenterY = 501;
    p.nRadius = 502;
    p.nRadius2 = 503;
    short value = -20;
    for (FE_ViewPosition& view : p.view)
        view = {value++, value++, value++, value++};
    p.bQuadOption = 200;
    p.n180Pos = -1234567;
    return p;
}

class VirtualPtz : public testing::Test {
protected:
    VirtualPtz() { engine.FE_Initialize(0, 1280, 1024, 4); }

    FE_CurPosParams get()
    {
        FE_CurPosParams p;
        std::memset(&p, 0x7E, sizeof p);
        engine.LmFEGetPosition(0, &p);
        return p;
    }
    int zoom(int value, int mode, int camPos)
    {
        FE_ViewParams view;
        view.nViewMode = static_cast<unsigned short>(mode);
        view.nCamPos = static_cast<unsigned short>(camPos);
        return engine.LmFEZoom(value, &view);
    }
    FEDSP engine;
};

bool sameView(const FE_ViewPosition& a, const FE_ViewPosition& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

TEST_F(VirtualPtz, SetThenGetIsTheIdentity)
{
    const int viewsOf[9] = {0, 4, 2, 0, 0, 0, 0, 0, 1};
    for (int mode : {1, 2, 4, 8}) {
        FE_CurPosParams set = position(mode);
        engine.LmFESetPosition(0, &set);
        const FE_CurPosParams got = get();
        EXPECT_EQ(std::memcmp(&set, &got, 12), 0) << mode;
        for (int v = 0; v < 4; ++v)
            EXPECT_EQ(sameView(set.view[v], got.view[v]), v < viewsOf[mode]) << mode << " " << v;
        EXPECT_EQ(got.bQuadOption, mode == 1 ? 1 : 0x7E);
        EXPECT_EQ(got.n180Pos, mode == 4 ? -1234567 : 0x7E7E7E7E);
    }
}

TEST_F(VirtualPtz, FieldsOfEachLayout)
{
    FE_CurPosParams p = position(1);
    engine.LmFESetPosition(0, &p);
    EXPECT_EQ(engine.m_nQuad1Pan, -20);
    EXPECT_EQ(engine.m_nQuad2Tilt, -15);
    EXPECT_EQ(engine.m_nQuad3Zoom, -10);
    EXPECT_EQ(engine.m_nQuad4Aux, -5);
    EXPECT_EQ(engine.m_nQuadOption, 200);
    EXPECT_EQ(engine.m_nCenterX, 40000);
    p = position(2);
    engine.LmFESetPosition(0, &p);
    EXPECT_EQ(engine.m_n360View1Pan, -20);
    EXPECT_EQ(engine.m_n360View2Aux, -13);
    p = position(8);
    engine.LmFESetPosition(0, &p);
    EXPECT_EQ(engine.m_nSinglePan, -20);
    EXPECT_EQ(engine.m_nSingleAux, -17);
    EXPECT_EQ(engine.m_nQuad1Pan, -20);
}

TEST_F(VirtualPtz, SwitchesTheLayoutWithoutRaisingTheSetupFlag)
{
    engine.m_bSetup = 0;
    for (int mode : {2, 4, 8, 1}) {
        FE_CurPosParams p = position(mode);
        engine.LmFESetPosition(0, &p);
        EXPECT_EQ(engine.m_bQuad, mode == 1);
        EXPECT_EQ(engine.m_b360, mode == 2);
        EXPECT_EQ(engine.m_b180, mode == 4);
        EXPECT_EQ(engine.m_bSingle, mode == 8);
        EXPECT_EQ(engine.m_bSetup, 0);
    }
}

TEST_F(VirtualPtz, AnUnknownModeStoresTheHeaderOnly)
{
    FE_CurPosParams p = position(3);
    engine.LmFESetPosition(0, &p);
    EXPECT_EQ(engine.m_nCamPos, 2);
    EXPECT_EQ(engine.m_nRadius, 502);
    EXPECT_EQ(engine.m_nRadius2, 503);
    EXPECT_EQ(engine.m_nCenterY, 501);
    EXPECT_EQ(engine.m_bQuad, 1);
    EXPECT_EQ(engine.m_nQuad1Pan, 0);
    EXPECT_EQ(engine.m_nSinglePan, 0);
    EXPECT_EQ(engine.m_n180Pan, 0);
}

TEST_F(VirtualPtz, TheFirstFlagInOrderDecidesWhatIsReported)
{
    engine.m_bQuad = engine.m_b360 = engine.m_b180 = engine.m_bSingle = 1;
    EXPECT_EQ(get().nViewMode, 1);
    engine.m_bQuad = 0;
    EXPECT_EQ(get().nViewMode, 2);
    engine.m_b360 = 0;
    EXPECT_EQ(get().nViewMode, 4);
    engine.m_b180 = 0;
    EXPECT_EQ(get().nViewMode, 8);
    engine.m_bSingle = 0;
    const FE_CurPosParams none = get();
    EXPECT_EQ(none.nViewMode, 0x7E7E);
    EXPECT_EQ(none.nRadius, 640); // the header is reported all the same
    EXPECT_EQ(none.view[0].nPan, 0x7E7E);
}

TEST_F(VirtualPtz, ReportsTheLowSixteenBits)
{
    engine.m_nCenterX = 0x12345;
    engine.m_nQuad1Pan = 0x1FFFF;
    engine.m_nQuadOption = 0;
    const FE_CurPosParams p = get();
    EXPECT_EQ(p.nCenterX, 0x2345);
    EXPECT_EQ(p.view[0].nPan, -1);
    EXPECT_EQ(p.bQuadOption, 0);
}

TEST_F(VirtualPtz, NullRecordsAreIgnored)
{
    engine.LmFESetPosition(0, nullptr);
    engine.LmFEGetPosition(0, nullptr);
    EXPECT_EQ(engine.m_bQuad, 1);
}

TEST_F(VirtualPtz, ZoomLimits)
{
    EXPECT_EQ(zoom(100, 8, 0), 88);
    EXPECT_EQ(zoom(100, 1, 0), 44);
    EXPECT_EQ(zoom(100, 8, 2), 88);
    EXPECT_EQ(zoom(-3, 1, 2), 0);
    EXPECT_EQ(zoom(30, 2, 2), 30);
    for (int mode : {1, 2, 4, 8})
        EXPECT_EQ(zoom(5, mode, 1), 10);
    EXPECT_EQ(zoom(100, 8, 1), 70);
    EXPECT_EQ(zoom(100, 4, 1), 44);
    for (int value : {-9, 0, 20, 100})
        EXPECT_EQ(zoom(value, 8, 3), 0);
}
