#include "RenderCommand.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(RenderCommand, DefaultSizeIsTheLargest4By3InsideTheInput)
{
    EXPECT_EQ(defaultOutputSize({1280, 1280}), (Size{1280, 960}));
    EXPECT_EQ(defaultOutputSize({1920, 1080}), (Size{1440, 1080}));
    EXPECT_EQ(defaultOutputSize({320, 240}), (Size{320, 240}));
    for (int w = 320; w <= 4096; w += 61) {
        for (int h = 240; h <= 4096; h += 59) {
            const Size size = defaultOutputSize({w, h});
            EXPECT_EQ(size.width * 3, size.height * 4);
            EXPECT_EQ(size.width % 4 + size.height % 4, 0);
            EXPECT_TRUE(size.width <= w && size.height <= h);
            EXPECT_TRUE(size.width + 16 > w || size.height + 12 > h);
        }
    }
}

TEST(RenderCommand, DefaultsAreTheCentredCircleAndTheMountsTilt)
{
    const test::ScratchFolder folder;
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        test::writePng(folder.file("scene.png"), test::scene(mount));
        RenderOptions options;
        options.input = folder.file("scene.png");
        options.output = folder.file("default.png");
        options.mount = mount;
        runRender(options);
        options.output = folder.file("explicit.png");
        options.circle = Circle{640, 640, 640};
        options.size = Size{1280, 960};
        options.tilt = mountRule(mount).defaultTilt;
        runRender(options);
        EXPECT_EQ(test::readFile(folder.file("default.png")),
                  test::readFile(folder.file("explicit.png")));
    }
}

} // namespace
} // namespace lumofe
