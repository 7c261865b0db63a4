#include "ViewTestSupport.h"

#include "mapping/MapEntry.h"

#include <algorithm>

namespace {

// 1280x1280 to 800x600, circle filling the input: strip 800x212 from row 388; rows 160 to 319 of
// the unwrap are shown.
class Panorama360 : public testing::Test, protected LayoutSlot {
protected:
    Panorama360() : LayoutSlot(1280, 1280, 800, 600) {}

    void select(int camPos) { slot.update(2, camPos); }

    // What the strip must be: the mapped panorama, scaled and turned.
    Bytes expectedStrip(bool flip)
    {
        Bytes mapped(1080 * 160 * 3 / 2), scaled(800 * 212 * 3 / 2 + 2), strip(scaled.size());
        e.CPIMapping(FORMAT_NV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 2 * 160 * 1080, 1280,
                     1280, 160, 0, 0, 1080, true);
        e.resize_image(mapped.data(), scaled.data(), 1080, 160, 800, 212);
        e.TransferButtomToUpPlanar(scaled.data(), strip.data(), 800, 212, flip);
        strip.resize(800 * 212 * 3 / 2);
        return strip;
    }
    Bytes strip() const
    {
        Bytes bytes(out.data() + 388 * 800, out.data() + 600 * 800);
        const unsigned char* chroma = out.data() + 800 * 600 + 400 * 388;
        bytes.insert(bytes.end(), chroma, chroma + 800 * 106);
        return bytes;
    }
};

} // namespace

TEST_F(Panorama360, OnTheCeilingTheStripIsTurnedUpsideDown)
{
    select(0);
    frame();
    EXPECT_EQ(strip(), expectedStrip(true));
    // The scaled picture's black last rows are the strip's first ones.
    for (std::size_t x = 0; x < 800; ++x)
        ASSERT_EQ(out[388 * 800 + x] | out[389 * 800 + x], 0);
    EXPECT_NE(out[395 * 800 + 100], 0);
    for (std::size_t y = 388; y < 600; ++y)
        ASSERT_EQ(out[y * 800 + 799], 0);
}

TEST_F(Panorama360, OnTheFloorTheStripIsMirroredInstead)
{
    select(2);
    frame();
    const Bytes expected = expectedStrip(false), actual = strip();
    // The very last element comes from behind the scaled picture.
    for (std::size_t i = 0; i < actual.size(); ++i)
        ASSERT_TRUE(i == 800 * 211 || i >= 800 * 317 || actual[i] == expected[i]) << i;
}

TEST_F(Panorama360, OnTheWallTheRemapIsScaledAsItIs)
{
    select(1);
    frame();
    Bytes mapped(720 * 480 * 3 / 2), expected(800 * 212 * 3 / 2);
    e.CPIMapping(FORMAT_NV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 2 * 80 * 720, 1280, 1280,
                 480, 0, 0, 720, true);
    e.resize_image(mapped.data(), expected.data(), 720, 480, 800, 212);
    EXPECT_EQ(strip(), expected);
}

TEST_F(Panorama360, TheTableIsBuiltOnlyAfterAChangeOfTheViewMode)
{
    select(0);
    frame();
    EXPECT_EQ(e.m_bModeChanged, 0);
    e.m_n180Pan = 90;
    std::fill_n(e.m_pMapTable, 100, 0);
    frame();
    EXPECT_EQ(e.m_pMapTable[1], 0);
    e.m_bSetup = 1; // a set-up alone does not count here
    frame();
    EXPECT_EQ(e.m_pMapTable[1], 0);
    e.m_bModeChanged = 1;
    frame();
    EXPECT_EQ(e.m_pMapTable[1], 640 * 1280 + 640);
    // Turned by 90 degrees: column 0 looks down the image.
    EXPECT_EQ(e.m_pMapTable[2 * 1080 * 100 + 1], 840 * 1280 + 640);
}

TEST_F(Panorama360, ThreePlanesAreScaledAsIfInterleaved)
{
    select(0);
    Bytes yv12 = patternFrame(1280, 1280, FORMAT_YV12, 3);
    slot.frame(yv12, out, FORMAT_YV12);
    Bytes mapped(1080 * 160 * 3 / 2), scaled(800 * 212 * 3 / 2), expected(scaled.size());
    e.CPIMapping(FORMAT_YV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 2 * 160 * 1080, 1280,
                 1280, 160, 0, 0, 1080, true);
    e.resize_image(mapped.data(), scaled.data(), 1080, 160, 800, 212);
    e.TransferButtomToUpPlanar(scaled.data(), expected.data(), 800, 212, true);
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + 800 * 212, out.data() + 388 * 800));
    const unsigned char* plane = out.data() + 800 * 600 + 400 * 388 / 2;
    EXPECT_TRUE(std::equal(plane, plane + 400 * 106, expected.begin() + 800 * 212));
    const unsigned char* second = plane + 400 * 600 / 2;
    EXPECT_TRUE(std::equal(second, second + 400 * 106, expected.begin() + 800 * 212 * 5 / 4));
}

TEST_F(Panorama360, PackedFramesAreMappedButNotScaled)
{
    select(0);
    Bytes rgb = patternFrame(1280, 1280, FORMAT_RGB);
    OutputFrame packed(800, 600, FORMAT_RGB);
    EXPECT_EQ(slot.frame(rgb, packed, FORMAT_RGB, true), 0);
    // All 320 rows of the table are mapped; the strip shows what the view image held: the bytes of
    // the last perspective view.
    const unsigned char* last = e.m_pPanoImage + 3 * (1080 * 318 + 500);
    const fe::MapEntry entry = fe::loadEntry(e.m_pMapTable, 1080 * 318 + 500);
    EXPECT_NE(entry.index, 0);
    EXPECT_NE(last[0] | last[1] | last[2], 0);
    EXPECT_TRUE(std::equal(e.m_pViewImage, e.m_pViewImage + 800 * 212, packed.data() + 388 * 800));
}

TEST_F(Panorama360, PackedFramesOnTheWallStartAtTheTablesTop)
{
    select(1);
    Bytes rgb(1280 * 1280 * 3);
    for (std::size_t i = 0; i < rgb.size(); i += 3)
        rgb[i] = rgb[i + 1] = rgb[i + 2] = static_cast<unsigned char>(i / 3 / 1280 / 5);
    OutputFrame packed(800, 600, FORMAT_RGB);
    slot.frame(rgb, packed, FORMAT_RGB, true);
    // Upside down in memory, row 1279 - r holds (1279 - r) / 5. Remap row 0 is input row 96.
    EXPECT_EQ(e.m_pPanoImage[3 * 360], (1279 - 96) / 5);
}

TEST_F(Panorama360, BandsFinishTogetherWithTheLastRows)
{
    select(0);
    frame();
    frame();
    const Bytes whole = strip();
    OutputFrame banded(800, 600);
    const Bytes untouched = banded.bytes();
    for (int line : {0, 64, 128}) {
        EXPECT_EQ(banded.bytes(), untouched);
        e.m_nLineIndex = line;
        EXPECT_EQ(e.AccessCtr_FE360(e.m_pStaged, banded.data(), 1280, 1280, 800, 600),
                  line == 128 ? 1u : 0u);
    }
    EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + 800 * 212, banded.data() + 388 * 800));
    const std::size_t chroma = 800 * 600 + 400 * 388;
    for (std::size_t i = 0; i < 800 * 106; i += 2) // exchanged by the band kernels
        ASSERT_EQ(banded[chroma + i], whole[800 * 212 + i + 1]) << i;
}

TEST(Panorama360Sizes, SmallInputsShowWhatTheBuilderDidNotWrite)
{
    // The builder stops at 320 * 240 entries, 36 rows of 1080, but rows 40 to 79 are shown: the
    // first pixel everywhere, below the four black rows that scaling 40 rows to 84 leaves.
    LayoutSlot s(320, 240, 320, 240);
    FE_ViewParams view = s.slot.view(2, 0);
    view.nRadius = 160;
    FE_EventParams event;
    ParamsUpdated(0, &event, &view);
    s.frame();
    const unsigned char first = s.in[0];
    const int top = 156; // 240 / 1.538 = 156.05
    for (std::size_t y = top + 4; y < 240; ++y)
        for (std::size_t x = 0; x < 317; ++x)
            ASSERT_EQ(s.out[y * 320 + x], first) << x << " " << y;
}

TEST(Panorama360Sizes, ScreensThatDoNotFitAreClippedToTheFrame)
{
    renderOnAwkwardScreens(2, false);
}

TEST_F(Panorama360, BandsOfUnknownFormatsAreNotDoneBeforeTheLastRow)
{
    select(1);
    frame();
    e.m_nFormat = FORMAT(7);
    OutputFrame banded(800, 600);
    const Bytes untouched = banded.bytes();
    for (int line : {0, 64}) {
        e.m_nLineIndex = line;
        EXPECT_EQ(e.AccessCtr_FE360(e.m_pStaged, banded.data(), 1280, 1280, 800, 600), 0u);
    }
    EXPECT_EQ(banded.bytes(), untouched);
}
