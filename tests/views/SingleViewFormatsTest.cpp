#include "ViewTestSupport.h"

#include <algorithm>

TEST(SingleViewFormats, ThreePlanesShowTheSamePictureAsTwo)
{
    for (int camPos : {0, 1, 2}) {
        TestSlot slot(640, 480, 320, 240);
        Bytes nv12 = patternFrame(640, 480, FORMAT_NV12), yv12 = nv12;
        const std::size_t luma = 640 * 480;
        for (std::size_t i = 0; i < luma / 4; ++i) {
            yv12[luma + i] = nv12[luma + 2 * i];
            yv12[luma + luma / 4 + i] = nv12[luma + 2 * i + 1];
        }
        OutputFrame two(320, 240), three(320, 240);
        slot.update(8, camPos);
        slot.frame(nv12, two);
        slot.engine().m_bSetup = 1;
        slot.frame(yv12, three, FORMAT_YV12);
        EXPECT_TRUE(std::equal(two.data(), two.data() + 320 * 240, three.data()));
        for (std::size_t i = 0; i < 320 * 240 / 4; ++i) {
            ASSERT_EQ(three[320 * 240 + i], two[320 * 240 + 2 * i]);
            ASSERT_EQ(three[320 * 240 * 5 / 4 + i], two[320 * 240 + 2 * i + 1]);
        }
    }
}

TEST(SingleViewFormats, RgbShowsTheLumasPictureInEveryByte)
{
    for (int camPos : {0, 1, 2}) {
        TestSlot slot(640, 480, 320, 240);
        Bytes luma = patternFrame(640, 480, FORMAT_NV12), rgb(640 * 480 * 3);
        for (std::size_t i = 0; i < 640 * 480; ++i) {
            rgb[3 * i] = luma[i];
            rgb[3 * i + 1] = static_cast<unsigned char>(255 - luma[i]);
            rgb[3 * i + 2] = static_cast<unsigned char>(luma[i] / 2);
        }
        OutputFrame planar(320, 240), packed(320, 240, FORMAT_RGB);
        slot.update(8, camPos);
        slot.frame(luma, planar);
        slot.engine().m_bSetup = 1;
        slot.frame(rgb, packed, FORMAT_RGB);
        for (std::size_t y = 0; y < 240; ++y)
            for (std::size_t x = 0; x < 320; ++x) {
                // Packed frames are not turned on the other mountings.
                const std::size_t row = camPos == 0 ? y : 239 - y;
                ASSERT_EQ(packed[3 * (y * 320 + x) + 2], planar[row * 320 + x]) << camPos;
            }
    }
}

TEST(SingleViewFormats, AConstantRgbFrameComesOutWithRedAndBlueExchanged)
{
    TestSlot slot(640, 480, 320, 240);
    Bytes in(640 * 480 * 3);
    for (std::size_t i = 0; i < in.size(); i += 3) {
        in[i] = 10;
        in[i + 1] = 20;
        in[i + 2] = 30;
    }
    slot.update(8, 0);
    OutputFrame out(320, 240, FORMAT_RGB);
    EXPECT_EQ(slot.frame(in, out, FORMAT_RGB), 0);
    for (std::size_t i = 0; i < out.size(); i += 3) {
        ASSERT_EQ(out[i], 30);
        ASSERT_EQ(out[i + 1], 20);
        ASSERT_EQ(out[i + 2], 10);
    }
}

TEST(SingleViewBands, OfOddSizesStayInTheFrameAndHoldTheKernelsBytes)
{
    for (auto [w, h] : {std::pair{319, 239}, {320, 239}, {319, 240}})
        for (FORMAT format : {FORMAT_NV12, FORMAT_YV12}) {
            TestSlot slot(640, 480, w, h);
            FEDSP& e = slot.engine();
            slot.update(8, 0);
            Bytes in = patternFrame(640, 480, format);
            OutputFrame out(w, h), room(w + 8, h + 8);
            slot.frame(in, out, format);
            out = OutputFrame(w, h);
            for (int line = 0; line < h; line += 64) {
                e.m_nLineIndex = line;
                e.AccessCtr_FESingleView(e.m_pStaged, out.data(), 640, 480, w, h);
                e.FCMapping_line(format, e.m_pStaged, room.data(), e.m_pMapTable, 640, 480, w, h,
                                 true, line);
            }
            EXPECT_TRUE(std::equal(out.data(), out.data() + out.size(), room.data()))
                << w << "x" << h << " format " << format;
        }
}
