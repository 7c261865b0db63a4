#include "Texts.h"

#include "Interaction.h"
#include "media/Drawing.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;

namespace {

bool contains(const Lines& lines, const std::string& text)
{
    return std::ranges::any_of(
        lines, [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

int letters(const Image& panel)
{
    int count = 0;
    for (std::size_t i = 0; i < panel.bytes.size(); i += 3)
        count += panel.bytes[i] > 180;
    return count;
}

} // namespace

TEST(Texts, HelpNamesEveryKey)
{
    for (const char* key : {"1 2 3 4", "M", "R", "C", "P", "S", "V", "Space", "H", "Q, Esc", "drag",
                            "wheel", "double click"})
        EXPECT_TRUE(contains(helpLines(), key + std::string("\t"))) << key;
}

TEST(Texts, PresetsComeInPages)
{
    std::vector<Preset> presets;
    for (int i = 0; i < kPresetsOnPage + 1; ++i)
        presets.push_back({"spot " + std::to_string(i), View::quad, {}});
    const Lines first = presetLines(presets, 0, "hall.json");
    EXPECT_TRUE(contains(first, "hall.json"));
    EXPECT_TRUE(contains(first, "1\tspot 0 (quad)"));
    EXPECT_TRUE(contains(first, "9\tspot 8 (quad)"));
    EXPECT_FALSE(contains(first, "spot 9"));
    EXPECT_TRUE(contains(first, "more presets"));
    const Lines second = presetLines(presets, kPresetsOnPage, "hall.json");
    EXPECT_TRUE(contains(second, "1\tspot 9 (quad)"));
    EXPECT_FALSE(contains(second, "spot 8"));
}

TEST(Texts, WithoutACameraFileItSaysHowToGiveOne)
{
    EXPECT_TRUE(contains(presetLines({}, 0, ""), "--camera FILE"));
    EXPECT_TRUE(contains(presetLines({}, 0, ""), "lumofe camera init"));
}

TEST(Texts, TheStatusLineTellsRateTimesAndState)
{
    EXPECT_EQ(statusLine({View::quad, Mount::floor, {25, 4.25, {}}}),
              "quad, floor  25.0 fps  4.2 ms  H: keys");
    EXPECT_EQ(statusLine({View::single, Mount::wall, {24.96, 4, 12.4}, true, true, 83}),
              "ENDED  PAUSED  REC 1:23  single, wall  25.0 fps  4.0 ms  input 12 ms  H: keys");
}

TEST(Texts, AddressesLoseTheirPasswords)
{
    EXPECT_EQ(withoutPasswords("lumofe-view: rtsp://me:p@ss@cam:554/a@b"),
              "lumofe-view: rtsp://cam:554/a@b");
    EXPECT_EQ(withoutPasswords("rtsp://me:1@cam: gone (http://you@x/ y@z)"),
              "rtsp://cam: gone (http://x/ y@z)");
    for (const char* text : {"", "me@home.mp4", "http://", "http://cam/x?to=a@b"})
        EXPECT_EQ(withoutPasswords(text), text);
}

TEST(Texts, PanelsFitTheirLines)
{
    const Image one = textPanel({"word"}, 1, 1000), two = textPanel({"word", "a longer"}, 1, 1000);
    EXPECT_EQ(two.size.height - one.size.height, kTextHeight);
    EXPECT_GT(two.size.width, one.size.width);
    EXPECT_GT(letters(one), 0);
    const Image doubled = textPanel({"word"}, 2, 1000);
    EXPECT_EQ(doubled.size, (Size{2 * one.size.width, 2 * one.size.height}));
    EXPECT_EQ(letters(doubled), 4 * letters(one));
    EXPECT_EQ(textPanel({"a longer"}, 1, 20).size.width, 20);
}

TEST(Texts, ColumnsAreInLine)
{
    const Image panel = textPanel({"a\tx", "abcdef\tx"}, 1, 1000);
    const int row = kTextHeight;
    for (int y = 4; y < 4 + row; ++y)
        for (int x = textWidth("abcdef") + 8; x < panel.size.width; ++x)
            EXPECT_EQ(panel.pixel(x, y)[0], panel.pixel(x, y + row)[0]);
    EXPECT_GT(letters(panel), 0);
}
