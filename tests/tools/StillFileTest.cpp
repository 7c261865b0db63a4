#include "StillFile.h"

#include "ToolTestSupport.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

TEST(StillFile, NamesOfVideosAreRefused)
{
    EXPECT_EQ(errorOf([] { checkStillName("a.y4m", "the scene"); }),
              "a.y4m: the scene is a still; end the name in .png, .jpg or .bmp");
    EXPECT_NE(errorOf([] { checkStillName("a.gif", "the scene"); }), "");
    for (const char* name : {"a.png", "a.JPG", "a.bmp", "-"})
        EXPECT_EQ(errorOf([&] { checkStillName(name, "the scene"); }), "") << name;
}

TEST(StillFile, TheNameDecidesOnTheKindAndTheQualityOnTheSize)
{
    const test::ScratchFolder folder;
    const Image image = test::gradient({64, 48});
    const auto written = [&](const std::string& name, int quality) {
        writeStill(folder.file(name), image, quality);
        return test::readFile(folder.file(name));
    };
    for (const char* name : {"a.png", "a.bmp"})
        EXPECT_EQ(decodeImage(written(name, 10), name, {1, 1}).bytes, image.bytes) << name;
    const test::Bytes good = written("good.jpg", 95), coarse = written("coarse.jpg", 10);
    EXPECT_EQ(decodeImage(good, "good", {1, 1}).size, image.size);
    EXPECT_LT(coarse.size(), good.size());
}

TEST(StillFile, WhatCannotBeWrittenLeavesNothing)
{
    const test::ScratchFolder folder;
    EXPECT_NE(errorOf([&] { writeStill(folder.file("none/a.png"), Image({4, 4})); }), "");
    EXPECT_TRUE(folder.contents().empty());
}

} // namespace
} // namespace lumofe
