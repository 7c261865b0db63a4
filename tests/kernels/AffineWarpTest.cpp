#include "AffineWarp.h"

#include "Frames.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr float kIdentity[6] = {1, 0, 0, 0, 1, 0};
using Shorts = std::vector<unsigned short>;

} // namespace

TEST(LMAffine, InterpolatesAndTruncates)
{
    const Bytes src{10, 20, 30, 40, 50, 60, 70, 80, 90};
    unsigned char out[2] = {};
    const float coef[6] = {1, 0, 0.5f, 0, 1, 0.25f}; // x + 0.5, y + 0.25
    EXPECT_EQ(LM_Affine(src.data(), 3, 3, 3, out, 2, 1, 2, coef), 0);
    EXPECT_EQ(out[0], 22); // 15 * 0.75 + 45 * 0.25 = 22.5
    EXPECT_EQ(out[1], 32);
}

TEST(LMAffine, RotatesAndUsesPitches)
{
    // 4 columns in rows of 5; the destination is the transpose, in rows of 3.
    const Bytes src{1, 2, 3, 4, 99, 5, 6, 7, 8, 99, 9, 10, 11, 12, 99, 13, 14, 15, 16, 99};
    Bytes out(6, 0xEE);
    const float transpose[6] = {0, 1, 0, 1, 0, 0};
    EXPECT_EQ(LM_Affine(src.data(), 4, 4, 5, out.data(), 2, 2, 3, transpose), 0);
    EXPECT_EQ(out, (Bytes{1, 5, 0xEE, 2, 6, 0xEE}));
}

TEST(LMAffineCheck, TheLastTwoColumnsAndRowsAreOutside)
{
    Bytes src(36), out(36, 0xEE);
    for (std::size_t i = 0; i < 36; ++i)
        src[i] = static_cast<unsigned char>(i + 1);
    EXPECT_EQ(LM_Affine_check(src.data(), 6, 6, 6, out.data(), 6, 6, 6, kIdentity, 0), 0);
    for (std::size_t y = 0; y < 6; ++y)
        for (std::size_t x = 0; x < 6; ++x)
            EXPECT_EQ(out[6 * y + x], x < 4 && y < 4 ? src[6 * y + x] : 0) << x << " " << y;
    // Shifted by -0.5 the first column and row have a negative corner.
    const float shifted[6] = {1, 0, -0.5f, 0, 1, -0.5f};
    LM_Affine_check(src.data(), 6, 6, 6, out.data(), 6, 6, 6, shifted, 0);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[6 + 0], 0);
    EXPECT_EQ(out[6 + 1], 4); // the mean of 1, 2, 7, 8 is 4.5
}

TEST(LMAffineCheck, TheFillValueNeverSurvives)
{
    const Bytes src(16, 50);
    Bytes out(16, 0xEE);
    const float far[6] = {1, 0, 100, 0, 1, 0};
    EXPECT_EQ(LM_Affine_check(src.data(), 4, 4, 4, out.data(), 4, 4, 4, far, 200), 0);
    EXPECT_EQ(out, Bytes(16, 0));
}

TEST(LMAffineCheck, PositionsThatAreNoNumbersAreOutside)
{
    const Bytes src(16, 50);
    Bytes out(4, 0xEE);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (float bad : {nan, 1e30f, -1e30f, std::numeric_limits<float>::infinity()}) {
        const float coef[6] = {1, 0, bad, 0, 1, bad};
        EXPECT_EQ(LM_Affine_check(src.data(), 4, 4, 4, out.data(), 2, 2, 2, coef, 9), 0);
        EXPECT_EQ(out, Bytes(4, 0));
        out.assign(4, 0xEE);
    }
}

TEST(LMAffineCheck, AFlatImageStaysFlat)
{
    const Bytes src(64 * 64, 201);
    Bytes out(200 * 90);
    for (float scale : {0.1f, 0.317f, 0.6667f}) {
        const float coef[6] = {scale, 0, 0.3f, 0, scale, 0.7f};
        LM_Affine_check(src.data(), 64, 64, 64, out.data(), 200, 90, 200, coef, 0);
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 200; ++x) {
                const bool inside = double(x) * double(scale) + 0.3 < 61.9 &&
                                    double(y) * double(scale) + 0.7 < 61.9;
                if (!inside) continue;
                ASSERT_EQ(out[std::size_t(200 * y + x)], 201) << scale << " " << x << " " << y;
            }
    }
}

TEST(LMAffineUV, TheTwoBytesAreChannelsOfTheirOwn)
{
    const Shorts src{0x0A64, 0x14C8, 0x1E00, 0x28FF, 0, 0, 0, 0, 0};
    unsigned short out = 0;
    const float half[6] = {1, 0, 0.5f, 0, 1, 0};
    EXPECT_EQ(LM_Affine_UV(src.data(), 3, 3, 3, &out, 1, 1, 1, half), 0);
    EXPECT_EQ(out, 0x0F96); // means of 0x0A and 0x14, of 0x64 and 0xC8
}

TEST(LMAffineUVCheck, OutsideIsNeutral)
{
    const Shorts src(16, 0x1234);
    Shorts out(16, 0xEEEE);
    EXPECT_EQ(LM_Affine_UV_check(src.data(), 4, 4, 4, out.data(), 4, 4, 4, kIdentity), 0);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(out[i], i % 4 < 2 && i / 4 < 2 ? 0x1234 : 0x8080) << i;
}

TEST(Warpers, BadArgumentsFailWithoutWriting)
{
    const Bytes src(64, 5);
    const Shorts wide(64, 5);
    Bytes out(64, 0xEE);
    Shorts wideOut(64, 0xEEEE);
    struct Case {
        int srcW, srcH, srcPitch, dstW, dstH, dstPitch;
    };
    for (const Case& c : {Case{0, 4, 4, 4, 4, 4},
                          {4, 0, 4, 4, 4, 4},
                          {4, 4, 0, 4, 4, 4},
                          {4, 4, 4, 0, 4, 4},
                          {4, 4, 4, 4, 0, 4},
                          {4, 4, 4, 4, 4, 0},
                          {4, 4, 4, 4, -1, 4}}) {
        EXPECT_EQ(LM_Affine(src.data(), c.srcW, c.srcH, c.srcPitch, out.data(), c.dstW, c.dstH,
                            c.dstPitch, kIdentity),
                  -1);
        EXPECT_EQ(LM_Affine_check(src.data(), c.srcW, c.srcH, c.srcPitch, out.data(), c.dstW,
                                  c.dstH, c.dstPitch, kIdentity, 0),
                  -1);
        EXPECT_EQ(LM_Affine_UV(wide.data(), c.srcW, c.srcH, c.srcPitch, wideOut.data(), c.dstW,
                               c.dstH, c.dstPitch, kIdentity),
                  -1);
        EXPECT_EQ(LM_Affine_UV_check(wide.data(), c.srcW, c.srcH, c.srcPitch, wideOut.data(),
                                     c.dstW, c.dstH, c.dstPitch, kIdentity),
                  -1);
    }
    EXPECT_EQ(LM_Affine(nullptr, 4, 4, 4, out.data(), 4, 4, 4, kIdentity), -1);
    EXPECT_EQ(LM_Affine_check(src.data(), 4, 4, 4, nullptr, 4, 4, 4, kIdentity, 0), -1);
    EXPECT_EQ(LM_Affine_UV(wide.data(), 4, 4, 4, wideOut.data(), 4, 4, 4, nullptr), -1);
    EXPECT_EQ(LM_Affine_UV_check(nullptr, 4, 4, 4, wideOut.data(), 4, 4, 4, kIdentity), -1);
    EXPECT_EQ(out, Bytes(64, 0xEE));
    EXPECT_EQ(wideOut, Shorts(64, 0xEEEE));
}
