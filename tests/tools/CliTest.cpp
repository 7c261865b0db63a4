// Runs the built tool as a person or script does.
#include "ToolTestSupport.h"
#include "media/ImageFile.h"
#include "media/Pixels.h"

#include <LumoFESDK.h>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::runTool;
using test::ToolRun;
using Names = std::vector<std::string>;

// A Y4M video of the ceiling scene, cut to 640 x 480 around its middle, each frame a bit brighter.
constexpr Size kVideoSize{640, 480};

Frame420 videoFrame(int number)
{
    Image image(kVideoSize);
    for (int y = 0; y < kVideoSize.height; ++y)
        for (int x = 0; x < kVideoSize.width; ++x)
            for (int c = 0; c < 3; ++c)
                image.pixel(x, y)[c] = std::uint8_t(
                    test::scene(Mount::ceiling).pixel(x + 320, y + 400)[c] / 2 + 20 * number);
    return toFrame420(image);
}

Bytes video(int frames, const std::string& tags = " F25:1 Ip A1:1 C420mpeg2 XYSCSS=420MPEG2")
{
    Bytes all = bytesOf("YUV4MPEG2 W640 H480" + tags + "\n");
    for (int i = 0; i < frames; ++i) {
        const Bytes header = bytesOf("FRAME\n"), frame = videoFrame(i).bytes;
        all.insert(all.end(), header.begin(), header.end());
        all.insert(all.end(), frame.begin(), frame.end());
    }
    return all;
}

class CliTest : public testing::Test {
protected:
    CliTest() { test::writePng(still(), test::gradient({400, 300})); }

    std::string still() const { return folder_.file("still.png"); }
    std::string file(const std::string& name) const { return folder_.file(name); }

    // Expects a one-line error that contains each of the words, and no file but the inputs.
    void expectRefused(std::vector<std::string> arguments, const std::vector<std::string>& words,
                       const Bytes& input = {})
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const Names before = folder_.contents();
        const ToolRun run = runTool(arguments, input);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err.rfind("lumofe: ", 0), 0u) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        for (const std::string& word : words)
            EXPECT_NE(run.err.find(word), std::string::npos) << run.err;
        EXPECT_EQ(folder_.contents(), before);
    }

    void expectOptionRefused(const Names& option, const std::vector<std::string>& words)
    {
        Names arguments{"render", still(), "-o", file("out.png")};
        arguments.insert(arguments.end(), option.begin(), option.end());
        expectRefused(arguments, words);
    }

    test::ScratchFolder folder_;
};

TEST_F(CliTest, VersionIsThatOfTheHeader)
{
    const ToolRun run = runTool({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, bytesOf("lumofe " + std::to_string(LUMOFESDK_VERSION_MAJOR) + "." +
                               std::to_string(LUMOFESDK_VERSION_MINOR) + "." +
                               std::to_string(LUMOFESDK_VERSION_PATCH) + "\n"));
}

TEST_F(CliTest, HelpNamesEveryOption)
{
    const ToolRun run = runTool({"render", "--help"});
    EXPECT_EQ(run.status, 0);
    const std::string text(run.out.begin(), run.out.end());
    for (const char* option : {"--output", "--view", "--mount", "--circle", "--size", "--pan",
                               "--tilt", "--zoom", "--format", "--time", "--verbose"})
        EXPECT_NE(text.find(option), std::string::npos) << option;
}

TEST_F(CliTest, BadOptionsAreRefusedByName)
{
    expectOptionRefused({"--pan", "400"}, {"--pan", "-360 to 360"});
    expectOptionRefused({"--pan", "north"}, {"--pan"});
    expectOptionRefused({"--tilt", "-5"}, {"--tilt", "0 to 90"});
    expectOptionRefused({"--tilt", "5", "--mount", "floor"}, {"--tilt", "-90 to 0"});
    expectOptionRefused({"--zoom", "101"}, {"--zoom", "0 to 100"});
    expectOptionRefused({"--zoom", "nan"}, {"--zoom"});
    expectOptionRefused({"--mount", "roof"}, {"--mount", "ceiling, wall, floor"});
    expectOptionRefused({"--view", "quadd"}, {"--view", "single, quad, 360, 180"});
    expectOptionRefused({"--format", "yuyv"}, {"--format", "nv12, yv12, rgb"});
    expectOptionRefused({"--size", "800"}, {"--size", "800x600"});
    expectOptionRefused({"--size", "401x300"}, {"--size", "even"});
    expectOptionRefused({"--size", "400x301", "--format", "yv12"}, {"--size", "even"});
    expectOptionRefused({"--circle", "200,150"}, {"--circle", "cx,cy,r"});
    expectOptionRefused({"--circle", "400,150,100"}, {"--circle", "400x300"});
    expectOptionRefused({"--time", "0"}, {"--time"});
    expectOptionRefused({"--nonsense"}, {"--nonsense"});
}

TEST_F(CliTest, MissingArgumentsAreRefused)
{
    expectRefused({}, {"--help"});
    expectRefused({"render"}, {"INPUT"});
    expectRefused({"render", still()}, {"--output"});
    expectRefused({"scene"}, {"OUT"});
    expectRefused({"dance"}, {"subcommand"});
    // Each error leads to the help of the command that was given.
    EXPECT_NE(runTool({"render", "--pan", "abc"}).err.find("; see lumofe render --help"),
              std::string::npos);
    EXPECT_NE(runTool({"preset", "list"}).err.find("; see lumofe preset list --help"),
              std::string::npos);
    EXPECT_NE(runTool({}).err.find("; see lumofe --help"), std::string::npos);
}

TEST_F(CliTest, BadFilesAreRefusedByName)
{
    const std::string out = file("out.png");
    expectRefused({"render", file("none.png"), "-o", out}, {file("none.png"), "cannot be opened"});
    expectRefused({"render", still(), "-o", file("out.gif")}, {"out.gif", ".png"});
    expectRefused({"render", still(), "-o", file("none/out.png")}, {"none/out.png"});
    expectRefused({"render", "-", "-o", out}, {"standard input", "empty"});
    expectRefused({"render", "-", "-o", out}, {"standard input", "YUV4MPEG2"}, bytesOf("text"));

    test::writePng(file("small.png"), Image({300, 240}));
    expectRefused({"render", file("small.png"), "-o", out}, {"small.png", "scale it first"});
    test::writePng(file("large.png"), Image({4098, 240}));
    expectRefused({"render", file("large.png"), "-o", out}, {"large.png", "scale it first"});
}

TEST_F(CliTest, BadVideosLeaveNothingBehind)
{
    Bytes cut = video(3);
    cut.erase(cut.end() - 1000, cut.end());
    const Names toFile{"render", "-", "-o", file("out.y4m")};
    expectRefused(toFile, {"middle of a frame"}, cut);
    expectRefused(toFile, {"no frames"}, video(0));
    expectRefused(toFile, {"C422"}, video(1, " C422"));
    expectRefused(toFile, {"scale it first"}, bytesOf("YUV4MPEG2 W99999 H99999\nFRAME\n"));
    expectRefused({"render", "-", "-o", file("out.png")}, {"out.png", ".y4m"}, video(1));
    expectRefused({"render", "-", "-o", file("out.y4m"), "--time", "3"}, {"--time"}, video(1));
    expectRefused({"render", "-", "-o", file("out.y4m"), "--format", "rgb", "--size", "401x300"},
                  {"--size"}, video(1));
}

TEST_F(CliTest, PipedVideoIsCleanAndComplete)
{
    for (const char* format : {"nv12", "yv12", "rgb"}) {
        const ToolRun run = runTool({"render", "-", "-o", "-", "--size", "320x240", "--format",
                                     format, "--circle", "320,240,640"},
                                    video(3));
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        const Bytes header =
            bytesOf("YUV4MPEG2 W320 H240 F25:1 Ip A1:1 C420mpeg2 XYSCSS=420MPEG2\n");
        constexpr std::size_t kOutBytes = 320 * 240 * 3 / 2;
        ASSERT_EQ(run.out.size(), header.size() + 3 * (6 + kOutBytes));
        EXPECT_TRUE(std::equal(header.begin(), header.end(), run.out.begin()));
        double before = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto frame =
                run.out.begin() + std::ptrdiff_t(header.size() + i * (6 + kOutBytes));
            EXPECT_EQ(Bytes(frame, frame + 6), bytesOf("FRAME\n"));
            double sum = 0;
            for (int k = 0; k < 320 * 240; ++k)
                sum += frame[6 + k];
            // Each frame is its own picture, 20 brighter than the one before.
            if (i > 0) {
                EXPECT_NEAR((sum - before) / (320 * 240), 20, 1);
            }
            before = sum;
        }
    }
}

TEST_F(CliTest, LinesOfTheLibraryGoToStandardErrorOnRequest)
{
    const Names quiet{"render", still(), "-o", "-"};
    const Names verbose{"render", still(), "-o", "-", "--verbose"};
    const ToolRun a = runTool(quiet), b = runTool(verbose);
    EXPECT_EQ(a.err, "");
    EXPECT_NE(b.err.find("Fisheye_calibration_Init_byArea"), std::string::npos);
    EXPECT_EQ(a.out, b.out);
}

TEST_F(CliTest, StillsComeOutInTheDefaultSizeAndTheNamedKind)
{
    const struct {
        const char* name;
        Bytes magic;
    } kCases[] = {{"o.png", {0x89, 'P', 'N', 'G'}}, {"o.jpg", {0xFF, 0xD8}}, {"o.bmp", {'B', 'M'}}};
    for (const auto& c : kCases) {
        ASSERT_EQ(runTool({"render", still(), "-o", file(c.name)}).status, 0);
        const Bytes bytes = test::readFile(file(c.name));
        EXPECT_TRUE(std::equal(c.magic.begin(), c.magic.end(), bytes.begin())) << c.name;
        EXPECT_EQ(decodeImage(bytes, c.name).size, (Size{400, 300})) << c.name;
    }
    EXPECT_EQ(folder_.contents(), (Names{"o.bmp", "o.jpg", "o.png", "still.png"}));
}

TEST_F(CliTest, StillFromStandardInputBecomesAPngOnStandardOutput)
{
    const ToolRun run = runTool({"render", "-", "-o", "-"}, test::readFile(still()));
    ASSERT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(runTool({"render", still(), "-o", file("o.png")}).status, 0);
    EXPECT_EQ(run.out, test::readFile(file("o.png")));
}

TEST_F(CliTest, WorksWithoutStandardOutput)
{
    const auto run = [this](const std::string& output) {
        return runTool({"render", still(), "-o", output}, {}, test::StandardOutput::closed);
    };
    EXPECT_EQ(run(file("o.png")).status, 0);
    EXPECT_EQ(decodeImage(test::readFile(file("o.png")), "o.png").size, (Size{400, 300}));
    EXPECT_EQ(run("-").status, 2);
}

TEST_F(CliTest, StillBecomesAVideoOfOneFrame)
{
    ASSERT_EQ(runTool({"render", still(), "-o", file("o.y4m")}).status, 0);
    const Bytes bytes = test::readFile(file("o.y4m"));
    const std::string header =
        "YUV4MPEG2 W400 H300 F25:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL\nFRAME\n";
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + std::ptrdiff_t(header.size())), header);
    EXPECT_EQ(bytes.size(), header.size() + 400 * 300 * 3 / 2);
}

TEST_F(CliTest, OddInputsAreCropped)
{
    test::writePng(file("odd.png"), test::gradient({401, 301}));
    for (const char* format : {"nv12", "rgb"}) {
        const ToolRun run = runTool({"render", file("odd.png"), "-o", "-", "--format", format});
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(decodeImage(run.out, "out").size, (Size{400, 300}));
    }
}

TEST_F(CliTest, OddRgbStillsKeepTheirSize)
{
    const ToolRun run =
        runTool({"render", still(), "-o", "-", "--format", "rgb", "--size", "399x299"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(decodeImage(run.out, "out").size, (Size{399, 299}));
}

TEST_F(CliTest, TimingPrintsTheMedian)
{
    const ToolRun run = runTool({"render", still(), "-o", file("o.png"), "--time", "5"});
    EXPECT_EQ(run.status, 0);
    double milliseconds = 0;
    ASSERT_EQ(std::sscanf(run.err.c_str(), "median of 5 frames: %lf ms", &milliseconds), 1)
        << run.err;
    EXPECT_GT(milliseconds, 0);
    EXPECT_LT(milliseconds, 10000);
}

TEST_F(CliTest, SceneIsRenderedAndCanBeDewarped)
{
    ASSERT_EQ(runTool({"scene", file("s.png"), "--size", "320", "--mount", "wall"}).status, 0);
    const Image scene = decodeImage(test::readFile(file("s.png")), "s.png");
    EXPECT_EQ(scene.size, (Size{320, 320}));
    EXPECT_EQ(scene.pixel(0, 0)[0], 0);
    EXPECT_GT(scene.pixel(160, 60)[1], 100); // the ceiling
    EXPECT_EQ(runTool({"render", file("s.png"), "-o", file("v.png"), "--mount", "wall"}).status, 0);

    expectRefused({"scene", file("o.png"), "--size", "319"}, {"--size", "320 to 4096"});
    expectRefused({"scene", file("o.png"), "--size", "5000"}, {"--size", "320 to 4096"});
    expectRefused({"scene", file("o.y4m")}, {"o.y4m", ".png"});
    expectRefused({"scene", file("o.png"), "--mount", "roof"}, {"--mount"});
}

} // namespace
} // namespace lumofe
