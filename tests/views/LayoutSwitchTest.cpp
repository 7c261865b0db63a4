#include "ViewTestSupport.h"

#include "engine/SubViews.h"

#include <cstring>
#include <limits>
#include <utility>

namespace {

class LayoutSwitch : public testing::Test, protected LayoutSlot {
protected:
    LayoutSwitch() : LayoutSlot(1280, 1280, 800, 600) {}

    Bytes frameOf(int mode, int camPos)
    {
        slot.update(mode, camPos);
        frame();
        return out.bytes();
    }
    void restore(int mode)
    {
        FE_CurPosParams position;
        e.LmFEGetPosition(0, &position);
        position.nViewMode = static_cast<unsigned short>(mode);
        std::memset(position.view, 0, sizeof position.view);
        position.n180Pos = 0;
        e.LmFESetPosition(0, &position);
    }
};

constexpr int kModes[] = {1, 2, 4, 8};

} // namespace

TEST_F(LayoutSwitch, UpdatesRebuildEverything)
{
    for (int camPos : {0, 2}) {
        std::vector<Bytes> first;
        for (int mode : kModes)
            first.push_back(frameOf(mode, camPos));
        // Backwards, and with a first frame as before: only what nobody writes may differ, and a
        // set-up frame clears it.
        for (int i = 3; i >= 0; --i)
            EXPECT_EQ(frameOf(kModes[i], camPos), first[std::size_t(i)]) << kModes[i];
    }
}

TEST_F(LayoutSwitch, RestoredPositionsRebuildOnlyTheirKeyedViews)
{
    frameOf(1, 0);
    // The single view builds its own table over the one of quad views 3 and 4.
    restore(8);
    EXPECT_EQ(builds(), 1);
    // Back in the quad layout view 2's shared key has changed; views 3 and 4 keep theirs and show
    // the single view's table.
    restore(1);
    EXPECT_EQ(builds(), 1);
    Bytes single(800 * 600 * 2);
    e.FCMapping(FORMAT_NV12, e.m_pStaged, single.data(), e.m_pMapTable, 1280, 1280, 400, 300, true);
    for (std::size_t x = 1; x < 400; ++x)
        ASSERT_EQ(out[300 * 800 + x], single[x]);
}

TEST_F(LayoutSwitch, RestoredPanoramasShowWhateverTheTableHolds)
{
    frameOf(8, 0);
    restore(4); // no set-up: no unwrap is built
    const Bytes before = out.bytes();
    frame();
    EXPECT_NE(out.bytes(), before);
    EXPECT_EQ(e.m_bSetup, 0);
    EXPECT_EQ(e.m_pMapTable[1] == 640 * 1280 + 640, false);
    slot.update(4, 0); // an update builds it
    frame();
    EXPECT_EQ(e.m_pMapTable[1], 640 * 1280 + 640);
    restore(2); // the strip is rebuilt when its request is still open: the views are by their keys
    EXPECT_EQ(e.m_bModeChanged, 1);
    EXPECT_EQ(builds(), 2);
    EXPECT_EQ(e.m_bModeChanged, 0);
}

TEST_F(LayoutSwitch, AbsolutePositionsGoToTheLayoutOfTheLastUpdate)
{
    frameOf(8, 0);
    restore(1);
    e.SetAbsolutePTZCPU(0, 900, 0, 0, 1);
    EXPECT_EQ(e.m_nSinglePan, 360);
    EXPECT_EQ(e.m_nQuad1Pan, 0);
}

TEST(LayoutSwitchSizes, EverySwitchStaysInsideItsBuffersOnAwkwardSizes)
{
    struct Case {
        int inW, inH, screenW, screenH;
    };
    for (const Case& c : {Case{320, 240, 1920, 1080},
                          {1280, 1280, 1366, 768},
                          {640, 480, 131, 97},
                          {480, 1280, 1280, 720},
                          {1281, 963, 640, 1200},
                          {640, 480, 7, 7}}) {
        LayoutSlot s(c.inW, c.inH, c.screenW, c.screenH);
        for (int i = 0; i < 40; ++i) {
            const int mode = kModes[i * 7 % 4], camPos = i % 3;
            if (i % 2 == 0) {
                s.slot.update(mode, camPos, i % 5, i * 5 - 90, 40 - i * 3, i % 7 - 3);
            } else {
                FE_CurPosParams position;
                s.e.LmFEGetPosition(0, &position);
                position.nViewMode = static_cast<unsigned short>(mode);
                position.nCamPos = static_cast<unsigned short>(camPos);
                for (FE_ViewPosition& view : position.view)
                    view = {static_cast<short>(i * 900 - 17000), static_cast<short>(i * 7 - 140),
                            static_cast<short>(i - 15), static_cast<short>(i * 99 - 1900)};
                position.n180Pos = i * 77 - 1500;
                s.e.LmFESetPosition(0, &position);
            }
            s.frame();
        }
    }
}

// Where steps that are held for thousands of frames lead.
TEST(LayoutSwitchSizes, PansAndOffsetsThatGrewToTheirEndsAreServed)
{
    constexpr int kEnds[] = {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
    LayoutSlot s(320, 240, 160, 120);
    for (int mode : kModes)
        for (int camPos : {0, 1, 2})
            for (int end : kEnds)
                for (auto [pan, tilt] : {std::pair{32767, 0}, {-32768, 0}, {0, 32767}, {0, -32768}})
                    for (int view : {1, 2}) {
                        s.slot.update(mode, camPos, view, pan, tilt);
                        for (const fe::SubViewFields& fields : fe::allViews())
                            s.e.*fields.pan = s.e.*fields.aux = end;
                        s.frame();
                    }
}
