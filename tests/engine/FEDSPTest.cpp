#include "Frames.h"

#include "engine/SubViews.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

TEST(FEDSP, ConstructionDefaults)
{
    const FEDSP e;
    EXPECT_EQ(e.m_nScreenW, 800);
    EXPECT_EQ(e.m_nScreenH, 600);
    EXPECT_EQ(e.m_fScaleX, 1.0f);
    EXPECT_EQ(e.m_fScaleY, 1.0f);
    EXPECT_EQ(e.m_nInputW, 1280);
    EXPECT_EQ(e.m_nInputH, 1024);
    EXPECT_EQ(e.m_nScreenRes, 4);
    EXPECT_EQ(e.m_nLineIndex, -1);
    EXPECT_EQ(e.m_FishSetting.bEnabled, 1);
    EXPECT_EQ(e.m_ViewParams.nViewMode, 1);
    EXPECT_EQ(e.m_ViewParams.nRadius2, 640);
    EXPECT_EQ(e.m_nSingleKey, 0);
    EXPECT_EQ(e.m_nQuadBytes, 0);
    EXPECT_EQ(e.m_bKeyFlag1 | e.m_bKeyFlag2 | e.m_bTall180, 0);
}

TEST(FEDSP, InitializeAfter1920x1080)
{
    FEDSP e;
    e.FE_Initialize(5, 1920, 1080, 4);
    EXPECT_EQ(e.m_nCam, 5);
    EXPECT_EQ(e.m_fScaleX, 1.5f);
    EXPECT_EQ(e.m_fScaleY, 1.0546875f);
    EXPECT_EQ(e.m_nCenterX, 960);
    EXPECT_EQ(e.m_nCenterY, 540);
    EXPECT_EQ(e.m_nRadius, 960);
    EXPECT_EQ(e.m_nRadius2, 960);
    EXPECT_EQ(e.m_bLargeInput, 0);
    EXPECT_EQ(e.m_fScreenScaleX, 1.0f);
    EXPECT_EQ(e.m_fScreenScaleY, 1.0f);
    EXPECT_EQ(e.m_nAngle30, 30);
    EXPECT_EQ(e.m_nAngleLimit, 45);
    EXPECT_EQ(e.m_nRefW, 800);
    EXPECT_EQ(e.m_nRefH, 600);
    EXPECT_EQ(e.m_bQuad, 1);
    EXPECT_EQ(e.m_b360 | e.m_b180 | e.m_bSingle | e.m_bSpareLayout, 0);
    EXPECT_EQ(e.m_bSetup, 1);
    EXPECT_EQ(e.m_bModeChanged, 1);
    EXPECT_EQ(e.m_bOverlayAux, 1);
    EXPECT_EQ(e.m_nPanoBase, 720);
}

TEST(FEDSP, LargeInputThresholdOfInitialize)
{
    FEDSP e;
    e.FE_Initialize(0, 2560, 1920, 4);
    EXPECT_EQ(e.m_bLargeInput, 1);
    e.FE_Initialize(0, 2400, 1920, 4);
    EXPECT_EQ(e.m_bLargeInput, 0);
}

TEST(FEDSP, TheWideClassHasTheWiderAngleLimit)
{
    FEDSP e;
    e.FE_Initialize(0, 1280, 1024, 16);
    EXPECT_EQ(e.m_nAngleLimit, 60);
    EXPECT_EQ(e.m_nScreenRes, 16);
}

TEST(FEDSP, AngleTablesUseTheirOwnConstants)
{
    FEDSP e;
    e.FE_Initialize(0, 1280, 1024, 4);
    EXPECT_EQ(e.m_fSinTbl[0], 0.0f);
    EXPECT_EQ(e.m_fCosTbl[0], 1.0f);
    EXPECT_NEAR(double(e.m_fSinTbl[360]), 0.9999992, 5e-8);
    EXPECT_LT(e.m_fSinTbl[360], 1.0f);
    EXPECT_NEAR(double(e.m_fCosTbl[360]), -0.0012554, 5e-8);
    for (int i = 0; i < 1440; ++i) {
        const double x = i * double(3.14159f) * 0.25 * double(0.00556f);
        EXPECT_NEAR(double(e.m_fSinTbl[i]), std::sin(x), 6.1e-8) << i;
        EXPECT_NEAR(double(e.m_fCosTbl[i]), std::cos(x), 6.1e-8) << i;
    }
}

TEST(FEDSP, AngleTablesAreTheSameInEveryBuild)
{
    FEDSP e;
    e.FE_Initialize(0, 1280, 1024, 4);
    const auto* sines = reinterpret_cast<const unsigned char*>(e.m_fSinTbl);
    const auto* cosines = reinterpret_cast<const unsigned char*>(e.m_fCosTbl);
    EXPECT_EQ(hashOf(sines, sizeof e.m_fSinTbl), 5313410015395564375u);
    EXPECT_EQ(hashOf(cosines, sizeof e.m_fCosTbl), 6341856077087668482u);
}

TEST(FEDSP, InitializeResetsWhatItListsAndNoMore)
{
    FEDSP e;
    e.FE_Initialize(0, 1280, 1024, 4);
    for (const fe::SubViewFields& view : fe::allViews())
        e.*view.pan = e.*view.tilt = e.*view.zoom = e.*view.aux = 9;
    e.m_n180Pan = 9;
    e.m_bSingle = 1;
    e.m_nCamPos = 2;
    e.m_bKeyFlag3 = e.m_bOverlay = e.m_bTall180 = 1;
    e.m_nOverlayCode = e.m_nQuadOption = 4;
    e.m_nModeKey = 7;
    e.m_nEventPan = 11;
    e.m_nSingleKey = 12;
    e.m_nQuad1PanBuilt = 13;
    e.m_ViewParams.nViewMode = 8;
    e.m_bKeyFlag1 = 1;

    e.FE_Initialize(0, 1280, 1024, 4);
    for (const fe::SubViewFields& view : fe::allViews())
        EXPECT_EQ(e.*view.pan | e.*view.tilt | e.*view.zoom | e.*view.aux, 0);
    EXPECT_EQ(e.m_n180Pan, 0);
    EXPECT_EQ(e.m_bSingle, 0);
    EXPECT_EQ(e.m_nCamPos, 0);
    EXPECT_EQ(e.m_bKeyFlag3 | e.m_bOverlay | e.m_bTall180, 0);
    EXPECT_EQ(e.m_nOverlayCode | e.m_nQuadOption | e.m_nModeKey, 0);
    EXPECT_EQ(e.m_nEventPan, 11);
    EXPECT_EQ(e.m_nSingleKey, 12);
    EXPECT_EQ(e.m_nQuad1PanBuilt, 13);
    EXPECT_EQ(e.m_ViewParams.nViewMode, 8);
    EXPECT_EQ(e.m_bKeyFlag1, 1);
}

TEST(FEDSP, InitializeForgetsTheBuffersWithoutFreeingThem)
{
    FEDSP e;
    e.FE_Initialize(0, 320, 240, 4);
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(320, 240, 320, 240), 0);
    FEDSP keeper; // frees the forgotten buffers at the end
    keeper.FE_Initialize(0, 320, 240, 4);
    keeper.m_pStaged = e.m_pStaged;
    keeper.m_pViewImage = e.m_pViewImage;
    keeper.m_pWorkImageA = e.m_pWorkImageA;
    keeper.m_pPanoImage = e.m_pPanoImage;
    keeper.m_pSubMapA = e.m_pSubMapA;
    keeper.m_pSubMapB = e.m_pSubMapB;
    keeper.m_pMapTable = e.m_pMapTable;
    keeper.m_pMapWork = e.m_pMapWork;
    e.m_pInput = e.m_pStaged;

    e.FE_Initialize(0, 320, 240, 4);
    EXPECT_EQ(e.m_pStaged, nullptr);
    EXPECT_EQ(e.m_pViewImage, nullptr);
    EXPECT_EQ(e.m_pWorkImageA, nullptr);
    EXPECT_EQ(e.m_pPanoImage, nullptr);
    EXPECT_EQ(e.m_pSubMapA, nullptr);
    EXPECT_EQ(e.m_pSubMapB, nullptr);
    EXPECT_EQ(e.m_pMapTable, nullptr);
    EXPECT_EQ(e.m_pMapWork, nullptr);
    EXPECT_EQ(e.m_pInput, nullptr);
    keeper.m_pStaged[0] = 1; // still there
    keeper.DeleteAccess_ctr_Mem();
}
