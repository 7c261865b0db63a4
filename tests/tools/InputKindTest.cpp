#include "InputKind.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(InputKind, FollowsContentNameAndAddress)
{
    const test::ScratchFolder folder;
    test::writePng(folder.file("still.dat"), test::gradient({16, 16}));
    test::writeFile(folder.file("a.dat"), test::bytesOf("YUV4MPEG2 W1 H1"));
    test::writeFile(folder.file("b.dat"), test::bytesOf("\x1A\x45\xDF\xA3 and so on"));
    test::writeFile(folder.file("damaged.PNG"), test::bytesOf("\x1A\x45\xDF\xA3 and so on"));
    test::writeFile(folder.file("empty"), {});

    EXPECT_TRUE(needsFfmpeg(folder.file("b.dat"), {}));
    EXPECT_TRUE(needsFfmpeg("rtsp://camera/1", {}));
    EXPECT_TRUE(needsFfmpeg("/dev/video0", {}));
    for (const char* name : {"still.dat", "a.dat", "damaged.PNG", "empty", "none"})
        EXPECT_FALSE(needsFfmpeg(folder.file(name), {})) << name;
    EXPECT_FALSE(needsFfmpeg("-", {}));

    FfmpegOptions options;
    options.decode = {"-f", "lavfi"};
    EXPECT_TRUE(needsFfmpeg("testsrc", options));
    EXPECT_FALSE(needsFfmpeg("-", options));
}

TEST(InputKind, PicturesAreKnownByName)
{
    for (const char* name : {"a.png", "b/a.JPG", "a.jpeg", "a.Bmp"})
        EXPECT_TRUE(isPictureName(name)) << name;
    for (const char* name : {"a.gif", "png", "a.png/b", "a.y4m"})
        EXPECT_FALSE(isPictureName(name)) << name;
}

} // namespace
} // namespace lumofe
