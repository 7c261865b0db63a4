#include "Frames.h"

#include "engine/Buffers.h"
#include "engine/SubViews.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

class ParamsUpdate : public testing::Test {
protected:
    ParamsUpdate() : slot(1280, 1024, 800, 600), e(slot.engine()) {}

    // An update; returns the event as the engine left it.
    FE_EventParams update(int mode, int camPos, int subView, int pan = 0, int tilt = 0,
                          int zoom = 0)
    {
        slot.update(mode, camPos, subView, pan, tilt, zoom);
        return *m_EventParam[0];
    }

    TestSlot slot;
    FEDSP& e;
};

void expectEvent(const FE_EventParams& event, int pan, int tilt, int zoom)
{
    EXPECT_EQ(event.nPanStep, pan);
    EXPECT_EQ(event.nTiltStep, tilt);
    EXPECT_EQ(event.nZoomStep, zoom);
}

} // namespace

TEST_F(ParamsUpdate, TakesOverMountingCircleAndSteps)
{
    FE_ViewParams view = slot.view(1, 2);
    view.nCenterX = 65000;
    view.nCenterY = 2;
    view.nRadius = 3;
    view.nRadius2 = 4;
    FE_EventParams event;
    event.nPanStep = -5;
    event.nTiltStep = 6;
    EXPECT_EQ(ParamsUpdated(0, &event, &view), 0);
    EXPECT_EQ(e.m_nCamPos, 2);
    EXPECT_EQ(e.m_nCenterX, 65000);
    EXPECT_EQ(e.m_nCenterY, 2);
    EXPECT_EQ(e.m_nRadius, 3);
    EXPECT_EQ(e.m_nRadius2, 4);
    EXPECT_EQ(e.m_nEventPan, -5);
    EXPECT_EQ(e.m_nEventTilt, 6);
    EXPECT_EQ(e.m_ViewParams.nViewMode, 1);
    EXPECT_EQ(e.m_ViewParams.nCamPos, 2);
}

TEST_F(ParamsUpdate, TheDefaultRecordSelectsTheQuadViewAndZoomsNothing)
{
    FE_ViewParams view;
    view.nOverlay = 0; // the one field without a default
    FE_EventParams event;
    event.nZoomStep = 9;
    update(8, 1, 0);
    EXPECT_EQ(ParamsUpdated(0, &event, &view), 0);
    EXPECT_EQ(e.m_bQuad, 1);
    EXPECT_EQ(e.m_bSingle, 0);
    EXPECT_EQ(e.m_nCamPos, 0);
    EXPECT_EQ(e.m_ViewParams.nSubView, 0);
    EXPECT_EQ(e.m_nQuad1Zoom, 10); // from the wall mounting before
    EXPECT_EQ(m_EventParam[0]->nZoomStep, 9);
}

TEST_F(ParamsUpdate, OnlyAChangeOfTheViewModeSetsUpAnew)
{
    update(1, 0, 0);
    e.m_bSetup = e.m_bModeChanged = 0;
    e.m_pStaged[0] = 9;
    update(1, 0, 0);
    EXPECT_EQ(e.m_bSetup | e.m_bModeChanged, 0);
    EXPECT_EQ(e.m_pStaged[0], 9);
    update(1, 2, 0); // the mounting alone
    EXPECT_EQ(e.m_bSetup, 1);
    EXPECT_EQ(e.m_bModeChanged, 1);
    EXPECT_EQ(e.m_pStaged[0], 0);
    EXPECT_EQ(e.m_nModeKey, 1 + 2 + 4);
    e.m_bSetup = 0;
    e.m_nScreenRes = 16; // the screen class alone
    update(1, 2, 0);
    EXPECT_EQ(e.m_bSetup, 1);
}

TEST_F(ParamsUpdate, TheFirstUpdateAlwaysCountsAsAChange)
{
    e.m_bSetup = 0;
    update(1, 0, 0);
    EXPECT_EQ(e.m_bSetup, 1);
    EXPECT_EQ(e.m_nModeKey, 5);
}

TEST_F(ParamsUpdate, ChangesThatCancelInTheKeyAreNotSeen)
{
    update(2, 0, 0);
    e.m_bSetup = 0;
    update(1, 1, 0);
    EXPECT_EQ(e.m_bSetup, 0);
    EXPECT_EQ(e.m_bQuad, 1);
}

TEST_F(ParamsUpdate, UnknownModesRunTheChangeButKeepTheLayout)
{
    update(8, 0, 1);
    for (int mode : {3, 5, 16}) {
        e.m_bSetup = 0;
        e.m_pStaged[0] = 9;
        expectEvent(update(mode, 0, 1, 1, 2, 3), 1, 2, 3);
        EXPECT_EQ(e.m_bSetup, 1);
        EXPECT_EQ(e.m_pStaged[0], 0);
        EXPECT_EQ(e.m_bSingle, 1);
        EXPECT_EQ(e.m_ViewParams.nViewMode, 8);
        EXPECT_EQ(e.m_nSingleZoom, 0);
    }
}

TEST_F(ParamsUpdate, Overlay)
{
    const int codes[] = {0, 1, 2, 4};
    for (int overlay : {1, 2, 3}) {
        FE_ViewParams view = slot.view(1, 0);
        FE_EventParams event;
        view.nOverlay = static_cast<unsigned short>(overlay);
        ParamsUpdated(0, &event, &view);
        EXPECT_EQ(e.m_bOverlay, 1);
        EXPECT_EQ(e.m_nOverlayCode, codes[overlay]);
        view.nOverlay = 4; // changes neither
        ParamsUpdated(0, &event, &view);
        EXPECT_EQ(e.m_bOverlay, 1);
        EXPECT_EQ(e.m_nOverlayCode, codes[overlay]);
        view.nOverlay = 0;
        ParamsUpdated(0, &event, &view);
        EXPECT_EQ(e.m_bOverlay, 0);
        EXPECT_EQ(e.m_nOverlayCode, codes[overlay]);
    }
}

TEST_F(ParamsUpdate, AQuadZoomStepIsLimitedAndConsumesTheEvent)
{
    e.m_nQuad3Zoom = 40;
    expectEvent(update(1, 0, 3, 7, 8, 5), 0, 0, 0);
    EXPECT_EQ(e.m_nQuad3Zoom, 44);
    EXPECT_EQ(e.m_nQuad1Zoom | e.m_nQuad2Zoom | e.m_nQuad4Zoom, 0);
    EXPECT_EQ(e.m_ViewParams.nSubView, 3);
    EXPECT_EQ(e.m_nEventPan, 7); // the steps are kept for the renderers
    EXPECT_EQ(e.m_nEventTilt, 8);
    update(1, 0, 3, 0, 0, -3);
    EXPECT_EQ(e.m_nQuad3Zoom, 41);
}

TEST_F(ParamsUpdate, AZoomStepOfZeroStillLimits)
{
    update(1, 0, 0);
    e.m_nQuad1Zoom = 70;
    expectEvent(update(1, 0, 1, 1, 1, 0), 0, 0, 0);
    EXPECT_EQ(e.m_nQuad1Zoom, 44);
}

TEST_F(ParamsUpdate, EveryQuadViewHasItsOwnZoom)
{
    for (int view : {1, 2, 3, 4})
        update(1, 0, view, 0, 0, view);
    EXPECT_EQ(e.m_nQuad1Zoom, 1);
    EXPECT_EQ(e.m_nQuad2Zoom, 2);
    EXPECT_EQ(e.m_nQuad3Zoom, 3);
    EXPECT_EQ(e.m_nQuad4Zoom, 4);
    expectEvent(update(1, 0, 5, 1, 2, 3), 1, 2, 3);
    EXPECT_EQ(e.m_ViewParams.nSubView, 0);
}

TEST_F(ParamsUpdate, The360LayoutDropsStepsForNoView)
{
    expectEvent(update(2, 0, 2, 3, 4, 5), 0, 0, 0);
    EXPECT_EQ(e.m_n360View2Zoom, 5);
    EXPECT_EQ(e.m_nEventPan, 3);
    expectEvent(update(2, 0, 0, 3, 4, 5), 3, 4, 5);
    EXPECT_EQ(e.m_nEventPan, 0);
    EXPECT_EQ(e.m_nEventTilt, 0);
    EXPECT_EQ(e.m_n360View1Zoom, 0);
    EXPECT_EQ(e.m_n360View2Zoom, 5);
    EXPECT_EQ(e.m_ViewParams.nSubView, 2); // left as it was
    update(2, 0, 1, 0, 0, 6);
    EXPECT_EQ(e.m_n360View1Zoom, 6);
    EXPECT_EQ(e.m_b360, 1);
}

TEST_F(ParamsUpdate, The180LayoutSetsUpOnEveryUpdate)
{
    update(4, 0, 1);
    for (int i = 0; i < 2; ++i) {
        e.m_bSetup = 0;
        expectEvent(update(4, 0, 1, 5, 6, 7), 5, 0, 0);
        EXPECT_EQ(e.m_bSetup, 1);
        EXPECT_EQ(e.m_b180, 1);
        EXPECT_EQ(e.m_ViewParams.nSubView, 0);
        EXPECT_EQ(e.m_nEventTilt, 6);
    }
}

TEST_F(ParamsUpdate, SingleViewZoomStepsCountFourfold)
{
    e.m_nSingleZoom = 20;
    expectEvent(update(8, 0, 1, 1, 1, -2), 0, 0, 0);
    EXPECT_EQ(e.m_nSingleZoom, 12);
    update(8, 0, 1, 0, 0, -3);
    EXPECT_EQ(e.m_nSingleZoom, 0);
    update(8, 0, 1, 0, 0, 32767);
    EXPECT_EQ(e.m_nSingleZoom, 88);
    expectEvent(update(8, 0, 2, 1, 1, -2), 1, 1, -2);
    EXPECT_EQ(e.m_nSingleZoom, 88);
    EXPECT_EQ(e.m_ViewParams.nSubView, 0);
    EXPECT_EQ(e.m_bSingle, 1);
    EXPECT_EQ(e.m_bSpareLayout, 0);
}

TEST_F(ParamsUpdate, UnknownMountingsZoomToZero)
{
    e.m_nSingleZoom = 20;
    update(8, 3, 1, 0, 0, 4);
    EXPECT_EQ(e.m_nSingleZoom, 0);
}

TEST_F(ParamsUpdate, TheWallMountingRaisesEveryZoomToTen)
{
    e.m_n360View2Zoom = 11;
    update(1, 1, 0);
    for (const fe::SubViewFields& view : fe::allViews())
        EXPECT_EQ(e.*view.zoom, view.zoom == &FEDSP::m_n360View2Zoom ? 11 : 10);
}

TEST_F(ParamsUpdate, TheSpareLayoutFlagIsNeverTouched)
{
    e.m_bSpareLayout = 1;
    for (int mode : {1, 2, 4, 8})
        update(mode, 0, 0);
    EXPECT_EQ(e.m_bSpareLayout, 1);
}

TEST_F(ParamsUpdate, AModeChangeClearsByTheCurrentSizes)
{
    const auto fill = [&](fe::Buffer b) {
        fe::fillBuffer(e, b, std::int64_t(1) << 40, 0x55);
        return static_cast<const unsigned char*>(fe::bufferAddress(e, b));
    };
    const auto* staged = fill(fe::kStaged);
    const auto* subA = fill(fe::kSubMapA);
    const auto* subB = fill(fe::kSubMapB);
    const auto* table = fill(fe::kMapTable);
    const auto* pano = fill(fe::kPanoImage);
    const auto* view = fill(fe::kViewImage);
    const auto* work = fill(fe::kWorkImageA);
    const auto clearedUpTo = [](const unsigned char* p, std::size_t bytes, unsigned char value) {
        return std::all_of(p, p + bytes, [=](unsigned char c) { return c == value; }) &&
               p[bytes] == 0x55;
    };
    update(8, 2, 0); // radius 512
    EXPECT_TRUE(clearedUpTo(staged, 1280 * 1024 * 2, 0));
    EXPECT_TRUE(clearedUpTo(subA, 200 * 400 * 8, 0)); // half of it
    EXPECT_TRUE(clearedUpTo(subB, 200 * 400 * 8, 0));
    EXPECT_TRUE(clearedUpTo(table, 512 * 1080 * 8, 0));
    EXPECT_TRUE(clearedUpTo(pano, 512 * 1080 * 2, 128));
    EXPECT_TRUE(clearedUpTo(view, 800 * 800 * 2, 0));
    EXPECT_TRUE(clearedUpTo(work, 512 * 1080 * 2, 0));
}

TEST(ModeChange, ClearsNoMoreThanTheBuffersHold)
{
    // The default record's radius of 640 on a small slot, and a screen wider than the input.
    TestSlot slot(320, 240, 1920, 1080);
    FE_ViewParams view;
    view.nOverlay = 0;
    FE_EventParams event;
    for (unsigned short mode : std::initializer_list<unsigned short>{1, 2, 4, 8}) {
        view.nViewMode = mode;
        view.nRadius = 65535;
        EXPECT_EQ(ParamsUpdated(0, &event, &view), 0);
    }
}

TEST(ModeChange, AppliesTheAngleLimitOfTheScreenClass)
{
    FEDSP e;
    e.FE_Initialize(0, 640, 480, 4);
    e.m_nScreenRes = 16;
    e.OnViewModeChange();
    EXPECT_EQ(e.m_nAngleLimit, 60);
    e.m_nScreenRes = 4;
    e.OnViewModeChange();
    EXPECT_EQ(e.m_nAngleLimit, 45);
}

TEST(ModeChange, SurvivesAScreenOfImpossibleSize)
{
    TestSlot slot(320, 240, -2147483647 - 1, -2147483647 - 1);
    EXPECT_EQ(slot.status(), 2);
    EXPECT_EQ(slot.update(8, 0), 0);
}
