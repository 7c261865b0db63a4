// Renders real videos with the built tool.
#include "RenderPlan.h"
#include "VideoTestSupport.h"
#include "video/ChildProcess.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <thread>

namespace lumofe {
namespace {

using test::Bytes;
using test::framesOf;
using test::runTool;
using test::streamsOf;
using test::ToolRun;
using Names = std::vector<std::string>;

constexpr Size kSize{320, 320};
const Names kLossless{"--encode", "-c:v ffv1"};

class VideoCliTest : public testing::Test {
protected:
    std::string file(const std::string& name) const { return folder_.file(name); }

    std::string clip(int frames = 10, const std::string& more = {})
    {
        test::makeClip(file("in.mkv"), frames, more);
        return file("in.mkv");
    }

    // What the library makes of the frames that ffmpeg decodes.
    static Bytes dewarped(const Bytes& frames, const RenderOptions& options)
    {
        Dewarper dewarper(planFor(options, kSize, true).setup);
        dewarper.aim(aimsFor(options));
        Bytes all(frames.size() / dewarper.inputBytes() * dewarper.outputBytes());
        for (std::size_t i = 0; i * dewarper.inputBytes() < frames.size(); ++i)
            dewarper.dewarp(frames.data() + i * dewarper.inputBytes(),
                            all.data() + i * dewarper.outputBytes());
        return all;
    }

    static Names joined(Names words, const Names& more)
    {
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    // Expects an error of one line with these words, and no new file.
    void expectRefused(const Names& arguments, const Names& words)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const Names before = folder_.contents();
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        for (const std::string& word : words)
            EXPECT_NE(run.err.find(word), std::string::npos) << run.err;
        EXPECT_EQ(folder_.contents(), before);
    }

    // Starts the tool, signals it when the output holds something, and returns its exit status.
    int interrupted(const Names& arguments, int signal, int times, std::string& err)
    {
        ChildProcess tool(joined({LUMOFE_TOOL}, arguments), {});
        const auto grown = [this] {
            for (const std::string& name : folder_.contents())
                if (name.starts_with("out.") && name != "out.mkv" &&
                    std::filesystem::file_size(file(name)) > 100'000)
                    return true;
            return false;
        };
        for (int i = 0; i < 2000 && !grown(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        for (int i = 0; i < times; ++i)
            tool.signal(signal);
        const int status = tool.wait(20'000);
        err = tool.log();
        return status;
    }

    test::ScratchFolder folder_;
};

TEST_F(VideoCliTest, FramesAreThoseOfTheLibrary)
{
    const std::string input = clip();
    for (View view : {View::single, View::quad, View::ptz360, View::half180}) {
        RenderOptions options;
        options.view = view;
        const std::string name = layoutRule(view).name, output = file(name + ".mkv");
        const ToolRun run =
            runTool(joined({"render", input, "-o", output, "--view", name}, kLossless));
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(framesOf(output), dewarped(framesOf(input), options)) << name;
    }
}

TEST_F(VideoCliTest, RateShapeAndColoursAreKept)
{
    const std::string input = clip(3, "-vf setsar=641/481:max=1000 -color_range tv "
                                      "-colorspace bt709 -color_primaries bt709 -color_trc bt709");
    ASSERT_EQ(runTool({"render", input, "-o", file("o.mp4")}).status, 0);
    const std::string entries =
        "codec_name,r_frame_rate,sample_aspect_ratio,color_range,color_space,color_primaries,"
        "color_transfer,pix_fmt";
    EXPECT_EQ(streamsOf(file("o.mp4"), entries),
              "h264,641:481,yuv420p,tv,bt709,bt709,bt709,30000/1001\n");
}

TEST_F(VideoCliTest, SoundIsCopied)
{
    test::outputOf("ffmpeg -v error -f lavfi -i testsrc2=s=320x320:r=25 -f lavfi -i sine -t 1 "
                   "-c:v mpeg4 -c:a aac " +
                   file("in.mp4"));
    const Names render{"render", file("in.mp4"), "--size", "320x240", "-o"};
    ASSERT_EQ(runTool(joined(render, {file("o.mp4")})).status, 0);
    EXPECT_EQ(streamsOf(file("o.mp4"), "codec_name,nb_frames"),
              "h264,25\n" + streamsOf(file("in.mp4"), "codec_name,nb_frames").substr(9));
    const std::string packets = " -map 0:a -c copy -f framemd5 -";
    EXPECT_EQ(test::outputOf("ffmpeg -v error -i " + file("o.mp4") + packets),
              test::outputOf("ffmpeg -v error -i " + file("in.mp4") + packets));

    ASSERT_EQ(runTool(joined(render, {file("p.mp4"), "--encode", "-an"})).status, 0);
    EXPECT_EQ(streamsOf(file("p.mp4"), "codec_type"), "video\n");
}

TEST_F(VideoCliTest, OddFramesAreCropped)
{
    test::outputOf("ffmpeg -v error -f lavfi -i testsrc=s=321x325 -frames:v 2 -pix_fmt yuv444p "
                   "-c:v ffv1 " +
                   file("odd.mkv"));
    ASSERT_EQ(runTool(joined({"render", file("odd.mkv"), "-o", file("o.mkv"), "--size", "320x240"},
                             kLossless))
                  .status,
              0);
    EXPECT_EQ(framesOf(file("o.mkv")).size(), 2u * 320 * 240 * 3 / 2);
}

TEST_F(VideoCliTest, Y4mAndStillsAreEncodedToo)
{
    test::writePng(file("still.png"), test::gradient(kSize));
    const Names sweep{"render", file("still.png"), "--pan-sweep", "30", "--frames", "4"};
    ASSERT_EQ(runTool(joined(sweep, {"-o", file("o.y4m")})).status, 0);
    ASSERT_EQ(runTool(joined(joined(sweep, {"-o", file("o.mkv")}), kLossless)).status, 0);
    EXPECT_EQ(framesOf(file("o.mkv")), framesOf(file("o.y4m")));
    EXPECT_EQ(streamsOf(file("o.mkv"), "r_frame_rate,color_range"), "pc,25/1\n");

    ASSERT_EQ(runTool(joined({"render", file("o.y4m"), "-o", file("p.mkv"), "--size", "160x120"},
                             kLossless))
                  .status,
              0);
    EXPECT_EQ(framesOf(file("p.mkv")).size(), 4u * 160 * 120 * 3 / 2);

    test::makeClip(file("in.mkv"), 3);
    ASSERT_EQ(runTool({"render", file("in.mkv"), "-o", file("q.y4m")}).status, 0);
    ASSERT_EQ(runTool(joined({"render", file("in.mkv"), "-o", file("q.mkv")}, kLossless)).status,
              0);
    EXPECT_EQ(framesOf(file("q.mkv")), framesOf(file("q.y4m")));
    EXPECT_EQ(streamsOf(file("q.y4m"), "r_frame_rate"), "30000/1001\n");
}

TEST_F(VideoCliTest, StandardOutputTakesY4mOrWhatEncodeSays)
{
    const std::string input = clip(2);
    const ToolRun plain = runTool({"render", input, "-o", "-"});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(std::string(plain.out.begin(), plain.out.begin() + 9), "YUV4MPEG2");
    const ToolRun encoded = runTool({"render", input, "-o", "-", "--encode", "-c:v ffv1 -f nut"});
    EXPECT_EQ(encoded.status, 0) << encoded.err;
    EXPECT_EQ(std::string(encoded.out.begin(), encoded.out.begin() + 3), "nut");
}

TEST_F(VideoCliTest, SeparateViewsAreFilesOfTheirOwn)
{
    const std::string input = clip(4);
    const ToolRun run =
        runTool(joined({"render", input, "-o", file("o.mkv"), "--view", "quad", "--views",
                        "separate", "--ptz", "0,70,0", "--ptz", "90,60,25"},
                       kLossless));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(folder_.contents(), (Names{"in.mkv", "o-1.mkv", "o-2.mkv", "o-3.mkv", "o-4.mkv"}));
    RenderOptions second;
    second.ptz = {{90 - 22.5, 60, 25}};
    EXPECT_EQ(framesOf(file("o-2.mkv")), dewarped(framesOf(input), second));
    expectRefused({"render", input, "-o", file("o.mkv"), "--view", "quad", "--views", "separate"},
                  {"o-1.mkv", "exists already"});
}

TEST_F(VideoCliTest, ExistingFilesAreReplacedByForceOnly)
{
    const std::string input = clip(2);
    test::writeFile(file("o.mkv"), test::bytesOf("old"));
    expectRefused({"render", input, "-o", file("o.mkv")}, {"o.mkv", "exists already", "--force"});
    EXPECT_EQ(test::readFile(file("o.mkv")), test::bytesOf("old"));
    ASSERT_EQ(runTool({"render", input, "-o", file("o.mkv"), "--force"}).status, 0);
    EXPECT_FALSE(framesOf(file("o.mkv")).empty());
    EXPECT_EQ(folder_.contents(), (Names{"in.mkv", "o.mkv"}));
}

TEST_F(VideoCliTest, WhatCannotBeReadOrWrittenIsTold)
{
    const std::string input = clip(2), out = file("o.mp4");
    expectRefused({"render", file("none.mp4"), "-o", out}, {"none.mp4: cannot be opened"});
    expectRefused({"render", input, "-o", out, "--ffmpeg", "/none/ffmpeg"},
                  {"/none/ffmpeg: cannot be run", "--ffmpeg"});
    expectRefused({"render", input, "-o", file("o.png")}, {"o.png", "is a video", ".mp4"});
    expectRefused({"render", input, "-o", out, "--encode", "-c:v nosuch"},
                  {out, "Unknown encoder 'nosuch'", "--encode"});
    expectRefused({"render", input, "-o", out, "--format", "rgb"}, {"--format"});
    expectRefused({"render", "rtsp://127.0.0.1:9/x", "-o", out}, {"Connection refused"});
    expectRefused({"render", "nosuch://x", "-o", out}, {"nosuch://x: ffmpeg finds no video"});

    test::writeFile(file("junk.mp4"), Bytes(5000, 'x'));
    expectRefused({"render", file("junk.mp4"), "-o", out}, {"junk.mp4", "Invalid data"});

    test::outputOf("ffmpeg -v error -f lavfi -i testsrc=s=128x96 -frames:v 1 " + file("s.mkv"));
    expectRefused({"render", file("s.mkv"), "-o", out}, {"s.mkv", "128x96", "scale it first"});
}

TEST_F(VideoCliTest, DamageInsideIsNoted)
{
    const std::string input = clip(8);
    Bytes bytes = test::readFile(input);
    for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + 3000; ++i)
        bytes[i] = std::uint8_t(i * 31);
    test::writeFile(file("damaged.mkv"), bytes);
    const ToolRun run = runTool(joined(
        {"render", file("damaged.mkv"), "-o", file("o.mkv"), "--size", "320x240"}, kLossless));
    EXPECT_NE(run.err.find("damaged.mkv: ffmpeg "), std::string::npos) << run.err;
    EXPECT_GT(framesOf(file("o.mkv")).size(), 0u);
}

TEST_F(VideoCliTest, InterruptedVideosAreComplete)
{
    for (int signal : {SIGINT, SIGTERM}) {
        std::string err;
        const int status = interrupted(joined({"render", "testsrc2=s=320x320:r=50", "--decode",
                                               "-re -f lavfi", "-o", file("out.mkv"), "--force"},
                                              kLossless),
                                       signal, 1, err);
        EXPECT_EQ(status, 130);
        int frames = 0;
        ASSERT_EQ(std::sscanf(err.c_str(), "lumofe: interrupted after %d", &frames), 1) << err;
        EXPECT_EQ(folder_.contents(), Names{"out.mkv"});
        EXPECT_EQ(framesOf(file("out.mkv")).size(), std::size_t(frames) * 320 * 240 * 3 / 2);
    }
}

TEST_F(VideoCliTest, SoundEndsWithAnInterruptedVideo)
{
    test::outputOf("ffmpeg -v error -f lavfi -i testsrc2=s=320x320:r=25 -f lavfi -i sine -t 60 "
                   "-c:v mpeg4 -c:a pcm_s16le " +
                   file("in.mkv"));
    std::string err;
    EXPECT_EQ(
        interrupted(
            joined({"render", file("in.mkv"), "--decode", "-re", "-o", file("out.mkv")}, kLossless),
            SIGINT, 1, err),
        130);
    ASSERT_EQ(streamsOf(file("out.mkv"), "codec_name"), "ffv1\npcm_s16le\n");
    const Bytes sound =
        test::outputOf("ffmpeg -v error -i " + file("out.mkv") + " -map 0:a -f s16le -");
    const double seconds = double(sound.size()) / 2 / 44100;
    const double shown = double(framesOf(file("out.mkv")).size()) / (320 * 240 * 3 / 2) / 25;
    EXPECT_GT(shown, 0);
    EXPECT_NEAR(seconds, shown, 1.5);
}

TEST_F(VideoCliTest, NoProgramOutlivesTheTool)
{
    std::string err;
    EXPECT_EQ(interrupted(joined({"render", "testsrc2=s=320x320:r=50", "--decode", "-re -f lavfi",
                                  "-o", file("out.mkv")},
                                 kLossless),
                          SIGKILL, 1, err),
              128 + SIGKILL);
    const auto running = [this] {
        for (const auto& process : std::filesystem::directory_iterator("/proc")) {
            const Bytes words = test::readFile((process.path() / "cmdline").string());
            const std::string folder = file("out.");
            if (std::search(words.begin(), words.end(), folder.begin(), folder.end()) !=
                words.end())
                return true;
        }
        return false;
    };
    for (int i = 0; i < 400 && running(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_FALSE(running());
}

TEST_F(VideoCliTest, SoundFollowsTheOptionsOfTheInput)
{
    test::outputOf("ffmpeg -v error -f lavfi -i testsrc2=s=320x320:r=25 -f lavfi -i sine -t 2 "
                   "-c:v mpeg4 -c:a pcm_s16le " +
                   file("in.mkv"));
    ASSERT_EQ(runTool(joined({"render", file("in.mkv"), "--decode", "-t 0.4", "-o", file("o.mkv")},
                             kLossless))
                  .status,
              0);
    const Bytes sound =
        test::outputOf("ffmpeg -v error -i " + file("o.mkv") + " -map 0:a -f s16le -");
    EXPECT_NEAR(double(sound.size()) / 2 / 44100, 0.4, 0.05);
    EXPECT_EQ(framesOf(file("o.mkv")).size(), 10u * 320 * 240 * 3 / 2);
}

TEST_F(VideoCliTest, StatsTellWhereTheTimeWent)
{
    const ToolRun run =
        runTool(joined({"render", clip(), "-o", file("o.mkv"), "--stats"}, kLossless));
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.err.rfind("10 frames in ", 0), 0u) << run.err;
    for (const char* word : {"dewarping", "waiting for decoding", "ffmpeg, encoding"})
        EXPECT_NE(run.err.find(word), std::string::npos) << run.err;
}

} // namespace
} // namespace lumofe
