#include "Frames.h"

#include <gtest/gtest.h>

namespace {

// A picture of 16 x 4 whose bytes count from 1, in a frame of 8 x 8.
constexpr int kSw = 16, kSh = 4, kW = 8, kH = 8;
constexpr int kLuma = kW * kH;

class HalfDisplay : public testing::Test {
protected:
    HalfDisplay() : img(kSw * kSh * 3 / 2 + 2), frame(kLuma * 3 / 2 + 16)
    {
        for (std::size_t i = 0; i < img.size(); ++i)
            img[i] = static_cast<unsigned char>(i + 1);
    }
    void show(FORMAT format, int camPos, bool tall = false, int sw = kSw, int sh = kSh)
    {
        engine.m_nFormat = format;
        frame.assign(frame.size(), 0xEE);
        engine.Access_ctr_M3_Half_Display(img.data(), sw, sh, frame.data(), kW, kH, camPos, tall);
    }
    Bytes bytes(int offset, int count) const
    {
        return Bytes(frame.begin() + offset, frame.begin() + offset + count);
    }
    FEDSP engine;
    Bytes img, frame;
};

} // namespace

TEST_F(HalfDisplay, CeilingHalvesLieOneAboveTheOther)
{
    show(FORMAT_NV12, 0);
    EXPECT_EQ(bytes(0, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(bytes(3 * kW, 8), (Bytes{49, 50, 51, 52, 53, 54, 55, 56}));
    EXPECT_EQ(bytes(4 * kW, 8), Bytes(8, 0xEE)); // the row between them
    EXPECT_EQ(bytes(5 * kW, 8), (Bytes{9, 10, 11, 12, 13, 14, 15, 16}));
    // Chroma of the upper half, then from the middle that of the lower half.
    EXPECT_EQ(bytes(kLuma + kW, 8), (Bytes{81, 82, 83, 84, 85, 86, 87, 88}));
    EXPECT_EQ(bytes(kLuma + 2 * kW, 8), (Bytes{73, 74, 75, 76, 77, 78, 79, 80}));
    EXPECT_EQ(bytes(kLuma + 3 * kW, 8), (Bytes{89, 90, 91, 92, 93, 94, 95, 96}));
}

TEST_F(HalfDisplay, TheLowerHalfsLastRowOverwritesTheFirstChromaRow)
{
    for (FORMAT format : {FORMAT_NV12, FORMAT_YV12, FORMAT_RGB}) {
        show(format, 0);
        EXPECT_EQ(bytes(8 * kW, 8), (Bytes{57, 58, 59, 60, 61, 62, 63, 64}));
        show(format, 2);
        EXPECT_EQ(bytes(8 * kW, 8), (Bytes{65, 64, 63, 62, 61, 60, 59, 58}));
    }
    EXPECT_EQ(bytes(9 * kW, 8), Bytes(8, 0xEE)); // no chroma for packed frames
}

TEST_F(HalfDisplay, FloorHalvesAreMirroredWithAnOffsetOfOne)
{
    show(FORMAT_NV12, 2);
    EXPECT_EQ(bytes(0, 8), (Bytes{9, 8, 7, 6, 5, 4, 3, 2})); // begins in the second half
    EXPECT_EQ(bytes(5 * kW, 8), (Bytes{17, 16, 15, 14, 13, 12, 11, 10}));
    // Pairs 4 to 1 of the first chroma row; then pairs 8 to 5, the first of them of the next row.
    EXPECT_EQ(bytes(kLuma + kW, 8), (Bytes{89, 90, 87, 88, 85, 86, 83, 84}));
    EXPECT_EQ(bytes(kLuma + 2 * kW, 8), (Bytes{81, 82, 79, 80, 77, 78, 75, 76}));
}

TEST_F(HalfDisplay, ThreePlanes)
{
    // Planes of 8 bytes a row: from 65 and from 81.
    show(FORMAT_YV12, 0);
    EXPECT_EQ(bytes(kLuma + 4, 4), (Bytes{61, 62, 63, 64})); // luma of the lower half again
    EXPECT_EQ(bytes(kLuma + 8, 8), (Bytes{69, 70, 71, 72, 77, 78, 79, 80}));
    EXPECT_EQ(bytes(kLuma + 16, 16),
              (Bytes{81, 82, 83, 84, 89, 90, 91, 92, 85, 86, 87, 88, 93, 94, 95, 96}));
    show(FORMAT_YV12, 2);
    EXPECT_EQ(bytes(kLuma + 16, 16),
              (Bytes{85, 84, 83, 82, 93, 92, 91, 90, 89, 88, 87, 86, 97, 96, 95, 94}));
}

TEST_F(HalfDisplay, WallPicturesAreCentred)
{
    // A picture of 8 x 4: luma from 1, chroma from 33.
    for (int camPos : {1, 3}) {
        show(FORMAT_NV12, camPos, false, 8, 4);
        EXPECT_EQ(bytes(1 * kW, 8), Bytes(8, 0xEE));
        EXPECT_EQ(bytes(2 * kW, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
        EXPECT_EQ(bytes(5 * kW, 8), (Bytes{25, 26, 27, 28, 29, 30, 31, 32}));
        EXPECT_EQ(bytes(6 * kW, 8), Bytes(8, 0xEE));
        EXPECT_EQ(bytes(kLuma, 8), Bytes(8, 0xEE));
        EXPECT_EQ(bytes(kLuma + kW, 8), (Bytes{33, 34, 35, 36, 37, 38, 39, 40}));
        EXPECT_EQ(bytes(kLuma + 3 * kW, 8), Bytes(8, 0xEE));
    }
    show(FORMAT_YV12, 1, false, 8, 4);
    EXPECT_EQ(bytes(kLuma + 4, 4), (Bytes{33, 34, 35, 36}));
    EXPECT_EQ(bytes(kLuma + 16 + 4, 4), (Bytes{41, 42, 43, 44}));
}

TEST_F(HalfDisplay, TallWallPicturesStartHigher)
{
    show(FORMAT_NV12, 1, true, 8, 4);
    EXPECT_EQ(bytes(0, 8), Bytes(8, 0xEE));
    EXPECT_EQ(bytes(1 * kW, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(bytes(kLuma, 8), (Bytes{33, 34, 35, 36, 37, 38, 39, 40}));
}

TEST_F(HalfDisplay, TheCallersFrameCutsRows)
{
    for (int camPos : {0, 2})
        for (FORMAT format : {FORMAT_NV12, FORMAT_YV12}) {
            show(format, camPos);
            const Bytes whole = frame;
            engine.m_pOutput = frame.data();
            for (int bytes = 0; bytes <= kLuma * 3 / 2; ++bytes) {
                engine.m_nOutputBytes = bytes;
                show(format, camPos);
                ASSERT_TRUE(std::equal(frame.begin(), frame.begin() + bytes, whole.begin()));
                ASSERT_EQ(this->bytes(bytes, 8), Bytes(8, 0xEE)) << bytes;
            }
            engine.m_pOutput = nullptr;
        }
}

TEST_F(HalfDisplay, ANullPictureDoesNothing)
{
    frame.assign(frame.size(), 0xEE);
    engine.Access_ctr_M3_Half_Display(nullptr, kSw, kSh, frame.data(), kW, kH, 0, false);
    EXPECT_EQ(frame, Bytes(frame.size(), 0xEE));
}
