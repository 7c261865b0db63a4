#include "LumoFESDK.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <new>

TEST(Records, SizesAndOffsets)
{
    EXPECT_EQ(sizeof(FE_EventParams), 6u);
    EXPECT_EQ(sizeof(FE_ViewParams), 16u);
    EXPECT_EQ(sizeof(FE_CurPosParams), 52u);
    EXPECT_EQ(sizeof(FORMAT), 4u);
    EXPECT_EQ(offsetof(FE_CurPosParams, view), 12u);
    EXPECT_EQ(offsetof(FE_CurPosParams, bQuadOption), 44u);
    EXPECT_EQ(offsetof(FE_CurPosParams, n180Pos), 48u);
}

TEST(Records, EventsStartEmpty)
{
    alignas(FE_EventParams) unsigned char memory[sizeof(FE_EventParams)];
    std::memset(memory, 0x5A, sizeof memory);
    const auto* event = new (memory) FE_EventParams;
    EXPECT_EQ(event->nPanStep, 0);
    EXPECT_EQ(event->nTiltStep, 0);
    EXPECT_EQ(event->nZoomStep, 0);
}

TEST(Records, ViewDefaultsLeaveTheOverlayAsTheMemoryHeldIt)
{
    alignas(FE_ViewParams) unsigned char memory[sizeof(FE_ViewParams)];
    std::memset(memory, 0x5A, sizeof memory);
    const auto* view = new (memory) FE_ViewParams;
    EXPECT_EQ(view->nViewMode, 1);
    EXPECT_EQ(view->nCamPos, 0);
    EXPECT_EQ(view->nSubView, 0);
    EXPECT_EQ(view->nCenterX, 640);
    EXPECT_EQ(view->nCenterY, 512);
    EXPECT_EQ(view->nRadius, 640);
    EXPECT_EQ(view->nRadius2, 640);
    EXPECT_EQ(view->nOverlay, 0x5A5A);
}

TEST(Records, FormatCodes)
{
    EXPECT_EQ(FORMAT_YUYV, 0);
    EXPECT_EQ(FORMAT_RGB, 1);
    EXPECT_EQ(FORMAT_NV12, 2);
    EXPECT_EQ(FORMAT_YV12, 3);
}
