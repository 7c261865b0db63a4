// Runs the built tool with the layouts, as a person or script does.
#include "ToolTestSupport.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"
#include "media/Pixels.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::runTool;
using test::ToolRun;
using Names = std::vector<std::string>;

class LayoutCliTest : public testing::Test {
protected:
    LayoutCliTest() { test::writePng(still(), scaled(test::scene(Mount::ceiling), {640, 640})); }

    std::string still() const { return folder_.file("still.png"); }
    std::string file(const std::string& name) const { return folder_.file(name); }

    ToolRun render(const Names& options) const
    {
        Names arguments{"render", still(), "-o", "-"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runTool(arguments);
    }

    Image picture(const Names& options) const
    {
        const ToolRun run = render(options);
        EXPECT_EQ(run.status, 0) << run.err;
        return decodeImage(run.out, "output", {1, 1});
    }

    void expectRefused(const Names& options, const std::string& word) const
    {
        SCOPED_TRACE(testing::PrintToString(options));
        const ToolRun run = render(options);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err.rfind("lumofe: ", 0), 0u) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        EXPECT_NE(run.err.find(word), std::string::npos) << run.err;
        EXPECT_TRUE(run.out.empty());
    }

    // A video of the still, each frame darker than the one before.
    Bytes video(int frames) const
    {
        Bytes all = bytesOf("YUV4MPEG2 W640 H640 F25:1 Ip A1:1 C420jpeg\n");
        for (int i = 0; i < frames; ++i) {
            const Bytes header = bytesOf("FRAME\n"), frame = videoFrame(i).bytes;
            all.insert(all.end(), header.begin(), header.end());
            all.insert(all.end(), frame.begin(), frame.end());
        }
        return all;
    }

    static Frame420 videoFrame(int number)
    {
        Image image = scaled(test::scene(Mount::ceiling), {640, 640});
        for (std::uint8_t& byte : image.bytes)
            byte = std::uint8_t(byte * (4 - number) / 4);
        return toFrame420(image);
    }

    test::ScratchFolder folder_;
};

TEST_F(LayoutCliTest, HelpNamesTheLayoutsAndTheirOptions)
{
    const ToolRun run = runTool({"render", "--help"});
    const std::string text(run.out.begin(), run.out.end());
    for (const char* word : {"quad", "360", "180", "--ptz", "--pano-offset", "--no-upright ",
                             "--exact-size", "--exact-format", "--pan-sweep", "--frames"})
        EXPECT_NE(text.find(word), std::string::npos) << word;
}

TEST_F(LayoutCliTest, DefaultSizesFitTheInput)
{
    EXPECT_EQ(picture({"--view", "single"}).size, (Size{640, 480}));
    EXPECT_EQ(picture({"--view", "quad"}).size, (Size{640, 480}));
    EXPECT_EQ(picture({"--view", "360"}).size, (Size{640, 360}));
    EXPECT_EQ(picture({"--view", "180"}).size, (Size{640, 360}));
    EXPECT_EQ(picture({"--view", "180", "--mount", "wall"}).size, (Size{640, 480}));
}

TEST_F(LayoutCliTest, AimsGoToTheViewsInOrder)
{
    const Names usual{"--view", "quad"};
    const Names same{"--view",  "quad",  "--ptz",    "0,80,0", "--ptz",
                     "90,80,0", "--ptz", "180,80,0", "--ptz",  "270,80,0"};
    const Image a = picture(usual);
    EXPECT_EQ(a.bytes, picture(same).bytes);
    const Image b = picture({"--view", "quad", "--ptz", "0,80,0", "--ptz", "45,80,0"});
    const auto quadrantDiffers = [&](int column, int row) {
        for (int y = 10; y < 230; ++y)
            for (int x = 10; x < 310; ++x)
                if (a.pixel(320 * column + x, 240 * row + y)[0] !=
                    b.pixel(320 * column + x, 240 * row + y)[0])
                    return true;
        return false;
    };
    EXPECT_FALSE(quadrantDiffers(0, 0));
    EXPECT_TRUE(quadrantDiffers(1, 0));
    EXPECT_FALSE(quadrantDiffers(0, 1));
    EXPECT_FALSE(quadrantDiffers(1, 1));
}

TEST_F(LayoutCliTest, BadOptionsAreRefusedByName)
{
    expectRefused({"--view", "360", "--ptz", "0,60"}, "--ptz: '0,60' is not pan,tilt,zoom");
    expectRefused({"--view", "360", "--ptz", "0,60,0", "--ptz", "0,60,0", "--ptz", "0,60,0"},
                  "--ptz: given 3 times");
    expectRefused({"--view", "quad", "--ptz", "0,60,0", "--ptz", "0,-60,0"}, "--ptz 2, tilt");
    expectRefused({"--view", "quad", "--pan", "0"}, "--pan");
    expectRefused({"--ptz", "0,60,0", "--zoom", "5"}, "--zoom");
    expectRefused({"--pano-offset", "5"}, "--pano-offset");
    expectRefused({"--view", "180", "--pano-offset", "5.5"}, "--pano-offset");
    expectRefused({"--view", "quad", "--size", "321x241", "--exact-size"}, "--size");
    expectRefused({"--pan-sweep", "90"}, "--frames");
    expectRefused({"--frames", "9"}, "--pan-sweep");
}

TEST_F(LayoutCliTest, NotesTellWhatWasChanged)
{
    const ToolRun run = render({"--view", "180", "--size", "319x241", "--format", "rgb"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "lumofe: note: --size: --view 180 leaves gaps at 319x241 from this input; using "
              "320x240 (--exact-size insists)\n"
              "lumofe: note: --format: --view 180 garbles RGB; feeding NV12 (--exact-format "
              "insists)\n");
    EXPECT_EQ(run.out, render({"--view", "180", "--size", "320x240"}).out);
    const ToolRun exact = render({"--view", "180", "--size", "322x242", "--exact-size", "--format",
                                  "yv12", "--exact-format"});
    EXPECT_EQ(exact.err, "");
    EXPECT_EQ(decodeImage(exact.out, "output", {1, 1}).size, (Size{322, 242}));
}

TEST_F(LayoutCliTest, PanoOffsetAndNoUprightReachThePicture)
{
    const Image usual = picture({"--view", "180"});
    EXPECT_NE(picture({"--view", "180", "--pano-offset", "30"}).bytes, usual.bytes);
    EXPECT_NE(picture({"--view", "180", "--no-upright"}).bytes, usual.bytes);
    EXPECT_GT(test::psnr(picture({"--view", "180", "--pano-offset", "360"}), usual), 40);
}

// Every frame must be like the still that it is made from: also the later ones.
TEST_F(LayoutCliTest, VideosOfEveryLayoutAreLikeTheirStills)
{
    constexpr Size kSize{320, 240};
    for (const char* view : {"quad", "360", "180"}) {
        const ToolRun run =
            runTool({"render", "-", "-o", "-", "--view", view, "--size", "320x240"}, video(3));
        ASSERT_EQ(run.status, 0) << run.err;
        const std::string header = "YUV4MPEG2 W320 H240 F25:1 Ip A1:1 C420jpeg\n";
        constexpr std::size_t kFrame = 320 * 240 * 3 / 2;
        ASSERT_EQ(run.out.size(), header.size() + 3 * (6 + kFrame));
        for (int i = 0; i < 3; ++i) {
            const auto begin =
                run.out.begin() + std::ptrdiff_t(header.size() + std::size_t(i) * (6 + kFrame) + 6);
            Frame420 frame(kSize);
            std::copy_n(begin, kFrame, frame.bytes.begin());
            test::writePng(still(), toImage(videoFrame(i)));
            // The still went through RGB once more.
            EXPECT_GT(test::psnr(toImage(frame), picture({"--view", view, "--size", "320x240"})),
                      40)
                << view << i;
        }
    }
}

TEST_F(LayoutCliTest, TimeAndVerboseWorkInEveryLayout)
{
    for (const char* view : {"quad", "360", "180"}) {
        const ToolRun run = render({"--view", view, "--time", "2", "--verbose"});
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.err.find("median of 2 frames: "), std::string::npos) << view;
        EXPECT_NO_THROW(decodeImage(run.out, "output")) << view;
    }
}

TEST_F(LayoutCliTest, PanSweepIsAVideoOfTheStills)
{
    const ToolRun run =
        render({"--pan-sweep", "-90", "--frames", "3", "--pan", "45", "--size", "320x240"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string header = "YUV4MPEG2 W320 H240 F25:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL\n";
    constexpr std::size_t kFrame = 320 * 240 * 3 / 2;
    ASSERT_EQ(run.out.size(), header.size() + 3 * (6 + kFrame));
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string pan = std::to_string(45 - 30 * int(i));
        const std::string name = file("one" + pan + ".y4m");
        ASSERT_EQ(
            runTool({"render", still(), "-o", name, "--pan", pan, "--size", "320x240"}).status, 0);
        const Bytes one = test::readFile(name);
        const auto frame = run.out.begin() + std::ptrdiff_t(header.size() + i * (6 + kFrame) + 6);

        Frame420 swept({320, 240}), single({320, 240});
        std::copy_n(frame, kFrame, swept.bytes.begin());
        std::copy_n(one.end() - std::ptrdiff_t(kFrame), kFrame, single.bytes.begin());
        // The single one went through RGB.
        EXPECT_GT(test::psnr(toImage(swept), toImage(single)), 40) << i;
    }
}

TEST_F(LayoutCliTest, PanSweepNeedsAStillAndAVideoOutput)
{
    const ToolRun toStill =
        runTool({"render", still(), "-o", file("o.png"), "--pan-sweep", "90", "--frames", "3"});
    EXPECT_EQ(toStill.status, 2);
    EXPECT_NE(toStill.err.find("o.png"), std::string::npos);
    const ToolRun ofVideo =
        runTool({"render", "-", "-o", "-", "--pan-sweep", "90", "--frames", "3"}, video(1));
    EXPECT_EQ(ofVideo.status, 2);
    EXPECT_NE(ofVideo.err.find("--pan-sweep"), std::string::npos);
    EXPECT_EQ(folder_.contents(), Names{"still.png"});
}

TEST_F(LayoutCliTest, SheetShowsThePictures)
{
    const ToolRun run = runTool({"sheet", "-", "--columns", "2", "--caption", "one", "--caption",
                                 "two", "--width", "64", still(), still()});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(decodeImage(run.out, "sheet", {1, 1}).size, (Size{164, 112}));
    EXPECT_EQ(runTool({"sheet", file("s.png"), still(), "--columns", "0"}).status, 2);
    EXPECT_EQ(runTool({"sheet", file("s.png")}).status, 2);
}

} // namespace
} // namespace lumofe
