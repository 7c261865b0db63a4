#include "ViewTestSupport.h"

#include "mapping/MapEntry.h"

#include <algorithm>

namespace {

// 1920x1920 to 1280x720, circle filling the input: halves of 1280x360; rows 240 to 479 of the
// unwrap.
class Panorama180 : public testing::Test, protected LayoutSlot {
protected:
    Panorama180() : LayoutSlot(1920, 1920, 1280, 720) {}

    void select(int camPos) { slot.update(4, camPos); }

    Bytes unwrapped()
    {
        Bytes mapped(1080 * 240 * 3 / 2), scaled(2560 * 360 * 3 / 2);
        e.CPIMapping(FORMAT_NV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 2 * 240 * 1080, 1920,
                     1920, 240, 0, 0, 1080, true);
        e.resize_image(mapped.data(), scaled.data(), 1080, 240, 2560, 360);
        return scaled;
    }
    bool rowIs(int row, unsigned char value) const
    {
        return std::all_of(out.data() + row * 1280, out.data() + row * 1280 + 1280,
                           [=](unsigned char c) { return c == value; });
    }
};

} // namespace

TEST_F(Panorama180, TheTwoHalvesLieOneAboveTheOther)
{
    select(0);
    frame();
    const Bytes picture = unwrapped();
    for (std::size_t y = 0; y < 360; ++y)
        ASSERT_TRUE(std::equal(out.data() + y * 1280, out.data() + y * 1280 + 1280,
                               picture.begin() + std::ptrdiff_t(y * 2560)));
    for (std::size_t y = 0; y < 359; ++y)
        ASSERT_TRUE(std::equal(out.data() + (361 + y) * 1280, out.data() + (362 + y) * 1280,
                               picture.begin() + std::ptrdiff_t(y * 2560 + 1280)));
    EXPECT_EQ(occurrences(printed(), "Tick"), 2);
}

TEST_F(Panorama180, RowsOfTheGapTheScalingsEdgeAndTheChromaOverlap)
{
    select(0);
    frame();
    for (int row : {357, 358, 359, 360, 718, 719}) // source rows 238 and 239 begin at 357
        EXPECT_TRUE(rowIs(row, 0)) << row;
    EXPECT_FALSE(rowIs(356, 0));
    EXPECT_FALSE(rowIs(717, 0));
    // Row 720 is the first chroma row; the lower half's last row, black, ends up there.
    EXPECT_TRUE(rowIs(720, 0));
    const Bytes picture = unwrapped();
    EXPECT_TRUE(
        std::equal(out.data() + 721 * 1280, out.data() + 722 * 1280, picture.begin() + 2560 * 361));
}

TEST_F(Panorama180, RowsBetweenTheHalvesStayAsTheyAre)
{
    select(0);
    frame();
    std::fill_n(out.data() + 360 * 1280, 1280, static_cast<unsigned char>(9));
    frame();
    EXPECT_TRUE(rowIs(360, 9));
}

TEST_F(Panorama180, TheFloorMirrorsEachHalf)
{
    select(2);
    frame();
    const Bytes picture = unwrapped();
    for (std::size_t y : {std::size_t(0), std::size_t(200)})
        for (std::size_t x = 0; x < 1280; ++x) {
            ASSERT_EQ(out[y * 1280 + x], picture[y * 2560 + 1280 - x]);
            ASSERT_EQ(out[(361 + y) * 1280 + x], picture[y * 2560 + 2560 - x]);
        }
}

TEST_F(Panorama180, TheWallShowsOnePictureInTheMiddle)
{
    select(1);
    frame();
    Bytes mapped(720 * 480 * 3 / 2), picture(1280 * 360 * 3 / 2);
    e.CPIMapping(FORMAT_NV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 2 * 240 * 720, 1920, 1920,
                 480, 0, 0, 720, true);
    e.resize_image(mapped.data(), picture.data(), 720, 480, 1280, 360);
    EXPECT_TRUE(rowIs(179, 0));
    EXPECT_TRUE(std::equal(picture.begin(), picture.begin() + 1280 * 360, out.data() + 180 * 1280));
    EXPECT_TRUE(rowIs(540, 0));
    const unsigned char* chroma = out.data() + 720 * 1280;
    EXPECT_TRUE(std::equal(picture.begin() + 1280 * 360, picture.end(), chroma + 90 * 1280));
}

TEST_F(Panorama180, TheTallWallPictureIsHalfAsMuchHigherAgain)
{
    select(1);
    e.m_bTall180 = 1;
    frame();
    Bytes mapped(720 * 720 * 3 / 2), picture(1280 * 540 * 3 / 2);
    // Kept: 120 rows down would be twice as many bytes.
    e.CPIMapping(FORMAT_NV12, e.m_pStaged, mapped.data(), e.m_pMapTable + 120 * 720, 1920, 1920,
                 720, 0, 0, 720, true);
    e.resize_image(mapped.data(), picture.data(), 720, 720, 1280, 540);
    EXPECT_TRUE(rowIs(89, 0));
    EXPECT_TRUE(std::equal(picture.begin(), picture.begin() + 1280 * 540, out.data() + 90 * 1280));
}

TEST_F(Panorama180, EveryUpdateRebuildsAndClears)
{
    select(0);
    frame();
    FE_CurPosParams position;
    IFishEye eye;
    eye.LmFEGetPosition(0, &position);
    position.n180Pos = 90;
    eye.LmFESetPosition(0, &position);
    frame();
    const int column0 = 2 * 1080 * 100 + 1;
    EXPECT_EQ(e.m_pMapTable[column0], 960 * 1920 + 960 + 200); // not turned yet
    select(0);
    std::fill_n(out.data() + 360 * 1280, 1280, static_cast<unsigned char>(9));
    frame();
    EXPECT_EQ(e.m_pMapTable[column0], (960 + 200) * 1920 + 960);
    EXPECT_TRUE(rowIs(360, 0));
    EXPECT_EQ(e.m_bModeChanged, 1); // is left to the strip of the 360 layout
}

TEST_F(Panorama180, PackedFramesMapAQuarterOfTheRadiusUnscaled)
{
    select(0);
    Bytes rgb = patternFrame(1920, 1920, FORMAT_RGB);
    OutputFrame packed(1280, 720, FORMAT_RGB);
    std::fill_n(e.m_pViewImage, 2560 * 360, static_cast<unsigned char>(55));
    std::fill_n(e.m_pPanoImage, 3 * 1080 * 241, static_cast<unsigned char>(0xEE));
    slot.frame(rgb, packed, FORMAT_RGB, true);
    EXPECT_EQ(packed[0], 55);
    EXPECT_EQ(packed[719 * 1280], 55);
    EXPECT_NE(e.m_pPanoImage[3 * 1080 * 239 + 5], 0xEE);
    EXPECT_EQ(e.m_pPanoImage[3 * 1080 * 240 + 5], 0xEE);
}

TEST_F(Panorama180, BandsEndWithTheUnwrapsLastRows)
{
    select(0);
    frame();
    const Bytes whole = out.bytes();
    OutputFrame banded(1280, 720);
    const Bytes untouched = banded.bytes();
    e.m_bSetup = 0;
    for (int line : {0, 64, 128, 192}) {
        EXPECT_EQ(banded.bytes(), untouched);
        e.m_nLineIndex = line;
        EXPECT_EQ(e.AccessCtr_FE180(e.m_pStaged, banded.data(), 1920, 1920, 1280, 720),
                  line == 192 ? 1u : 0u);
    }
    EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + 1280 * 360, banded.data()));
    // Kept: a cursor of the picture's last row passes the gate although nothing is done there.
    banded = OutputFrame(1280, 720);
    e.m_nLineIndex = 359;
    EXPECT_EQ(e.AccessCtr_FE180(e.m_pStaged, banded.data(), 1920, 1920, 1280, 720), 1u);
    EXPECT_NE(banded.bytes(), untouched);
}

TEST(Panorama180Sizes, ScreensThatDoNotFitAreClippedToTheFrame)
{
    renderOnAwkwardScreens(4, false);
}
