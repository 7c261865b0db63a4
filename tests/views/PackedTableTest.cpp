#include "views/PackedTable.h"

#include "Frames.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

class PackedTable : public testing::Test {
protected:
    PackedTable() : slot(640, 480, 320, 240), e(slot.engine())
    {
        e.m_nPitch = 640;
        e.m_nFormat = FORMAT_RGB;
        storeEntry(e.m_pMapTable, 3, {0x00120034u, 5 * 640 + 7});
    }
    TestSlot slot;
    FEDSP& e;
};

} // namespace

TEST_F(PackedTable, PlanarFormatsUseTheTableItself)
{
    e.m_nFormat = FORMAT_NV12;
    EXPECT_EQ(tableForFormat(e, 10, true), e.m_pMapTable);
}

TEST_F(PackedTable, TurnsIndicesIntoByteOffsets)
{
    ASSERT_EQ(tableForFormat(e, 10, true), e.m_pMapWork);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).fractions, 0x00120034u);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 5 * 3 * 640 + 3 * 7);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 0).index, 0);
}

TEST_F(PackedTable, TheCopyIsMadeOnlyWhenNeeded)
{
    tableForFormat(e, 10, true);
    storeEntry(e.m_pMapTable, 3, {0, 640});
    tableForFormat(e, 10, false);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 5 * 3 * 640 + 3 * 7);
    tableForFormat(e, 11, false); // longer than the copy
    EXPECT_EQ(loadEntry(e.m_pMapWork, 3).index, 3 * 640);
}

TEST_F(PackedTable, StaleEntriesBeyondTheStagedFrameAreDropped)
{
    storeEntry(e.m_pMapTable, 4, {0, 640 * 480 * 2});
    storeEntry(e.m_pMapTable, 5, {0, -1000});
    tableForFormat(e, 10, true);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 4).index, 0);
    EXPECT_EQ(loadEntry(e.m_pMapWork, 5).index, 0);
}
