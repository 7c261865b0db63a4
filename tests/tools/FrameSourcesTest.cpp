#include "video/FrameSources.h"

#include "ToolTestSupport.h"
#include "media/Pixels.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(FrameSources, StillsAreRepeated)
{
    const Image picture = test::gradient({321, 241});
    StillSource source(picture, 3);
    EXPECT_EQ(source.format().size, (Size{320, 240}));
    EXPECT_EQ(source.format().frames, 3);
    EXPECT_EQ(source.format().chroma, Chroma::planar);
    const test::Bytes expected = toFrame420(cropToEven(picture)).bytes;
    ASSERT_EQ(source.format().frameBytes(), expected.size());
    for (int i = 0; i < 3; ++i) {
        test::Bytes frame(expected.size());
        ASSERT_TRUE(receive(source, frame.data()));
        EXPECT_EQ(frame, expected);
    }
    test::Bytes frame(expected.size());
    EXPECT_FALSE(receive(source, frame.data()));
}

TEST(FrameSources, Y4mIsCroppedToAnEvenSize)
{
    const test::ScratchFolder folder;
    const Frame420 frame = toFrame420(test::gradient({321, 241}));
    test::Bytes file = test::bytesOf("YUV4MPEG2 W321 H241 F5:1 A1:1\nFRAME\n");
    file.insert(file.end(), frame.bytes.begin(), frame.bytes.end());
    test::writeFile(folder.file("a.y4m"), file);

    Y4mSource source((InputStream(folder.file("a.y4m"))));
    EXPECT_EQ(source.format().size, (Size{320, 240}));
    EXPECT_EQ(source.format().tags, " F5:1 A1:1");
    test::Bytes got(source.format().frameBytes());
    ASSERT_TRUE(receive(source, got.data()));
    EXPECT_EQ(got, cropToEven(frame).bytes);
    EXPECT_FALSE(receive(source, got.data()));
}

} // namespace
} // namespace lumofe
