#include "video/FfmpegLog.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

const std::string kFile =
    "[info] Input #0, matroska,webm, from 'file:a.mkv':\n"
    "[info]   Duration: 01:02:03.50, start: 0.000000, bitrate: 161 kb/s\n"
    "[info]   Stream #0:0: Video: h264 (High), yuv420p(tv, bt709, progressive), 640x480\n"
    "[info]   Stream #0:1: Audio: vorbis, 44100 Hz, mono, fltp\n"
    "[info] Output #1, rawvideo, to 'pipe:1':\n"
    "[info]   Stream #1:0: Video: rawvideo (NV12 / 0x3231564E), nv12(tv, bt709, progressive), "
    "640x480 [SAR 1:1 DAR 4:3], q=2-31\n";

std::string nv12(const std::string& colours)
{
    return "[info]   Stream #1:0: Video: rawvideo (NV12 / 0x3231564E), nv12" + colours +
           ", 640x480\n";
}

TEST(FfmpegLog, TellsDurationAndSound)
{
    EXPECT_EQ(durationOf(kFile), 3723.5);
    EXPECT_TRUE(hasAudio(kFile));
    const std::string live = "[info]   Duration: N/A, start: 1.4, bitrate: N/A\n";
    EXPECT_EQ(durationOf(live), 0);
    EXPECT_EQ(durationOf(""), 0);
    EXPECT_FALSE(hasAudio(live));
}

TEST(FfmpegLog, TellsColours)
{
    EXPECT_EQ(coloursOf(kFile), (Colours{"tv", "bt709", "bt709", "bt709"}));
    EXPECT_EQ(coloursOf(nv12("(tv, bt470bg/unknown/iec61966-2-1, progressive)")),
              (Colours{"tv", "bt470bg", "", "iec61966-2-1"}));
    EXPECT_EQ(coloursOf(nv12("(pc)")), (Colours{"pc", "", "", ""}));
    EXPECT_EQ(coloursOf(nv12("(top first)")), Colours{});
    EXPECT_EQ(coloursOf(nv12("(progressive)")), Colours{});
    EXPECT_EQ(coloursOf(nv12("")), Colours{});
    EXPECT_EQ(coloursOf("[info] nothing, nv12(tv"), Colours{});
    EXPECT_EQ(coloursOf(""), Colours{});
}

TEST(FfmpegLog, LastErrorIsTheOneThatExplains)
{
    const std::string log = "[h264 @ 0x1] [error] first\n"
                            "[webm @ 0x2] [fatal] Only VP8 fits\n"
                            "[warning] not an error\n"
                            "[error] Could not write header for output file #0 (x)\n"
                            "[error] Error initializing output stream 0:0 -- \n"
                            "[error] Conversion failed!\n";
    EXPECT_EQ(lastError(log), "Only VP8 fits");
    EXPECT_EQ(errorCount(log), 5);
    EXPECT_EQ(lastError(kFile), "");
    EXPECT_EQ(errorCount(kFile), 0);
}

} // namespace
} // namespace lumofe
