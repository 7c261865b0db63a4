#include "views/Compose.h"

#include "Frames.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr int kW = 6, kH = 4; // of a view

// A view whose bytes count from `first`.
Bytes view(int w, int h, int first)
{
    Bytes bytes(std::size_t(w * h * 3 / 2));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(first + int(i));
    return bytes;
}

class Compose : public testing::Test {
protected:
    Compose() : frame(2 * kW * 2 * kH * 3 / 2 + 1, 0xEE) {}

    // Composes one view as the given source and returns what changed in the frame.
    void quadrant(int number, Bytes& src)
    {
        unsigned char* s[4] = {};
        s[number - 1] = src.data();
        engine.SnapShotM1(s[0], s[1], s[2], s[3], frame.data(), kW, kH);
    }
    int at(int offset) const { return frame[std::size_t(offset)]; }
    int changed() const
    {
        return int(frame.size()) - int(std::count(frame.begin(), frame.end(), 0xEE));
    }

    FEDSP engine;
    Bytes frame;
};

constexpr int kFrameW = 2 * kW, kLuma = 2 * kW * 2 * kH;

} // namespace

TEST_F(Compose, QuadrantsOfASemiPlanarFrame)
{
    engine.m_nFormat = FORMAT_NV12;
    const int lumaAt[] = {0, kW + 1, kFrameW * kH, kFrameW * kH + kW + 1};
    const int chromaAt[] = {0, kW, kW * kH, kW * kH + kW};
    for (int number = 1; number <= 4; ++number) {
        frame.assign(frame.size(), 0xEE);
        Bytes src = view(kW, kH, 10);
        quadrant(number, src);
        for (int r = 0; r < kH; ++r)
            for (int x = 0; x < kW; ++x)
                if (number != 4 || r < kH - 1 || x < kW - 1) {
                    ASSERT_EQ(at(lumaAt[number - 1] + r * kFrameW + x), 10 + r * kW + x) << number;
                }
        for (int k = 0; k < kH / 2; ++k)
            for (int x = 0; x < kW; ++x)
                ASSERT_EQ(at(kLuma + chromaAt[number - 1] + k * kFrameW + x),
                          10 + kW * kH + k * kW + x)
                    << number;
        EXPECT_EQ(changed(), kW * kH * 3 / 2);
    }
}

TEST_F(Compose, QuadrantsOfAThreePlaneFrame)
{
    engine.m_nFormat = FORMAT_YV12;
    const int chromaAt[] = {0, kW / 2, kW * kH / 2, kW * kH / 2 + kW / 2};
    for (int number = 1; number <= 4; ++number) {
        frame.assign(frame.size(), 0xEE);
        Bytes src = view(kW, kH, 10);
        quadrant(number, src);
        for (int plane = 0; plane < 2; ++plane)
            for (int k = 0; k < kH / 2; ++k)
                for (int x = 0; x < kW / 2; ++x)
                    ASSERT_EQ(at(kLuma + plane * kLuma / 4 + chromaAt[number - 1] + k * kW + x),
                              10 + kW * kH + plane * kW * kH / 4 + k * kW / 2 + x)
                        << number << " " << plane;
    }
}

TEST_F(Compose, OtherFormatsAreLumaOnly)
{
    for (FORMAT format : {FORMAT_YUYV, FORMAT_RGB, FORMAT(9)}) {
        engine.m_nFormat = format;
        frame.assign(frame.size(), 0xEE);
        Bytes src = view(kW, kH, 10);
        quadrant(1, src);
        EXPECT_EQ(changed(), kW * kH);
        frame.assign(frame.size(), 0xEE);
        engine.SnapShotM2(src.data(), nullptr, nullptr, frame.data(), kW, kH, 1, 0, 2 * kH);
        EXPECT_EQ(changed(), kW * kH);
    }
}

TEST_F(Compose, TheFirstSourceWins)
{
    Bytes one = view(kW, kH, 10), two = view(kW, kH, 60);
    engine.SnapShotM1(one.data(), two.data(), nullptr, two.data(), frame.data(), kW, kH);
    EXPECT_EQ(changed(), kW * kH);
    EXPECT_EQ(at(0), 10);
    engine.SnapShotM1(nullptr, nullptr, nullptr, nullptr, frame.data(), kW, kH);
    engine.SnapShotM2(nullptr, nullptr, nullptr, frame.data(), kW, kH, 1, 0, 2 * kH);
    EXPECT_EQ(changed(), kW * kH);
}

TEST_F(Compose, RightQuadrantsSpillTheirLastPixelIntoTheNextRow)
{
    engine.m_nFormat = FORMAT_NV12;
    Bytes right = view(kW, kH, 10), bottomLeft = view(kW, kH, 80);
    quadrant(2, right);
    for (int row = 1; row < kH; ++row)
        EXPECT_EQ(at(row * kFrameW), 10 + row * kW - 1);
    EXPECT_EQ(at(kH * kFrameW), 10 + kH * kW - 1); // until the bottom left view is composed
    EXPECT_EQ(at(kW), 0xEE);                       // the column between the views is not written
    quadrant(3, bottomLeft);
    EXPECT_EQ(at(kH * kFrameW), 80);
    quadrant(4, right);
    // The last row's spill lands on the first chroma byte: this view's own chroma starts elsewhere.
    EXPECT_EQ(at(kLuma), 10 + kH * kW - 1);
}

TEST_F(Compose, OddHeightsRoundChromaRowsUp)
{
    engine.m_nFormat = FORMAT_NV12;
    Bytes src(kW * 5 + kW * 3, 7);
    frame.assign(kFrameW * 10 * 3 / 2 + kFrameW, 0xEE);
    engine.SnapShotM1(src.data(), nullptr, nullptr, nullptr, frame.data(), kW, 5);
    EXPECT_EQ(changed(), kW * 5 + kW * 3);
}

TEST_F(Compose, UpperViewsOfThe360Frame)
{
    engine.m_nFormat = FORMAT_NV12;
    constexpr int H = 8, luma = kFrameW * H;
    Bytes left = view(kW, kH, 10), right = view(kW, kH, 60);
    frame.assign(luma * 3 / 2, 0xEE);
    engine.SnapShotM2(left.data(), right.data(), nullptr, frame.data(), kW, kH, 1, 0, H);
    EXPECT_EQ(changed(), kW * kH * 3 / 2); // only the left one
    engine.SnapShotM2(nullptr, right.data(), nullptr, frame.data(), kW, kH, 1, 0, H);
    for (int r = 0; r < kH; ++r) {
        EXPECT_EQ(at(r * kFrameW), 10 + r * kW);
        EXPECT_EQ(at(r * kFrameW + kW), 0xEE); // never written
        EXPECT_EQ(at(r * kFrameW + kW + 1), 60 + r * kW);
        EXPECT_EQ(at(r * kFrameW + 2 * kW - 1), 60 + r * kW + kW - 2); // its last column is dropped
    }
    EXPECT_EQ(at(luma + kW - 1), 10 + kW * kH + kW - 1);
    EXPECT_EQ(at(luma + kW), 60 + kW * kH);
    EXPECT_EQ(at(luma + kFrameW), 10 + kW * kH + kW);

    engine.m_nFormat = FORMAT_YV12;
    frame.assign(luma * 3 / 2, 0xEE);
    engine.SnapShotM2(nullptr, right.data(), nullptr, frame.data(), kW, kH, 1, 0, H);
    EXPECT_EQ(at(luma + kW / 2), 60 + kW * kH);
    EXPECT_EQ(at(luma + kW + kW / 2), 60 + kW * kH + kW / 2);
    EXPECT_EQ(at(luma + luma / 4 + kW / 2), 60 + kW * kH + kW * kH / 4);
}

TEST_F(Compose, TheStripStartsAtItsRow)
{
    constexpr int H = 20, top = 12, w = 10, h = 8; // 20 / 1.538 = 13.004
    constexpr int luma = w * H;
    Bytes strip = view(w, h, 1);
    for (FORMAT format : {FORMAT_NV12, FORMAT_YV12}) {
        engine.m_nFormat = format;
        frame.assign(luma * 3 / 2, 0xEE);
        engine.SnapShotM2(nullptr, nullptr, strip.data(), frame.data(), w, h, 1, 0, H);
        EXPECT_EQ(changed(), w * h * 3 / 2);
        EXPECT_EQ(at(top * w - 1), 0xEE);
        EXPECT_EQ(at(top * w), 1);
        EXPECT_EQ(at(luma - 1), w * h);
        if (format == FORMAT_NV12) {
            EXPECT_EQ(at(luma + w / 2 * top), w * h + 1);
            EXPECT_EQ(at(luma * 3 / 2 - 1), w * h * 3 / 2);
        } else {
            EXPECT_EQ(at(luma + w / 2 * top / 2), w * h + 1);
            EXPECT_EQ(at(luma + w / 2 * H / 2 + w / 2 * top / 2), w * h + w * h / 4 + 1);
        }
    }
}

TEST_F(Compose, EmptyAndNegativeViewsDoNothing)
{
    Bytes src = view(kW, kH, 10);
    engine.SnapShotM1(src.data(), nullptr, nullptr, nullptr, frame.data(), 0, kH);
    engine.SnapShotM2(nullptr, nullptr, src.data(), frame.data(), kW, -64, 1, 0, 8);
    EXPECT_EQ(changed(), 0);
}

TEST_F(Compose, TheCallersFrameIsTheLimitWhileItIsRendered)
{
    engine.m_nFormat = FORMAT_NV12;
    Bytes src = view(kW, kH, 10);
    engine.m_pOutput = frame.data();
    engine.m_nOutputBytes = kFrameW * 2 + 3;
    quadrant(1, src);
    EXPECT_EQ(changed(), 2 * kW + 3);
    quadrant(4, src);
    EXPECT_EQ(changed(), 2 * kW + 3);
}
