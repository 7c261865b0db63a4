#include "Capture.h"
#include "Frames.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

// The library's globals before any call.
struct Globals {
    bool slotsEmpty = true;
    int count = g_count;
    int firstTime = bFirstTimeSetup;

    Globals()
    {
        for (int slot = 0; slot < FE_MAX_CAMERAS; ++slot)
            slotsEmpty &= !m_FEDSP[slot] && !m_EventParam[slot] && !m_ViewParam[slot];
    }
};
const Globals kAtStart;

int initialize(int slot, int w, int h)
{
    return Initialize(slot, w, h, 320, 240, FORMAT_NV12);
}

} // namespace

TEST(Globals, StartEmpty)
{
    EXPECT_TRUE(kAtStart.slotsEmpty);
    EXPECT_EQ(kAtStart.count, 0);
    EXPECT_EQ(kAtStart.firstTime, 1);
}

TEST(Globals, EvenARefusedInitializeClearsTheFirstTimeFlag)
{
    bFirstTimeSetup = 1;
    EXPECT_EQ(initialize(16, 640, 480), 1);
    EXPECT_EQ(bFirstTimeSetup, 0);
}

TEST(InitializeCall, RefusesBadSlotsWithALine)
{
    for (int slot : {16, -1, 1000000}) {
        const std::string line = "invalid nCam " + std::to_string(slot) + " [0, 15]\n";
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(initialize(slot, 640, 480), 1); }), line);
    }
}

TEST(InitializeCall, ChecksTheInputSize)
{
    for (const auto& size :
         {std::pair{319, 240}, {320, 239}, {4097, 4096}, {4096, 4097}, {-640, 480}}) {
        const int w = size.first, h = size.second;
        const std::string line = "invalid S_nW S_nH, " + std::to_string(w) + " " +
                                 std::to_string(h) + ", W[320, 4096] H[240, 4096]\n";
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(initialize(0, w, h), 1); }), line);
        EXPECT_EQ(m_FEDSP[0], nullptr);
    }
    for (auto [w, h] : {std::pair{320, 240}, {4096, 4096}}) {
        TestSlot slot(w, h, 320, 240);
        EXPECT_EQ(slot.status(), 0);
    }
}

TEST(InitializeCall, ARefusedSizeLeavesALiveSlotAlone)
{
    TestSlot slot(640, 480, 320, 240);
    slot.engine().m_nSinglePan = 5;
    EXPECT_EQ(initialize(0, 319, 240), 1);
    EXPECT_EQ(slot.engine().m_nSinglePan, 5);
    EXPECT_EQ(slot.engine().m_nInputW, 640);
}

TEST(InitializeCall, CreatesEngineAndRecords)
{
    TestSlot slot(640, 480, 320, 240, 7);
    ASSERT_NE(m_FEDSP[7], nullptr);
    EXPECT_EQ(slot.engine().m_nCam, 7);
    EXPECT_EQ(slot.engine().m_nScreenRes, 4);
    EXPECT_EQ(slot.engine().m_nScreenW, 320);
    EXPECT_EQ(m_EventParam[7]->nPanStep, 0);
    EXPECT_EQ(m_ViewParam[7]->nRadius, 640);
    EXPECT_EQ(m_FEDSP[6], nullptr);
}

TEST(InitializeCall, ResetsALiveSlotAndKeepsItsEngine)
{
    TestSlot slot(640, 480, 320, 240);
    slot.update(8, 2, 1, 5, 5, 5);
    FEDSP* const engine = m_FEDSP[0];
    FE_EventParams* const event = m_EventParam[0];
    engine->DeleteAccess_ctr_Mem(); // a second set would otherwise leak, as documented
    EXPECT_EQ(Initialize(0, 1280, 720, 800, 600, FORMAT_NV12), 0);
    EXPECT_EQ(m_FEDSP[0], engine);
    EXPECT_EQ(m_EventParam[0], event);
    EXPECT_EQ(engine->m_bQuad, 1);
    EXPECT_EQ(engine->m_nSingleZoom, 0);
    EXPECT_EQ(engine->m_nInputW, 1280);
    EXPECT_EQ(engine->m_nEventPan, 5); // survives
}

TEST(InitializeCall, ReportsMissingRecords)
{
    TestSlot slot(640, 480, 320, 240);
    const std::unique_ptr<FE_ViewParams> record(m_ViewParam[0]);
    m_ViewParam[0] = nullptr;
    slot.engine().DeleteAccess_ctr_Mem();
    EXPECT_EQ(initialize(0, 640, 480), 16);
}

TEST(InitializeCall, ScreensThatCannotBeServedLeaveASlotThatRefusesFrames)
{
    for (auto [w, h] : {std::pair{-800, 600}, {-800, -600}, {30000, 30000}}) {
        TestSlot slot(640, 480, w, h);
        EXPECT_EQ(slot.status(), 2);
        ASSERT_NE(m_FEDSP[0], nullptr);
        Bytes in = constantFrame(640, 480, FORMAT_NV12, 5);
        unsigned char out = 9;
        EXPECT_EQ(VideoInput(0, in.data(), &out, 640, 480, FORMAT_NV12, false), 16);
        EXPECT_EQ(out, 9);
        EXPECT_EQ(slot.update(8, 0), 0);
        EXPECT_EQ(Close(0), 0);
    }
}

TEST(VideoInputCall, ChecksItsArguments)
{
    Bytes in = constantFrame(640, 480, FORMAT_NV12, 5);
    OutputFrame out(320, 240);
    const Bytes before = out.bytes();
    for (int slot : {16, -1}) {
        const std::string line = "invalid nCam " + std::to_string(slot) + " [0, 15]\n";
        EXPECT_EQ(printedBy([&] {
                      EXPECT_EQ(
                          VideoInput(slot, in.data(), out.data(), 640, 480, FORMAT_NV12, false), 1);
                  }),
                  line);
    }
    EXPECT_EQ(VideoInput(3, in.data(), out.data(), 640, 480, FORMAT_NV12, false), 1);

    TestSlot slot(640, 480, 320, 240);
    EXPECT_EQ(VideoInput(0, nullptr, out.data(), 640, 480, FORMAT_NV12, false), 16);
    EXPECT_EQ(VideoInput(0, in.data(), nullptr, 640, 480, FORMAT_NV12, false), 16);
    EXPECT_EQ(out.bytes(), before);
    EXPECT_EQ(slot.engine().m_bSetup, 1);
}

TEST(VideoInputCall, ProcessesWholeFrames)
{
    TestSlot slot(640, 480, 320, 240);
    slot.update(8, 0);
    slot.engine().m_nLineIndex = 77;
    Bytes in = constantFrame(640, 480, FORMAT_NV12, 5);
    OutputFrame out(320, 240);
    EXPECT_EQ(slot.frame(in, out), 0);
    EXPECT_EQ(slot.engine().m_nLineIndex, -1);
    EXPECT_EQ(slot.engine().m_nPitch, 640);
    EXPECT_EQ(out[320 * 240 - 1], 5);
}

TEST(ParamsUpdatedCall, ChecksItsArguments)
{
    FE_EventParams event;
    FE_ViewParams view;
    view.nOverlay = 0;
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(ParamsUpdated(16, &event, &view), 1); }),
              "invalid nCam 16 [0, 15]\n");
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(ParamsUpdated(0, nullptr, nullptr), 1); }),
              "pEvent , pView NULL\n");
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(ParamsUpdated(0, &event, &view), 1); }), "");

    TestSlot slot(640, 480, 320, 240);
    event.nPanStep = 9;
    view.nViewMode = 8;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_EQ(ParamsUpdated(0, &event, nullptr), 1);
                  EXPECT_EQ(ParamsUpdated(0, nullptr, &view), 1);
              }),
              "");
    EXPECT_EQ(m_EventParam[0]->nPanStep, 0); // nothing was copied
    EXPECT_EQ(slot.engine().m_bQuad, 1);
}

TEST(ParamsUpdatedCall, CopiesTheEventAndConsumesOnlyTheCopy)
{
    TestSlot slot(640, 480, 320, 240);
    FE_ViewParams view = slot.view(1, 0, 2);
    FE_EventParams event;
    event.nPanStep = 1;
    event.nTiltStep = 2;
    event.nZoomStep = 3;
    EXPECT_EQ(ParamsUpdated(0, &event, &view), 0);
    EXPECT_EQ(event.nZoomStep, 3);
    EXPECT_EQ(m_EventParam[0]->nZoomStep, 0);
    EXPECT_EQ(slot.engine().m_nQuad2Zoom, 3);
}

TEST(ParamsUpdatedCall, AClosedSlotStillTakesTheEvent)
{
    TestSlot slot(640, 480, 320, 240);
    FE_ViewParams view = slot.view(1, 0);
    FE_EventParams event;
    event.nPanStep = 44;
    Close(0);
    EXPECT_EQ(ParamsUpdated(0, &event, &view), 1);
    EXPECT_EQ(m_EventParam[0]->nPanStep, 44);
}

TEST(CloseCall, IsHarmlessOnEmptySlots)
{
    EXPECT_EQ(Close(0), 0);
    TestSlot slot(640, 480, 320, 240);
    EXPECT_EQ(Close(0), 0);
    EXPECT_EQ(m_FEDSP[0], nullptr);
    EXPECT_NE(m_EventParam[0], nullptr);
    EXPECT_NE(m_ViewParam[0], nullptr);
    EXPECT_EQ(Close(0), 0);
    for (int bad : {16, -1}) {
        const std::string line = "invalid nCam " + std::to_string(bad) + " [0, 15]\n";
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(Close(bad), 1); }), line);
    }
}

TEST(CloseCall, AReopenedSlotGetsFreshRecords)
{
    TestSlot slot(640, 480, 320, 240);
    const std::unique_ptr<FE_EventParams> event(m_EventParam[0]);
    const std::unique_ptr<FE_ViewParams> view(m_ViewParam[0]);
    event->nPanStep = 3;
    Close(0);
    EXPECT_EQ(initialize(0, 640, 480), 0);
    EXPECT_NE(m_EventParam[0], event.get());
    EXPECT_NE(m_ViewParam[0], view.get());
    EXPECT_EQ(m_EventParam[0]->nPanStep, 0);
}

TEST(UnsupportedCalls, PrintTheirNamesAndReturn16)
{
    EXPECT_EQ(printedBy([] { EXPECT_EQ(SetInfo(0, 1, 2, nullptr), 16); }),
              "SetInfo() in linux sdk is not support\n");
    EXPECT_EQ(
        printedBy([] { EXPECT_EQ(LmFEalignmentTool(99, nullptr, 0, 0, FORMAT_RGB, nullptr), 16); }),
        "LmFEalignmentTool() in linux sdk is not support\n");
}

TEST(Slots, DoNotDisturbEachOther)
{
    std::vector<std::unique_ptr<TestSlot>> slots;
    std::vector<Bytes> inputs, alone;
    const auto steer = [](TestSlot& slot, int i) { slot.update(8, i % 3, 1, i * 3 - 20, 0, i); };
    const auto size = [](int i) { return 320 + 16 * i; };
    for (int i = 0; i < FE_MAX_CAMERAS; ++i) {
        inputs.push_back(patternFrame(size(i), 320, FORMAT_NV12, std::uint32_t(i)));
        TestSlot slot(size(i), 320, 160, 120, i);
        steer(slot, i);
        OutputFrame out(160, 120);
        slot.frame(inputs.back(), out);
        slot.frame(inputs.back(), out);
        alone.push_back(out.bytes());
    }
    for (int i = 0; i < FE_MAX_CAMERAS; ++i) {
        slots.push_back(std::make_unique<TestSlot>(size(i), 320, 160, 120, i));
        steer(*slots.back(), i);
    }
    std::vector<OutputFrame> outs(FE_MAX_CAMERAS, OutputFrame(160, 120));
    for (int round = 0; round < 2; ++round)
        for (int i = FE_MAX_CAMERAS - 1; i >= 0; --i)
            slots[std::size_t(i)]->frame(inputs[std::size_t(i)], outs[std::size_t(i)]);
    for (std::size_t i = 0; i < FE_MAX_CAMERAS; ++i)
        EXPECT_EQ(outs[i].bytes(), alone[i]) << i;
}
