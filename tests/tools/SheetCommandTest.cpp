#include "SheetCommand.h"

#include "ToolTestSupport.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

class SheetCommandTest : public testing::Test {
protected:
    SheetCommandTest()
    {
        test::writePng(file("red.png"), filled({400, 300}, {250, 0, 0}));
        test::writePng(file("green.png"), filled({400, 200}, {0, 250, 0}));
        test::writePng(file("blue.png"), filled({20, 20}, {0, 0, 250}));
    }

    std::string file(const std::string& name) const { return folder_.file(name); }

    SheetOptions options() const
    {
        SheetOptions o;
        o.output = file("sheet.png");
        o.images = {file("red.png"), file("green.png"), file("blue.png")};
        o.columns = 2;
        o.width = 100;
        o.force = true;
        return o;
    }

    Image sheet(const SheetOptions& o) const
    {
        runSheet(o);
        return decodeImage(test::readFile(o.output), o.output, {1, 1});
    }

    test::ScratchFolder folder_;
};

TEST_F(SheetCommandTest, PicturesStandInRowsUnderTheirCaptions)
{
    const Image image = sheet(options());
    constexpr int kGap = 12, kText = 24;
    EXPECT_EQ(image.size, (Size{kGap + 2 * (100 + kGap), kGap + 2 * (kText + kGap) + 75 + 100}));
    const auto channelAt = [&](int column, int y) {
        const std::uint8_t* p = image.pixel(kGap + column * (100 + kGap) + 50, y);
        return p[0] == 250 && p[1] == 0   ? 'r'
               : p[1] == 250 && p[2] == 0 ? 'g'
               : p[2] == 250 && p[0] == 0 ? 'b'
                                          : '.';
    };
    constexpr int kFirst = kGap + kText, kSecond = kFirst + 75 + kGap + kText;
    EXPECT_EQ(channelAt(0, kFirst), 'r');
    EXPECT_EQ(channelAt(0, kFirst + 74), 'r');
    EXPECT_EQ(channelAt(0, kFirst + 75), '.');
    EXPECT_EQ(channelAt(1, kFirst + 49), 'g');
    EXPECT_EQ(channelAt(1, kFirst + 50), '.');
    EXPECT_EQ(channelAt(0, kSecond), 'b');
    EXPECT_EQ(channelAt(0, kSecond + 99), 'b');
    EXPECT_EQ(channelAt(1, kSecond + 50), '.');
}

TEST_F(SheetCommandTest, CaptionsAreTheGivenOnesThenTheFileNames)
{
    SheetOptions named = options(), given = options();
    named.captions = {"first"};
    given.captions = {"first", "green.png", "blue.png"};
    EXPECT_EQ(sheet(named).bytes, sheet(given).bytes);
    given.captions[1] = "second";
    EXPECT_NE(sheet(named).bytes, sheet(given).bytes);
}

TEST_F(SheetCommandTest, LongCaptionsStayInTheirColumn)
{
    SheetOptions blank = options(), wordy = options();
    blank.captions = {"", "", ""};
    wordy.captions = {std::string(200, 'W'), "", ""};
    const Image a = sheet(blank), b = sheet(wordy);
    EXPECT_NE(a.bytes, b.bytes);
    for (int y = 0; y < a.size.height; ++y)
        for (int x = 12 + 100; x < a.size.width; ++x)
            for (int c = 0; c < 3; ++c)
                ASSERT_EQ(a.pixel(x, y)[c], b.pixel(x, y)[c]) << x << " " << y;
}

TEST_F(SheetCommandTest, AFewPicturesMakeANarrowSheet)
{
    SheetOptions o = options();
    o.columns = 9;
    EXPECT_EQ(sheet(o).size.width, 12 + 3 * 112);
}

TEST_F(SheetCommandTest, ReplacesAFileOnlyByForce)
{
    SheetOptions o = options();
    runSheet(o);
    o.force = false;
    EXPECT_EQ(errorOf([&] { runSheet(o); }),
              o.output + ": exists already; give another name, or --force to replace it");
}

TEST_F(SheetCommandTest, WhatCannotBeIsRefused)
{
    const auto refusal = [](const SheetOptions& o) { return errorOf([&] { runSheet(o); }); };
    SheetOptions o = options();
    o.columns = 0;
    EXPECT_EQ(refusal(o), "--columns: 0 is outside 1 to 20");
    o = options();
    o.width = 2049;
    EXPECT_EQ(refusal(o), "--width: 2049 is outside 32 to 2048");
    o = options();
    o.captions.assign(4, "x");
    EXPECT_EQ(refusal(o), "--caption: given 4 times for 3 pictures");
    o = options();
    o.output = file("sheet.y4m");
    EXPECT_NE(refusal(o).find("sheet.y4m"), std::string::npos);
    o = options();
    o.images.push_back(file("none.png"));
    EXPECT_NE(refusal(o).find("none.png"), std::string::npos);
    o = options();
    o.images.assign(401, file("blue.png"));
    EXPECT_NE(refusal(o).find("at most 400"), std::string::npos);
    o = options();
    o.images.assign(20, file("blue.png"));
    o.width = 2048;
    EXPECT_NE(refusal(o).find("--width"), std::string::npos);
    test::writePng(file("thin.png"), Image({1, 1000}));
    o = options();
    o.images = {file("thin.png")};
    EXPECT_NE(refusal(o).find("thin.png"), std::string::npos);
    EXPECT_EQ(folder_.contents(),
              (std::vector<std::string>{"blue.png", "green.png", "red.png", "thin.png"}));
}

} // namespace
} // namespace lumofe
