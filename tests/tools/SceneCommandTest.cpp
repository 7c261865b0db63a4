#include "SceneCommand.h"

#include "ToolTestSupport.h"
#include "media/ImageFile.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(SceneCommand, WritesThePictureOfTheMount)
{
    const test::ScratchFolder folder;
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        runScene({folder.file("scene.png"), 1280, mount, true});
        const Image image = decodeImage(test::readFile(folder.file("scene.png")), "scene.png");
        EXPECT_EQ(image.size, (Size{1280, 1280}));
        EXPECT_EQ(image.bytes, test::scene(mount).bytes);
    }
}

TEST(SceneCommand, ReplacesAFileOnlyByForce)
{
    const test::ScratchFolder folder;
    const std::string path = folder.file("scene.png");
    test::writeFile(path, test::bytesOf("old"));
    EXPECT_EQ(test::errorOf([&] {
                  runScene({path, 320});
              }),
              path + ": exists already; give another name, or --force to replace it");
    EXPECT_EQ(test::readFile(path), test::bytesOf("old"));
    runScene({path, 320, Mount::ceiling, true});
    EXPECT_EQ(decodeImage(test::readFile(path), path).size, (Size{320, 320}));
}

TEST(SceneCommand, BadSizesAndVideosAreRefused)
{
    const test::ScratchFolder folder;
    for (int size : {-1, 0, 319, 4097})
        EXPECT_NE(test::errorOf([&] {
                      runScene({folder.file("scene.png"), size});
                  }).find("--size"),
                  std::string::npos);
    EXPECT_NE(test::errorOf([&] { runScene({folder.file("scene.y4m")}); }).find("scene.y4m"),
              std::string::npos);
    EXPECT_TRUE(folder.contents().empty());
}

} // namespace
} // namespace lumofe
