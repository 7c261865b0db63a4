#include "views/ViewRules.h"

#include "Isas.h"
#include "ViewTestSupport.h"
#include "engine/Buffers.h"
#include "views/TableForms.h"

using namespace fe;

namespace {

struct Scene {
    const char* name;
    int inW, inH, screenW, screenH;
};

// What a host sees after a frame: the frame and the work images.
constexpr std::size_t kSeen = 3, kSeenBytes = kSeen * sizeof(std::uint64_t);
constexpr int kFrames = 13, kLooked = 4; // how many are fed, the last of which are looked at

void look(unsigned char*& hashes, const FEDSP& e, const OutputFrame& out)
{
    const std::uint64_t seen[kSeen] = {hashOf(out.data(), out.size()),
                                       hashOf(e.m_pViewImage, e.m_nCapacity[kViewImage]),
                                       hashOf(e.m_pWorkImageA, e.m_nCapacity[kWorkImageA])};
    std::memcpy(hashes, seen, kSeenBytes);
    hashes += kSeenBytes;
}

// Zooms in, so that neighbours lie close together in the source.
void zoomIn(FEDSP& e)
{
    for (int FEDSP::*zoom :
         {&FEDSP::m_nQuad1Zoom, &FEDSP::m_nQuad2Zoom, &FEDSP::m_nQuad3Zoom, &FEDSP::m_nQuad4Zoom,
          &FEDSP::m_n360View1Zoom, &FEDSP::m_n360View2Zoom})
        e.*zoom = 40;
}

} // namespace

// Views that are mapped straight into the frame leave everything as if they were composed.
class RenderedViews : public testing::TestWithParam<std::tuple<Scene, ViewMode, int, FORMAT>> {};

TEST_P(RenderedViews, LeaveTheSameFramesAndWorkImagesWithEveryInstructionSet)
{
    const Scene scene = std::get<0>(GetParam());
    const ViewMode mode = std::get<1>(GetParam());
    const int camPos = std::get<2>(GetParam());
    const FORMAT format = std::get<3>(GetParam());
    // Frames, and each renderer called by the host.
    expectSameWithEveryIsa((kLooked + 2) * kSeenBytes, [&](unsigned char* hashes) {
        TestSlot slot(scene.inW, scene.inH, scene.screenW, scene.screenH);
        ASSERT_EQ(slot.status(), 0);
        FEDSP& e = slot.engine();
        for (const Buffer image : {kViewImage, kWorkImageA})
            fillBuffer(e, image, INT64_MAX, 0xA5);
        Bytes in = patternFrame(scene.inW, scene.inH, format, 3);
        for (int f = 0; f < kFrames; ++f) {
            const bool step = f == kFrames - 2;
            slot.update(mode, camPos, 2, step ? 7 : 0, step ? 5 : 0);
            if (f == 0) zoomIn(e);
            for (std::size_t i = 0; i < in.size(); i += 97)
                ++in[i];
            OutputFrame out(scene.screenW, scene.screenH, format);
            EXPECT_EQ(slot.frame(in, out, format), 0);
            if (f >= kFrames - kLooked) look(hashes, e, out);
        }
        OutputFrame out(2 * scene.inW, 2 * scene.inH, format);
        const auto render = [&](auto renderer) {
            (e.*renderer)(e.m_pStaged, out.data(), scene.inW, scene.inH, scene.screenW,
                          scene.screenH);
            look(hashes, e, out);
        };
        render(mode == kModeQuad ? &FEDSP::AccessCtr_FEQuad12 : &FEDSP::AccessCtr_FE360PTZ);
        render(mode == kModeQuad ? &FEDSP::AccessCtr_FEQuad34 : &FEDSP::AccessCtr_FE360PTZ);
    });
}

const Scene kScenes[] = {{"Small", 320, 320, 320, 240},
                         {"OddScreen", 400, 320, 331, 245},
                         {"WideScreen", 320, 320, 400, 200},
                         {"TallScreen", 320, 352, 240, 420}};

std::string nameOfParam(const testing::TestParamInfo<RenderedViews::ParamType>& each)
{
    const auto& [scene, mode, camPos, format] = each.param;
    return scene.name + std::string(mode == kModeQuad ? "Quad" : "360") + "Mounting" +
           std::to_string(camPos) + "Format" + std::to_string(int(format));
}

INSTANTIATE_TEST_SUITE_P(Scenes, RenderedViews,
                         testing::Combine(testing::ValuesIn(kScenes),
                                          testing::Values(kModeQuad, kMode360),
                                          testing::Values(0, 1, 2, 3),
                                          testing::Values(FORMAT_NV12, FORMAT_YV12, FORMAT_YUYV)),
                         nameOfParam);

// Has served enough frames for plans.
struct SteadyQuad {
    TestSlot slot{320, 320, 320, 240};
    OutputFrame out{320, 240};

    SteadyQuad()
    {
        slot.update(kModeQuad, 0);
        zoomIn(slot.engine());
        Bytes in = patternFrame(320, 320, FORMAT_NV12);
        for (int f = 0; f < kFrames; ++f)
            slot.frame(in, out);
    }
};

TEST(RenderedQuad, SkipsImagesThatLaterViewsWriteOver)
{
    if (bestIsa() < Isa::ssse3) GTEST_SKIP() << "no SSSE3 here";
    SteadyQuad quad;
    FEDSP& e = quad.slot.engine();
    OutputFrame& out = quad.out;
    ASSERT_TRUE(hasPlan(e, e.m_pSubMapA) && hasPlan(e, e.m_pSubMapB) && hasPlan(e, e.m_pMapTable));

    const auto leavesAnImage = [&](unsigned char* caller, auto renderer) {
        fillBuffer(e, kViewImage, INT64_MAX, 1);
        e.m_pOutput = caller;
        e.m_nOutputBytes = static_cast<long long>(out.size());
        (e.*renderer)(e.m_pStaged, out.data(), 320, 320, 320, 240);
        e.m_pOutput = nullptr;
        return std::any_of(e.m_pViewImage, e.m_pViewImage + 160 * 120,
                           [](unsigned char byte) { return byte != 1; });
    };
    EXPECT_FALSE(leavesAnImage(out.data(), &FEDSP::AccessCtr_FEQuad12)) << "in a whole frame";
    EXPECT_TRUE(leavesAnImage(nullptr, &FEDSP::AccessCtr_FEQuad12)) << "called by a host";
    EXPECT_TRUE(leavesAnImage(out.data(), &FEDSP::AccessCtr_FEQuad34)) << "the last view";
}

// Then view 2 shows the image of view 1.
TEST(RenderedQuad, KeepsTheFirstImageWhenThereIsNoTableForTheSecond)
{
    expectSameWithEveryIsa(kSeenBytes, [](unsigned char* hashes) {
        SteadyQuad quad;
        FEDSP& e = quad.slot.engine();
        int* table = std::exchange(e.m_pSubMapA, nullptr);
        e.AccessCtr_FEQuad12(e.m_pStaged, quad.out.data(), 320, 320, 320, 240);
        e.m_pSubMapA = table;
        look(hashes, e, quad.out);
    });
}

// Views 3 and 4 share a table: the last view is mapped for itself only when that was built anew.
class LastView : public testing::TestWithParam<std::tuple<FORMAT, int>> {};

TEST_P(LastView, ShowsTheTableThatIsThereAfterTheFrame)
{
    constexpr int kW = 160, kH = 120;
    const FORMAT format = std::get<0>(GetParam());
    const int mounting = std::get<1>(GetParam());
    TestSlot slot(320, 320, 2 * kW, 2 * kH);
    FEDSP& e = slot.engine();
    Bytes in = patternFrame(320, 320, format);
    OutputFrame out(2 * kW, 2 * kH, format);
    const auto expectShown = [&](int view, int tiltStep, int builds) {
        SCOPED_TRACE(testing::Message() << view << " by " << tiltStep);
        slot.update(kModeQuad, mounting, view, 0, tiltStep);
        const std::string text = printedBy([&] { slot.frame(in, out, format); });
        EXPECT_EQ(occurrences(text, "Fisheye_calibration_Init_byArea:"), builds);
        EXPECT_EQ(occurrences(text, "chroma Tick"), format == FORMAT_RGB ? 0 : 4);
        Bytes image(kW * kH * 3);
        int* table = tableForFormat(e, e.m_pMapTable, kW * kH);
        e.FCMapping(format, e.m_pStaged, image.data(), table, 320, 320, kW, kH, false);
        EXPECT_TRUE(std::equal(image.begin(), image.begin() + kW * kH, e.m_pViewImage));
        for (int y = 0; y < kH; ++y)
            ASSERT_EQ(std::memcmp(image.data() + (mounting == 0 ? y : kH - 1 - y) * kW,
                                  out.data() + (kH + y) * 2 * kW + kW + 1, kW),
                      0)
                << "row " << y;
    };
    const int up = mounting == 0 ? -1 : 1;
    expectShown(1, 0, 4);
    expectShown(1, 0, 0);
    expectShown(3, 4 * up, 1);
    expectShown(3, 0, 0);
    expectShown(2, 6 * up, 2); // 4 as well
    expectShown(2, 0, 0);
    expectShown(4, 8 * up, 0); // its own steps wait for one of view 2
    expectShown(2, 3 * up, 2);
}

INSTANTIATE_TEST_SUITE_P(Formats, LastView,
                         testing::Combine(testing::Values(FORMAT_NV12, FORMAT_YV12, FORMAT_RGB),
                                          testing::Values(0, 2)));
