#include "RenderCommand.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(RenderCommand, DefaultsAreTheCentredCircleAndTheMountsTilt)
{
    const test::ScratchFolder folder;
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        test::writePng(folder.file("scene.png"), test::scene(mount));
        RenderOptions options;
        options.input = folder.file("scene.png");
        options.output = folder.file("default.png");
        options.mount = mount;
        options.force = true;
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
