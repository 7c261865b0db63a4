#include "Capture.h"
#include "Frames.h"

#include <gtest/gtest.h>

#include <thread>

// Every slot on a thread of its own. With the thread sanitizer this finds what slots share; without
// it, whether a slot's pictures depend on the others.

namespace {

constexpr int kInput = 320, kScreenW = 160, kScreenH = 120, kFrames = 6;

// Serves one slot from set-up to teardown and returns the hash of its frames.
std::uint64_t serve(int slot)
{
    const FORMAT formats[] = {FORMAT_NV12, FORMAT_YV12, FORMAT_RGB};
    const FORMAT format = formats[slot % 3];
    const int modes[] = {1, 2, 4, 8};
    if (Initialize(slot, kInput, kInput, kScreenW, kScreenH, format) != FE_STATUS_OK) return 0;
    Bytes in = patternFrame(kInput, kInput, format, std::uint32_t(slot) + 1);
    Bytes shown, out(frameBytes(kScreenW, kScreenH, format));
    IFishEye eye;
    for (int frame = 0; frame < kFrames; ++frame) {
        FE_EventParams event;
        event.nPanStep = static_cast<short>(slot + frame);
        FE_ViewParams view;
        view.nViewMode = static_cast<unsigned short>(modes[(slot + frame / 2) % 4]);
        view.nCamPos = static_cast<unsigned short>((slot + frame) / 3 % 3);
        view.nSubView = 1;
        view.nCenterX = view.nCenterY = view.nRadius = kInput / 2;
        view.nOverlay = 0;
        ParamsUpdated(slot, &event, &view);
        eye.SetAbsolutePTZ(slot, static_cast<short>(slot * 100), 450, 200, 1);
        FE_CurPosParams position = {};
        eye.LmFEGetPosition(slot, &position);
        eye.LmFESetPosition(slot, &position);
        if (VideoInput(slot, in.data(), out.data(), kInput, kInput, format, false) != FE_STATUS_OK)
            return 0;
        shown.insert(shown.end(), out.begin(), out.end());
    }
    Close(slot);
    delete m_EventParam[slot];
    delete m_ViewParam[slot];
    m_EventParam[slot] = nullptr;
    m_ViewParam[slot] = nullptr;
    return hashOf(shown);
}

} // namespace

TEST(Threads, SlotsServedAtOnceShowWhatTheyShowAlone)
{
    std::vector<std::uint64_t> together(FE_MAX_CAMERAS), alone(FE_MAX_CAMERAS);
    printedBy([&] {
        std::vector<std::thread> threads;
        for (int slot = 0; slot < FE_MAX_CAMERAS; ++slot)
            threads.emplace_back([&together, slot] { together[std::size_t(slot)] = serve(slot); });
        for (std::thread& thread : threads)
            thread.join();
        for (int slot = 0; slot < FE_MAX_CAMERAS; ++slot)
            alone[std::size_t(slot)] = serve(slot);
    });
    for (std::size_t slot = 0; slot < alone.size(); ++slot) {
        EXPECT_NE(alone[slot], 0u) << slot;
        EXPECT_EQ(together[slot], alone[slot]) << slot;
    }
}
