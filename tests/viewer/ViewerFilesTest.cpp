// Starts the viewer on a private X server: the files that it writes.
#include "LibraryOutput.h"
#include "VideoTestSupport.h"
#include "ViewerRun.h"
#include "media/ImageFile.h"

#include <csignal>
#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;
using Place = Window::Place;

namespace {

struct ViewerFilesTest : testing::Test {
    static void SetUpTestSuite() { desktop = new Desktop; }
    static void TearDownTestSuite() { delete std::exchange(desktop, nullptr); }
    static inline Desktop* desktop = nullptr;

    const LibraryOutput silence{LibraryOutput::Target::discard};
    const ScratchFolder input, folder;

    ViewerRun start(const std::string& path)
    {
        return ViewerRun(*desktop, {path, "--save-to", folder.file("")});
    }

    ViewerRun startStill()
    {
        writePng(input.file("hall.png"), smallScene());
        return start(input.file("hall.png"));
    }

    std::string saved(const std::string& name)
    {
        return (std::filesystem::path(folder.file("")) / name).string();
    }
};

} // namespace

TEST_F(ViewerFilesTest, SWritesPicturesUnderNewNames)
{
    writeFile(saved("lumofe-view-0001.png"), bytesOf("mine"));
    ViewerRun run = startStill();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    for (const char* name : {"lumofe-view-0002.png", "lumofe-view-0003.png"}) {
        desktop->press("s");
        EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"saved " + saved(name)}));
        EXPECT_GT(psnr(decodeImage(readFile(saved(name)), name), dewarped({})), 32) << name;
    }
    EXPECT_EQ(readFile(saved("lumofe-view-0001.png")), bytesOf("mine"));
}

TEST_F(ViewerFilesTest, AFolderThatCannotBeWrittenIsSaid)
{
    writePng(input.file("hall.png"), smallScene());
    const std::string gone = folder.file("gone");
    ViewerRun run(*desktop, {input.file("hall.png"), "--save-to", gone});
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    for (const auto& [key, extension] : {std::pair{"s", ".png"}, {"v", ".mp4"}}) {
        desktop->press(key);
        EXPECT_TRUE(run.comesToShow(
            Place::bottomLeft, {gone + "/lumofe-view-0001" + extension +
                                ": cannot be created (No such file or directory); choose a folder "
                                "with --save-to"}));
    }
}

TEST_F(ViewerFilesTest, VRecordsWhatIsShown)
{
    ViewerRun run = startStill();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    const std::string path = saved("lumofe-view-0001.mp4");
    desktop->press("v");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recording " + path + "; V stops"}));
    desktop->move(320, 200);
    desktop->turnWheel(3);
    const Image last = dewarped({.step = {0, 0, 6}});
    EXPECT_TRUE(run.comesToShow(last));
    desktop->press("v");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recorded " + path}));
    EXPECT_EQ(streamsOf(path, "codec_name,width,height,r_frame_rate"), "h264,640,480,25/1\n");

    const Bytes frames = framesOf(path);
    const std::size_t bytes = Frame420::lumaBytes(last.size) / 2 * 3;
    ASSERT_GE(frames.size(), 2 * bytes);
    EXPECT_EQ(frames.size() % bytes, 0u);
    EXPECT_EQ(folder.contents(), std::vector<std::string>{"lumofe-view-0001.mp4"});
}

TEST_F(ViewerFilesTest, ARecordingIsPlayableAfterQuitting)
{
    for (const char* how : {"key", "signal"}) {
        ViewerRun run = startStill();
        EXPECT_TRUE(run.comesToShow(dewarped({})));
        const std::string path =
            saved(std::string("lumofe-view-000") + (*how == 'k' ? "1" : "2") + ".mp4");
        desktop->press("v");
        EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recording " + path + "; V stops"}));
        if (*how == 'k')
            desktop->press("q");
        else
            run.signal(SIGTERM);
        EXPECT_EQ(run.wait(), 0) << how;
        EXPECT_GT(framesOf(path).size(), 0u) << how;
    }
    EXPECT_EQ(folder.contents().size(), 2u);
}

TEST_F(ViewerFilesTest, ARecordingThatFailsAtTheEndIsSaid)
{
    const std::string encoder = input.file("encoder.sh");
    writeFile(encoder,
              bytesOf("#!/bin/sh\ncat >/dev/null\necho '[error] no space left' >&2\nexit 1\n"));
    std::filesystem::permissions(encoder, std::filesystem::perms::owner_all);
    writePng(input.file("hall.png"), smallScene());
    ViewerRun run(*desktop,
                  {input.file("hall.png"), "--save-to", folder.file(""), "--ffmpeg", encoder});
    desktop->press("v");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft,
                                {"recording " + saved("lumofe-view-0001.mp4") + "; V stops"}));
    desktop->press("q");
    EXPECT_EQ(run.wait(), 2);
    EXPECT_TRUE(run.errors().starts_with("lumofe-view: ")) << run.errors();
    EXPECT_NE(run.errors().find("no space left"), std::string::npos) << run.errors();
    EXPECT_TRUE(folder.contents().empty());
}

TEST_F(ViewerFilesTest, AnotherSizeEndsTheRecording)
{
    ViewerRun run = startStill();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    const std::string path = saved("lumofe-view-0001.mp4");
    desktop->press("v");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recording " + path + "; V stops"}));
    desktop->press("4");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recorded " + path}));
    EXPECT_EQ(streamsOf(path, "width,height"), "640,480\n");
}

TEST_F(ViewerFilesTest, RecordsAVideoFrameByFrame)
{
    makeClip(input.file("clip.mkv"), 30);
    ViewerRun run = start(input.file("clip.mkv"));
    const std::string path = saved("lumofe-view-0001.mp4");
    desktop->press("v");
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"recording " + path + "; V stops"}));
    desktop->press("q");
    EXPECT_EQ(run.wait(), 0);
    EXPECT_EQ(streamsOf(path, "r_frame_rate"), "30000/1001\n");
    EXPECT_GT(framesOf(path).size(), 0u);
}
