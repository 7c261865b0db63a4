#include "views/TableForms.h"

#include "Frames.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

class TableForms : public testing::Test {
protected:
    TableForms() : slot(640, 480, 320, 240), e(slot.engine())
    {
        e.m_nPitch = 640;
        e.m_nFormat = FORMAT_RGB;
        storeEntry(e.m_pMapTable, 3, {0x00120034u, 5 * 640 + 7});
    }
    TestSlot slot;
    FEDSP& e;
};

} // namespace

TEST_F(TableForms, PlanarFormatsUseTheTableItself)
{
    e.m_nFormat = FORMAT_NV12;
    EXPECT_EQ(tableForFormat(e, e.m_pMapTable, 10), e.m_pMapTable);
}

TEST_F(TableForms, TurnsIndicesIntoByteOffsets)
{
    ASSERT_EQ(tableForFormat(e, e.m_pMapTable, 10), e.m_pMapWork);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).fractions, 0x00120034u);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 5 * 3 * 640 + 3 * 7);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 0).index, 0);
}

TEST_F(TableForms, TheCopyIsMadeOnlyWhenNeeded)
{
    tableForFormat(e, e.m_pMapTable, 10);
    storeEntry(e.m_pMapTable, 3, {0, 640});
    tableForFormat(e, e.m_pMapTable, 10);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 5 * 3 * 640 + 3 * 7);
    tableForFormat(e, e.m_pMapTable, 11); // longer than the copy
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 3 * 640);
    storeEntry(e.m_pMapTable, 3, {0, 7});
    tableChanged(e, e.m_pMapTable);
    tableForFormat(e, e.m_pMapTable, 10);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 3 * 7);
}

TEST_F(TableForms, EverySetUpModeChangeAndReleaseDropsTheCopy)
{
    Bytes in = constantFrame(640, 480, FORMAT_RGB, 5);
    OutputFrame out(320, 240, FORMAT_RGB);
    tableForFormat(e, e.m_pMapTable, 10);
    ASSERT_EQ(e.m_nPackedEntries[0], 10);
    e.m_bQuad = 0; // no layout: only the set-up itself
    slot.frame(in, out, FORMAT_RGB);
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
    tableForFormat(e, e.m_pMapTable, 10);
    e.OnViewModeChange();
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
    tableForFormat(e, e.m_pMapTable, 10);
    e.DeleteAccess_ctr_Mem();
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
}

TEST_F(TableForms, StaleEntriesBeyondTheStagedFrameAreDropped)
{
    storeEntry(e.m_pMapTable, 4, {0, 640 * 480 * 2});
    storeEntry(e.m_pMapTable, 5, {0, -1000});
    tableForFormat(e, e.m_pMapTable, 10);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 4).index, 0);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 5).index, 0);
}

// A steered view shows its new place at once, and one whose table was built for another size or
// format never leaves the frame: its offsets are those of the size in force.
TEST(PackedFrames, FollowEveryRebuild)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes rgb(640 * 480 * 3), luma = patternFrame(640, 480, FORMAT_NV12);
    for (std::size_t i = 0; i < 640 * 480; ++i)
        rgb[3 * i] = rgb[3 * i + 1] = rgb[3 * i + 2] = luma[i];
    OutputFrame packed(320, 240, FORMAT_RGB), planar(320, 240);
    slot.update(8, 0, 1, 20);
    for (int frame = 0; frame < 3; ++frame)
        slot.frame(rgb, packed, FORMAT_RGB, false);
    const int pan = slot.engine().m_nSinglePan;
    slot.update(8, 0, 1, 0);
    slot.engine().m_nSinglePan = pan;
    slot.engine().m_bSetup = 1;
    slot.frame(luma, planar);
    for (std::size_t i = 0; i < 320 * 240; ++i)
        ASSERT_EQ(packed[3 * i], planar[i]);
}

TEST(PackedFrames, ACopyOfAnotherInputSizeIsNotUsed)
{
    TestSlot slot(1280, 1024, 160, 120);
    FEDSP& e = slot.engine();
    Bytes in(1280 * 1024 * 3, 9);
    OutputFrame out(160, 120, FORMAT_RGB);
    const auto feed = [&](int w, int h) {
        return VideoInput(0, in.data(), out.data(), w, h, FORMAT_RGB, true);
    };
    slot.update(8, 0);
    EXPECT_EQ(feed(320, 4096), 0);
    slot.update(1, 0);
    EXPECT_EQ(feed(5120, 256), 0); // sets up for this size in another layout
    FE_CurPosParams position;
    IFishEye eye;
    eye.LmFEGetPosition(0, &position);
    position.nViewMode = 8;
    position.view[0] = {0, 0, 0, 0};
    eye.LmFESetPosition(0, &position);
    EXPECT_EQ(feed(5120, 256), 0);
    const auto* copy = reinterpret_cast<const unsigned char*>(e.m_pMapWork);
    for (std::size_t k = 0; k < 160 * 120; ++k)
        ASSERT_LE(std::size_t(loadEntry(copy, k).index) + 3 * 5120 + 6, e.m_nCapacity[0]);
}
