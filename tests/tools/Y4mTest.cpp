#include "media/Y4m.h"

#include "Error.h"
#include "ToolTestSupport.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::errorOf;
using test::ScratchFolder;

constexpr std::size_t kFrameBytes = 320 * 240 * 3 / 2;

Frame420 numbered(Size size, int seed)
{
    Frame420 frame(size);
    for (std::size_t i = 0; i < frame.bytes.size(); ++i)
        frame.bytes[i] = std::uint8_t(i * 7 + std::size_t(seed));
    return frame;
}

// What a reader makes of a file with this content: the number of frames, or the message.
std::string readAll(const Bytes& content)
{
    const ScratchFolder folder;
    test::writeFile(folder.file("v.y4m"), content);
    int frames = 0;
    const std::string error = errorOf([&] {
        InputStream input(folder.file("v.y4m"));
        Y4mReader reader(input);
        Frame420 frame(reader.header().size);
        while (reader.read(frame))
            ++frames;
    });
    return error.empty() ? std::to_string(frames) : error;
}

Bytes video(const std::string& header, const std::string& frameHeader, std::size_t frameBytes)
{
    Bytes content = bytesOf(header + "\n" + frameHeader + "\n");
    content.resize(content.size() + frameBytes, 50);
    return content;
}

TEST(Y4m, WrittenVideoIsReadBackUnchanged)
{
    const ScratchFolder folder;
    const std::string path = folder.file("v.y4m");
    const Y4mHeader header{{322, 242}, " F30000:1001 It A4:3 C420mpeg2 XYSCSS=420MPEG2"};
    {
        OutputFile output(path, STDOUT_FILENO);
        Y4mWriter writer(output, header);
        for (int i = 0; i < 3; ++i)
            writer.write(numbered(header.size, i));
        output.commit();
    }
    InputStream input(path);
    EXPECT_TRUE(input.startsWith(kY4mMagic));
    Y4mReader reader(input);
    EXPECT_EQ(reader.header().size, header.size);
    EXPECT_EQ(reader.header().tags, header.tags);
    Frame420 frame(header.size);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(reader.read(frame));
        EXPECT_EQ(frame.bytes, numbered(header.size, i).bytes);
    }
    EXPECT_FALSE(reader.read(frame));
}

TEST(Y4m, EveryEightBit420VariantIsAccepted)
{
    for (const char* tags : {"", " C420", " C420jpeg", " C420mpeg2", " C420paldv"}) {
        const auto header = parseY4mHeader(std::string("YUV4MPEG2 W640 H480") + tags, "v");
        EXPECT_EQ(header.size, (Size{640, 480}));
        EXPECT_EQ(header.tags, tags);
    }
}

TEST(Y4m, OtherColourSpacesAreRefusedByName)
{
    for (const char* tag : {"C422", "C444", "Cmono", "C420p10", "C420jpeg2", "C", "C42"}) {
        const std::string error =
            errorOf([&] { parseY4mHeader(std::string("YUV4MPEG2 W640 H480 ") + tag, "v.y4m"); });
        EXPECT_NE(error.find(std::string("v.y4m: is ") + tag + ";"), std::string::npos) << tag;
    }
}

TEST(Y4m, BadHeadersAreRefused)
{
    for (const char* line :
         {"", "YUV4MPEG2", "YUV4MPEG", "YUV4MPEG22 W640 H480", "RIFF W640 H480", "YUV4MPEG2 W640",
          "YUV4MPEG2 H480", "YUV4MPEG2 W H", "YUV4MPEG2 W640x H480", "YUV4MPEG2 W-640 H480",
          "YUV4MPEG2 W0 H480", "YUV4MPEG2 W99999999999999999999 H480",
          "YUV4MPEG2 W2147483647 H2147483647", "YUV4MPEG2 W65536 H65536", "YUV4MPEG2 W318 H240",
          "YUV4MPEG2 W640 H4097", "YUV4MPEG2 W640.5 H480", "YUV4MPEG2 W 640 H 480"})
        EXPECT_EQ(errorOf([&] { parseY4mHeader(line, "v.y4m"); }).rfind("v.y4m: ", 0), 0u) << line;
}

TEST(Y4m, FrameParametersAreTolerated)
{
    EXPECT_EQ(readAll(video("YUV4MPEG2 W320 H240 F25:1", "FRAME", kFrameBytes)), "1");
    EXPECT_EQ(readAll(video("YUV4MPEG2 W320 H240 F25:1", "FRAME Ixyz XA=1", kFrameBytes)), "1");
    EXPECT_EQ(readAll(video("YUV4MPEG2  W320  H240 ", "FRAME", kFrameBytes)), "1");
}

TEST(Y4m, TruncationIsReported)
{
    const std::string header = "YUV4MPEG2 W320 H240";
    EXPECT_NE(readAll(video(header, "FRAME", kFrameBytes - 1)).find("middle of a frame"),
              std::string::npos);
    EXPECT_NE(readAll(video(header, "FRAME", 0)).find("middle of a frame"), std::string::npos);
    EXPECT_NE(readAll(bytesOf(header + "\nFRA")).find("ends inside"), std::string::npos);
    EXPECT_NE(readAll(bytesOf(header)).find("ends inside"), std::string::npos);
    EXPECT_EQ(readAll(bytesOf(header + "\n")), "0");
}

TEST(Y4m, DamageBetweenFramesIsReported)
{
    const std::string header = "YUV4MPEG2 W320 H240";
    EXPECT_NE(readAll(video(header, "FRAMES", kFrameBytes)).find("damaged"), std::string::npos);
    EXPECT_NE(readAll(video(header, "", kFrameBytes)).find("damaged"), std::string::npos);
    Bytes longer = video(header, "FRAME", kFrameBytes);
    longer.resize(longer.size() + 5000, 'x');
    EXPECT_NE(readAll(longer).find("longer than 1024"), std::string::npos);
}

TEST(Y4m, EndlessHeaderLineIsRefused)
{
    Bytes content = bytesOf("YUV4MPEG2 W320 H240 X");
    content.resize(1 << 20, 'x');
    EXPECT_NE(readAll(content).find("longer than 1024"), std::string::npos);
}

TEST(Y4m, FrameRateIsThatOfTheTags)
{
    EXPECT_EQ(frameRate(" Ip F30:1 A1:1"), 30);
    EXPECT_NEAR(frameRate(" F30000:1001"), 29.97, 0.001);
    EXPECT_EQ(frameRate(" F5:2"), 2.5);
    for (const char* none : {"", " Ip XFAST", " F", " F25", " F25:", " F0:0", " F25:0", " F0:1",
                             " F-25:1", " Fx:1", " F99999999999:1"})
        EXPECT_EQ(frameRate(none), 25) << none;
}

} // namespace
} // namespace lumofe
