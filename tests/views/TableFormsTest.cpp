#include "views/TableForms.h"

#include "Frames.h"
#include "GuardedBuffer.h"
#include "engine/Buffers.h"
#include "kernels/Isa.h"
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
    e.MemoryAllocated_AccessCtr(640, 480, 320, 240); // clears the tables that are there
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
    tableForFormat(e, e.m_pMapTable, 10);
    Bytes block(1 << 20);
    e.MemoryAllocated_AccessCtr_DSP(640, 480, 320, 240, block.data(), unsigned(block.size()));
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
    tableForFormat(e, e.m_pMapTable, 10);
    e.DeleteAccess_ctr_Mem();
    EXPECT_EQ(e.m_nPackedEntries[0], 0);
}

TEST_F(TableForms, WithoutRoomForACopyTheTableItselfIsUsed)
{
    int* work = std::exchange(e.m_pMapWork, nullptr);
    EXPECT_EQ(tableForFormat(e, e.m_pMapTable, 10), e.m_pMapTable);
    e.m_pMapWork = work;
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

namespace {

// Lifts the limit again.
struct LimitedIsa {
    explicit LimitedIsa(Isa highest) { limitIsa(highest); }
    ~LimitedIsa() { limitIsa(Isa::avx2); }
    LimitedIsa(const LimitedIsa&) = delete;
    LimitedIsa& operator=(const LimitedIsa&) = delete;
};

bool canPlan()
{
    return bestIsa() >= Isa::ssse3;
}

struct Scene {
    std::vector<Bytes> frames;
    bool planned = false; // one of the tables had a plan
};

// Zoomed in, still for long enough to have plans, and steered once more.
Scene sceneOf(int mode, int camPos, FORMAT format, Isa isa)
{
    const LimitedIsa limited(isa);
    TestSlot slot(640, 640, 640, 480);
    Bytes in = patternFrame(640, 640, format, 3);
    OutputFrame out(640, 480, format);
    Scene scene;
    for (int f = 0; f < 14; ++f) {
        slot.update(mode, camPos, 1, f == 12 ? 7 : 0, f == 12 ? 5 : 0, f == 0 ? 20 : 0);
        for (std::size_t i = 0; i < in.size(); i += 97)
            ++in[i];
        slot.frame(in, out, format);
        scene.frames.push_back(out.bytes());
        const FEDSP& e = slot.engine();
        for (const int* table : {e.m_pMapTable, e.m_pSubMapA, e.m_pSubMapB})
            scene.planned |= hasPlan(e, table);
    }
    return scene;
}

} // namespace

class PlannedFrames : public testing::TestWithParam<std::tuple<int, int, FORMAT>> {};

TEST_P(PlannedFrames, AreThoseOfThePlainCode)
{
    const auto [mode, camPos, format] = GetParam();
    const Scene expected = sceneOf(mode, camPos, format, Isa::plain);
    EXPECT_FALSE(expected.planned);
    for (const Isa isa : {Isa::ssse3, Isa::avx2}) {
        if (isa > bestIsa()) continue;
        const Scene scene = sceneOf(mode, camPos, format, isa);
        EXPECT_TRUE(scene.planned || mode != 8) << nameOf(isa);
        for (std::size_t f = 0; f < expected.frames.size(); ++f)
            ASSERT_TRUE(scene.frames[f] == expected.frames[f]) << nameOf(isa) << " frame " << f;
    }
}

INSTANTIATE_TEST_SUITE_P(Pairs, PlannedFrames,
                         testing::Combine(testing::Values(1, 2, 4, 8), testing::Values(0, 1, 2),
                                          testing::Values(FORMAT_NV12)));
INSTANTIATE_TEST_SUITE_P(Planes, PlannedFrames,
                         testing::Combine(testing::Values(1, 8), testing::Values(0),
                                          testing::Values(FORMAT_YV12)));

// A single view that has been still for long enough to have a plan.
class PlannedView : public testing::Test {
protected:
    PlannedView()
        : slot(640, 480, 640, 480), e(slot.engine()), in(patternFrame(640, 480, FORMAT_NV12)),
          out(640, 480)
    {
        slot.update(8, 0);
        settle();
    }
    void SetUp() override
    {
        if (!canPlan()) GTEST_SKIP() << "no SSSE3 here";
        ASSERT_TRUE(planned());
    }
    void settle()
    {
        for (int f = 0; f < 12; ++f)
            slot.frame(in, out);
    }
    bool planned() const { return hasPlan(e, e.m_pMapTable); }

    TestSlot slot;
    FEDSP& e;
    Bytes in;
    OutputFrame out;
};

TEST_F(PlannedView, WhateverChangesTheTableDropsThePlan)
{
    slot.update(8, 0, 1, 5);
    slot.frame(in, out);
    EXPECT_FALSE(planned()) << "a step";
    slot.update(8, 0);
    settle();
    ASSERT_TRUE(planned());
    e.m_bSetup = 1;
    slot.frame(in, out);
    EXPECT_FALSE(planned()) << "a set-up frame";
    settle();
    ASSERT_TRUE(planned());
    e.OnViewModeChange();
    EXPECT_FALSE(planned()) << "clearing";
}

TEST_F(PlannedView, BuildersThatAHostCallsDropThePlan)
{
    const auto build = [&](int* table) {
        e.Fisheye_calibration_Init_byArea(240, 320, 240, 240, {100, 100, 200, 150}, 0, 0, 64, 48,
                                          table, 0, 0);
    };
    std::vector<int> other(2 * 64 * 48);
    build(other.data());
    EXPECT_TRUE(planned()) << "a table of the host's own";
    build(e.m_pMapTable + 2 * 640);
    EXPECT_FALSE(planned());
    settle();
    ASSERT_TRUE(planned());
    e.InitCPIBuffer_360(240, 320, 100, 640, 480, e.m_pMapTable, 0, nullptr, nullptr, 0, 0, 90);
    EXPECT_FALSE(planned());
    settle();
    ASSERT_TRUE(planned());
    e.Mercator_Projection_360(240, 320, 100, 640, 480, e.m_pMapTable, 0, nullptr, nullptr, 0, 90);
    EXPECT_FALSE(planned());
}

TEST_F(PlannedView, AnotherPitchOrSizeMakesAnotherPlan)
{
    EXPECT_TRUE(e.LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), 640, 480,
                                                  FORMAT_NV12, false, 600));
    EXPECT_FALSE(planned());
}

TEST_F(PlannedView, IsNotThatOfATableThatTookTheOthersPlace)
{
    std::vector<int> other(e.m_nCapacity[kMapTable] / sizeof(int)); // shows the first pixel only
    int* table = std::exchange(e.m_pMapTable, other.data());
    slot.frame(in, out);
    EXPECT_TRUE(std::all_of(out.data(), out.data() + 640 * 480,
                            [&](unsigned char byte) { return byte == in[0]; }));
    e.m_pMapTable = table;
}

TEST_F(PlannedView, NullPointersDoNothing)
{
    const Bytes before = out.bytes();
    e.AccessCtr_FESingleView(e.m_pStaged, nullptr, 640, 480, 640, 480);
    unsigned char* staged = std::exchange(e.m_pStaged, nullptr);
    e.AccessCtr_FESingleView(nullptr, out.data(), 640, 480, 640, 480);
    e.m_pStaged = staged;
    EXPECT_EQ(out.bytes(), before);
    int* work = std::exchange(e.m_pMapWork, nullptr);
    std::fill_n(out.data(), out.size(), 0);
    e.AccessCtr_FESingleView(e.m_pStaged, out.data(), 640, 480, 640, 480);
    e.m_pMapWork = work;
    EXPECT_EQ(out.bytes(), before);
}

TEST_F(PlannedView, AHostThatRendersAPanoramaItselfDropsThePlanByASetUp)
{
    slot.update(2, 0);
    settle();
    ASSERT_TRUE(planned());
    e.m_bSetup = 1;
    e.AccessCtr_FE360(e.m_pStaged, out.data(), 640, 480, 640, 480);
    EXPECT_FALSE(planned());
}

// Windows are wider than what the table reads, so other sources may not have room for them.
TEST_F(PlannedView, OnlyTheStagedFrameIsMappedByThePlan)
{
    GuardedBuffer own(in.size());
    std::copy(in.begin(), in.end(), own.data());
    const Bytes before = out.bytes();
    e.AccessCtr_FESingleView(own.data(), out.data(), 640, 480, 640, 480);
    EXPECT_EQ(out.bytes(), before);
}
