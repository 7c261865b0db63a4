#include "Recorder.h"

#include "VideoTestSupport.h"
#include "ViewerRun.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

constexpr Size kSize{64, 48};

VideoFormat smallFormat()
{
    VideoFormat format;
    format.size = kSize;
    format.chroma = Chroma::pairs;
    format.tags = " F25:1 Ip A1:1 C420jpeg";
    return format;
}

Frame grey(std::uint8_t luma)
{
    Frame frame(smallFormat().frameBytes(), 128);
    std::fill_n(frame.begin(), Frame420::lumaBytes(kSize), luma);
    return frame;
}

// Lossless, so that frames can be compared.
FfmpegOptions lossless()
{
    FfmpegOptions options;
    options.encode = {"-c:v", "ffv1", "-f", "matroska"};
    return options;
}

// The first pixel of each frame.
Bytes lumaOf(const std::string& path)
{
    const Bytes frames = framesOf(path);
    Bytes luma;
    for (std::size_t i = 0; i < frames.size(); i += smallFormat().frameBytes())
        luma.push_back(frames[i]);
    return luma;
}

} // namespace

TEST(Recorder, WritesEachPictureAsOftenAsItWasShown)
{
    const ScratchFolder folder;
    const std::string path = folder.file("a.mp4");
    {
        Recorder recorder(lossless(), path, smallFormat());
        recorder.record(grey(50), 1);
        recorder.record(grey(100), 3);
        recorder.record(grey(150), 2);
    }
    EXPECT_EQ(lumaOf(path), (Bytes{50, 100, 100, 100, 150, 150}));
    EXPECT_EQ(folder.contents(), std::vector<std::string>{"a.mp4"});
}

TEST(Recorder, MakesPlayableMp4ByDefault)
{
    const ScratchFolder folder;
    const std::string path = folder.file("a.mp4");
    Recorder recorder({}, path, smallFormat());
    recorder.record(grey(50), 10);
    recorder.stop();
    ASSERT_TRUE(eventually([&] { return recorder.finished(); }));
    EXPECT_EQ(recorder.failure(), "");
    EXPECT_EQ(streamsOf(path, "codec_name,width,height,nb_frames,r_frame_rate"),
              "h264,64,48,25/1,10\n");
}

TEST(Recorder, NeverWaitsAndKeepsTheTimeWhenTheEncoderIsLate)
{
    const ScratchFolder folder;
    const std::string path = folder.file("a.mp4");
    {
        Recorder recorder(lossless(), path, smallFormat());
        for (int i = 0; i < 1000; ++i)
            recorder.record(grey(std::uint8_t(i % 200)), 1);
    }
    EXPECT_EQ(lumaOf(path).size(), 1000u);
}

TEST(Recorder, AFailureLeavesNoFile)
{
    const ScratchFolder folder;
    const std::string path = folder.file("a.mp4");
    writeFile(path, {}); // the name that was taken for it
    FfmpegOptions options;
    options.encode = {"-c:v", "no_such_codec"};
    Recorder recorder(options, path, smallFormat());
    recorder.record(grey(50), 1);
    ASSERT_TRUE(eventually([&] { return recorder.finished() || (recorder.stop(), false); }));
    EXPECT_NE(recorder.failure().find("ffmpeg cannot encode it"), std::string::npos);
    EXPECT_TRUE(folder.contents().empty());
}
