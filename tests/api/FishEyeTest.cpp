#include "Frames.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

class FishEye : public testing::Test {
protected:
    FishEye() : eye(IFishEye_Create()) {}
    ~FishEye() override { IFishEye_Release(eye); }
    IFishEye* eye;
};

} // namespace

TEST(FishEyeObject, ReleasingNothingIsFine)
{
    EXPECT_EQ(IFishEye_Release(nullptr), 0);
    EXPECT_EQ(IFishEye_Release(IFishEye_Create()), 0);
}

TEST_F(FishEye, ForwardsToTheSlotFunctions)
{
    EXPECT_EQ(eye->LmFE_Initialize(16, 640, 480, 320, 240, FORMAT_NV12), 1);
    TestSlot slot(640, 480, 320, 240, 2);
    slot.engine().DeleteAccess_ctr_Mem();
    EXPECT_EQ(eye->LmFE_Initialize(2, 640, 480, 320, 240, FORMAT_NV12), 0);
    FE_ViewParams view = slot.view(8, 2);
    FE_EventParams event;
    EXPECT_EQ(eye->LmFE_ParamsUpdated(2, &event, &view), 0);
    EXPECT_EQ(slot.engine().m_bSingle, 1);
    Bytes in = constantFrame(640, 480, FORMAT_NV12, 33);
    OutputFrame out(320, 240);
    EXPECT_EQ(eye->LmFE_VideoInput(2, in.data(), out.data(), 640, 480, FORMAT_NV12, false), 0);
    EXPECT_EQ(out[1000], 33);
    EXPECT_EQ(eye->LmFE_Close(2), 0);
    EXPECT_EQ(m_FEDSP[2], nullptr);
    EXPECT_EQ(eye->LmFE_VideoInput(2, in.data(), out.data(), 640, 480, FORMAT_NV12, false), 1);
}

TEST_F(FishEye, ObjectsShareTheSlotsAndReleasingClosesNone)
{
    IFishEye* other = IFishEye_Create();
    TestSlot slot(640, 480, 320, 240);
    FE_CurPosParams p;
    std::memset(&p, 0, sizeof p);
    EXPECT_EQ(other->LmFEGetPosition(0, &p), 0);
    EXPECT_EQ(p.nRadius, 320);
    IFishEye_Release(other);
    EXPECT_NE(m_FEDSP[0], nullptr);
}

TEST_F(FishEye, PositionsGoToTheSlot)
{
    TestSlot slot(640, 480, 320, 240, 3);
    FE_CurPosParams set;
    std::memset(&set, 0, sizeof set);
    set.nViewMode = 8;
    set.nRadius = 200;
    set.view[0].nPan = -9;
    EXPECT_EQ(eye->LmFESetPosition(3, &set), 0);
    EXPECT_EQ(slot.engine().m_nSinglePan, -9);
    FE_CurPosParams got;
    std::memset(&got, 0, sizeof got);
    EXPECT_EQ(eye->LmFEGetPosition(3, &got), 0);
    EXPECT_EQ(std::memcmp(&set, &got, sizeof set), 0);

    short pan = 1, tilt = 1;
    slot.engine().m_nCenterX = slot.engine().m_nCenterY = 240;
    EXPECT_EQ(eye->GetAbsolutePositionFromInputVideoPoint(3, 340, 240, pan, tilt), 0);
    EXPECT_EQ(pan, 900);
    EXPECT_EQ(tilt, 450);
    slot.update(8, 0);
    EXPECT_EQ(eye->SetAbsolutePTZ(3, 900, 0, 400, 1), 0);
    EXPECT_EQ(slot.engine().m_nSinglePan, 360);
    EXPECT_EQ(slot.engine().m_nSingleZoom, 44);
}

TEST_F(FishEye, PositionCallsIgnoreWhatIsNotThere)
{
    TestSlot slot(640, 480, 320, 240);
    Close(0);
    FE_CurPosParams p;
    std::memset(&p, 0x77, sizeof p);
    const FE_CurPosParams before = p;
    short pan = 5, tilt = 6;
    for (int bad : {0, 1, 16, -1, 1 << 30}) {
        EXPECT_EQ(eye->LmFEGetPosition(bad, &p), 0);
        EXPECT_EQ(eye->LmFESetPosition(bad, &p), 0);
        EXPECT_EQ(eye->GetAbsolutePositionFromInputVideoPoint(bad, 1, 2, pan, tilt), 0);
        EXPECT_EQ(eye->SetAbsolutePTZ(bad, 1, 2, 3, 1), 0);
    }
    EXPECT_EQ(std::memcmp(&p, &before, sizeof p), 0);
    EXPECT_EQ(pan, 5);
    EXPECT_EQ(tilt, 6);
    TestSlot live(640, 480, 320, 240, 1);
    EXPECT_EQ(eye->LmFEGetPosition(1, nullptr), 0);
    EXPECT_EQ(eye->LmFESetPosition(1, nullptr), 0);
}

TEST_F(FishEye, ASlotThatOneObjectInitialisedIsLiveForTheOther)
{
    IFishEye* other = IFishEye_Create();
    EXPECT_EQ(eye->LmFE_Initialize(4, 640, 480, 320, 160, FORMAT_NV12), 0);
    FE_CurPosParams p;
    std::memset(&p, 0, sizeof p);
    other->LmFEGetPosition(4, &p);
    EXPECT_EQ(p.nRadius, 320);
    EXPECT_EQ(m_FEDSP[4]->m_nScreenW, 320);
    EXPECT_EQ(m_FEDSP[4]->m_nScreenH, 160);
    EXPECT_EQ(other->LmFE_Close(4), 0);
    EXPECT_EQ(m_FEDSP[4], nullptr);
    IFishEye_Release(other);
    delete m_EventParam[4];
    delete m_ViewParam[4];
    m_EventParam[4] = nullptr;
    m_ViewParam[4] = nullptr;
}

TEST_F(FishEye, VideoInputPassesTheFlipOn)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes in(640 * 480 * 3);
    in.back() = 77; // the last pixel of the last row
    OutputFrame out(320, 240, FORMAT_RGB);
    EXPECT_EQ(eye->LmFE_VideoInput(0, in.data(), out.data(), 640, 480, FORMAT_RGB, true), 0);
    EXPECT_EQ(slot.engine().m_pStaged[640 * 3 - 1], 77);
    slot.engine().m_pStaged[640 * 3 - 1] = 0;
    EXPECT_EQ(eye->LmFE_VideoInput(0, in.data(), out.data(), 640, 480, FORMAT_RGB, false), 0);
    EXPECT_EQ(slot.engine().m_pStaged[640 * 3 - 1], 0);
}
