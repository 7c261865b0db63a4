// Starts the viewer on a private X server: videos.
#include "LibraryOutput.h"
#include "VideoTestSupport.h"
#include "ViewerRun.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

struct ViewerVideoTest : testing::Test {
    static void SetUpTestSuite() { desktop = new Desktop; }
    static void TearDownTestSuite() { delete std::exchange(desktop, nullptr); }
    static inline Desktop* desktop = nullptr;

    const LibraryOutput silence{LibraryOutput::Target::discard};
    const ScratchFolder folder;

    // The views of grey frames are grey: 50 and 200 in turn, `rate` a second.
    std::string blinking(int rate, int frames)
    {
        const std::string path = folder.file("blink.y4m");
        OutputFile file(path, -1);
        Y4mWriter writer(
            file,
            {{320, 320}, " F" + std::to_string(rate) + ":1 Ip A1:1 C420jpeg XCOLORRANGE=FULL"});
        Frame420 frame({320, 320});
        std::ranges::fill(frame.bytes, std::uint8_t(128));
        for (int i = 0; i < frames; ++i) {
            std::fill_n(frame.bytes.begin(), 320 * 320, std::uint8_t(i % 2 == 0 ? 50 : 200));
            writer.write(frame);
        }
        file.commit();
        return path;
    }

    // Of a pixel that every view covers.
    int grey() { return desktop->row(120).pixel(160, 0)[1]; }
    bool comesToBe(int value)
    {
        return eventually([&] { return std::abs(grey() - value) <= 3; });
    }
};

} // namespace

TEST_F(ViewerVideoTest, PlaysAtItsRateAndRepeats)
{
    ViewerRun run(*desktop, {blinking(5, 4)});
    ASSERT_TRUE(comesToBe(50));
    ASSERT_TRUE(comesToBe(200));
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) { // two and a half rounds of the video
        ASSERT_TRUE(comesToBe(50));
        ASSERT_TRUE(comesToBe(200));
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    EXPECT_NEAR(passed.count(), 10 / 5.0, 0.3);
}

TEST_F(ViewerVideoTest, SpacePauses)
{
    ViewerRun run(*desktop, {blinking(20, 2)});
    ASSERT_TRUE(comesToBe(50));
    ASSERT_TRUE(comesToBe(200));
    desktop->press("space");
    // Once it rests, it stays so.
    using namespace std::chrono_literals;
    int still = 0, last = grey();
    EXPECT_TRUE(eventually([&] {
        const int now = grey();
        still = now == last ? still + 1 : 0;
        last = now;
        std::this_thread::sleep_for(5ms);
        return still > 60; // six frames
    }));
    EXPECT_TRUE(run.comesToShow(Window::Place::topLeft, {"PAUSED"}));
    desktop->press("space");
    EXPECT_TRUE(comesToBe(50));
    EXPECT_TRUE(comesToBe(200));
}

TEST_F(ViewerVideoTest, SteersWhilePaused)
{
    writePng(folder.file("hall.png"), smallScene());
    outputOf("ffmpeg -v error -loop 1 -i " + folder.file("hall.png") +
             " -frames:v 5 -pix_fmt yuv420p -c:v ffv1 " + folder.file("hall.mkv"));
    ViewerRun run(*desktop, {folder.file("hall.mkv")});
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    desktop->press("space");
    desktop->press("2");
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::quad})));
}

TEST_F(ViewerVideoTest, ColoursOfLimitedRangeComeOutRight)
{
    // Video white is 235, high definition's red 63 102 240.
    for (const auto& [matrix, height] : {std::pair{"bt709", 640}, {"smpte170m", 320}}) {
        const std::string path = folder.file(std::string(matrix) + ".mkv");
        outputOf("ffmpeg -v error -f lavfi -i color=c=red:s=640x" + std::to_string(height) +
                 ",scale=out_color_matrix=" + matrix +
                 ":out_range=tv,format=yuv420p -frames:v 5 "
                 "-colorspace " +
                 matrix + " -color_range tv -c:v ffv1 " + path);
        ViewerRun run(*desktop, {path});
        EXPECT_TRUE(eventually([&] {
            const Image row = desktop->row(desktop->windowSize().height / 2);
            const std::uint8_t* p = row.pixel(row.size.width / 2, 0);
            return p[0] > 245 && p[1] < 10 && p[2] < 10;
        })) << matrix;
    }
}

TEST_F(ViewerVideoTest, SaysWhyAVideoBrokeOff)
{
    const std::string path = blinking(10, 3);
    Bytes cut = readFile(path);
    cut.resize(cut.size() - 100);
    writeFile(path, cut);
    ViewerRun run(*desktop, {path});
    const std::string message = errorOf([&] {
        InputStream input(path);
        Y4mReader reader(input);
        Frame420 frame({320, 320});
        while (reader.read(frame)) {
        }
    });
    EXPECT_NE(message, "");
    EXPECT_TRUE(run.comesToShow(Window::Place::bottomLeft, {message}));
    EXPECT_TRUE(comesToBe(200)); // the last frame stays
    EXPECT_TRUE(run.comesToShow(Window::Place::topLeft, {"ENDED"}));
    desktop->press("q");
    EXPECT_EQ(run.wait(), 0);
}
