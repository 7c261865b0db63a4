#include "Player.h"

#include "PictureFolder.h"
#include "VideoTestSupport.h"
#include "ViewerRun.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

constexpr Size kSmall{320, 320};

Frame nextFrame(Player& player)
{
    Frame frame;
    EXPECT_TRUE(eventually([&] { return player.take(frame); }));
    return frame;
}

// Frames of one grey each, from 1 on.
void writeY4m(const std::string& path, int frames)
{
    OutputFile file(path, -1);
    Y4mWriter writer(file, {kSmall, " F10:1 Ip A1:1 C420jpeg"});
    for (int i = 1; i <= frames; ++i) {
        Frame420 frame(kSmall);
        std::ranges::fill(frame.bytes, std::uint8_t(i));
        writer.write(frame);
    }
    file.commit();
}

void ignore() {}

} // namespace

TEST(Player, AFolderIsPlayedPictureByPictureAndRepeats)
{
    const ScratchFolder scratch;
    const std::string folder = scratch.file("stills");
    std::filesystem::create_directory(folder);
    const Image picture = gradient(kSmall);
    writePng(folder + "/a.png", picture);
    writePng(folder + "/b.png", Image(kSmall));
    Player player(folder, {});
    EXPECT_FALSE(player.still());
    EXPECT_FALSE(player.live());
    EXPECT_EQ(player.format().size, kSmall);
    player.start(ignore);
    const Frame first = nextFrame(player);
    for (int i = 1; i < FolderSource::kFramesEach; ++i)
        ASSERT_EQ(nextFrame(player), first) << i;
    for (int i = 0; i < FolderSource::kFramesEach; ++i)
        ASSERT_NE(nextFrame(player), first) << i;
    EXPECT_EQ(nextFrame(player), first);
}

TEST(Player, AStillIsOneFrame)
{
    const ScratchFolder folder;
    const Image picture = gradient(kSmall);
    writePng(folder.file("a.png"), picture);
    Player player(folder.file("a.png"), {});
    player.start(ignore);
    EXPECT_TRUE(player.still());
    EXPECT_FALSE(player.live());
    EXPECT_EQ(player.format().size, kSmall);
    EXPECT_EQ(player.format().chroma, Chroma::pairs);
    const Frame420 planar = toFrame420(picture);
    Frame expected(planar.bytes.size()), frame;
    interleaveChroma(planar.bytes.data(), expected.data(), kSmall);
    ASSERT_TRUE(player.take(frame));
    EXPECT_EQ(frame, expected);
    EXPECT_FALSE(player.take(frame));
}

TEST(Player, AVideoBeginsAnewAtItsEnd)
{
    const ScratchFolder folder;
    writeY4m(folder.file("a.y4m"), 3);
    Player player(folder.file("a.y4m"), {});
    player.start(ignore);
    EXPECT_FALSE(player.still());
    EXPECT_EQ(frameRate(player.format().tags), 10);
    for (int expected : {1, 2, 3, 1, 2, 3, 1})
        EXPECT_EQ(nextFrame(player).at(0), expected);
    EXPECT_EQ(player.takeEnding(), "");
}

TEST(Player, FramesAreThoseOfFfmpeg)
{
    const ScratchFolder folder;
    makeClip(folder.file("a.mkv"), 3);
    const Bytes expected = framesOf(folder.file("a.mkv"));
    Player player(folder.file("a.mkv"), {});
    player.start(ignore);
    Bytes seen;
    for (int i = 0; i < 3; ++i) {
        const Frame frame = nextFrame(player);
        seen.insert(seen.end(), frame.begin(), frame.end());
    }
    EXPECT_EQ(seen, expected);
    const Frame again = nextFrame(player);
    EXPECT_TRUE(std::equal(again.begin(), again.end(), expected.begin()));
}

TEST(Player, TellsWhyNoMoreFramesCome)
{
    const ScratchFolder folder;
    writeY4m(folder.file("a.y4m"), 2);
    Bytes cut = readFile(folder.file("a.y4m"));
    cut.resize(cut.size() - 100);
    writeFile(folder.file("a.y4m"), cut);
    std::atomic<int> notices = 0;
    Player player(folder.file("a.y4m"), {});
    player.start([&] { ++notices; });
    EXPECT_EQ(nextFrame(player).at(0), 1);
    EXPECT_TRUE(eventually([&] { return notices == 1; }));
    EXPECT_NE(player.takeEnding().find("a.y4m"), std::string::npos);
    EXPECT_EQ(player.takeEnding(), "");
}

TEST(Player, APipeIsPlayedOnce)
{
    const ScratchFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    writeY4m(folder.file("a.y4m"), 2);
    std::thread writer([&] { writeFile(pipe, readFile(folder.file("a.y4m"))); });
    Player player(pipe, {});
    player.start(ignore);
    EXPECT_EQ(nextFrame(player).at(0), 1);
    EXPECT_EQ(nextFrame(player).at(0), 2);
    writer.join();
    std::string ending;
    EXPECT_TRUE(eventually([&] { return !(ending = player.takeEnding()).empty(); }));
    EXPECT_EQ(ending, "the video is over");
}

TEST(Player, ItsEndDoesNotWaitForTheVideos)
{
    const ScratchFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    makeClip(folder.file("a.mkv"), 30);
    // A camera that goes silent after a second.
    const Bytes sent = readFile(folder.file("a.mkv"));
    const Descriptor kept(open(pipe.c_str(), O_RDWR));
    std::atomic<bool> silent = false;
    std::thread camera([&] {
        EXPECT_EQ(write(kept.number(), sent.data(), sent.size()), ssize_t(sent.size()));
        silent = true;
    });
    FfmpegOptions options;
    options.decode = {"-f", "matroska"};
    {
        Player player(pipe, options);
        player.start(ignore);
        Frame frame;
        EXPECT_TRUE(eventually([&] {
            player.take(frame);
            return silent.load();
        }));
        camera.join();
    }
}

TEST(Player, RefusesWhatCannotBeOpened)
{
    EXPECT_NE(errorOf([] { Player("/no/such.png", {}); }).find("/no/such.png"), std::string::npos);
}
