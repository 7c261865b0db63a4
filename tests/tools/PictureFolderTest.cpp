#include "PictureFolder.h"

#include "Error.h"
#include "ToolTestSupport.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

std::string stillsIn(const test::ScratchFolder& folder)
{
    std::filesystem::create_directory(folder.file("stills"));
    return folder.file("stills");
}

Image grey(Size size, std::uint8_t level)
{
    Image image(size);
    std::ranges::fill(image.bytes, level);
    return image;
}

TEST(PictureFolder, ShowsPicturesInTheOrderOfNamesForSomeTimeEach)
{
    const test::ScratchFolder scratch;
    const std::string folder = stillsIn(scratch);
    test::writePng(folder + "/b.png", grey({320, 240}, 200));
    test::writePng(folder + "/a.PNG", grey({321, 241}, 100));
    test::writeFile(folder + "/note.txt", test::bytesOf("no picture"));
    std::filesystem::create_directory(folder + "/c.png");
    FolderSource source(folder);
    EXPECT_EQ(source.format().size, (Size{320, 240}));
    EXPECT_EQ(source.format().frames, 2 * FolderSource::kFramesEach);
    test::Bytes frame(source.format().frameBytes());
    for (int i = 0; i < 2 * FolderSource::kFramesEach; ++i) {
        ASSERT_TRUE(receive(source, frame.data())) << i;
        EXPECT_EQ(frame.front(), i < FolderSource::kFramesEach ? 100 : 200) << i;
    }
    EXPECT_FALSE(receive(source, frame.data()));
}

TEST(PictureFolder, TellsWhichPictureCannotBeShown)
{
    const test::ScratchFolder scratch;
    const std::string folder = stillsIn(scratch);
    test::writePng(folder + "/a.png", grey({320, 240}, 100));
    test::writePng(folder + "/b.png", grey({320, 320}, 100));
    FolderSource source(folder);
    test::Bytes frame(source.format().frameBytes());
    for (int i = 0; i < FolderSource::kFramesEach; ++i)
        ASSERT_TRUE(receive(source, frame.data()));
    EXPECT_EQ(test::errorOf([&] { receive(source, frame.data()); }),
              folder + "/b.png" +
                  ": is 320x320 pixels, the first picture of the folder is 320x240; "
                  "put pictures of other sizes elsewhere");
}

TEST(PictureFolder, WithoutPicturesIsRefused)
{
    const test::ScratchFolder scratch;
    const std::string folder = stillsIn(scratch);
    EXPECT_EQ(test::errorOf([&] { picturesIn(folder); }),
              folder + ": holds no .png, .jpg, .jpeg or .bmp file; give another folder");
    EXPECT_NE(test::errorOf([&] { picturesIn(folder + "/none"); }), "");
}

} // namespace
} // namespace lumofe
