#include "Frames.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

Bytes counting(std::size_t size, int first)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(first + int(i));
    return bytes;
}

} // namespace

TEST(SnapShotM3, StacksTwoImagesWithoutTheirLastRows)
{
    FEDSP e;
    Bytes top = counting(18, 1), bottom = counting(18, 101); // 2 x 3 pixels
    Bytes frame(36, 0xEE);
    e.SnapShotM3(top.data(), bottom.data(), frame.data(), 2, 3, 0);
    EXPECT_TRUE(std::equal(top.begin(), top.begin() + 12, frame.begin()));
    EXPECT_EQ(Bytes(frame.begin() + 12, frame.begin() + 18), Bytes(6, 0xEE));
    EXPECT_TRUE(std::equal(bottom.begin(), bottom.begin() + 12, frame.begin() + 18));
    EXPECT_EQ(Bytes(frame.begin() + 30, frame.end()), Bytes(6, 0xEE));
}

TEST(SnapShotM3, MayCentreTheFirstImage)
{
    FEDSP e;
    Bytes top = counting(18, 1), frame(36, 0xEE);
    e.SnapShotM3(top.data(), nullptr, frame.data(), 2, 3, 1); // 1.5 rows down: 1
    EXPECT_EQ(Bytes(frame.begin(), frame.begin() + 6), Bytes(6, 0xEE));
    EXPECT_TRUE(std::equal(top.begin(), top.begin() + 12, frame.begin() + 6));
    frame.assign(36, 0xEE);
    e.SnapShotM3(top.data(), nullptr, frame.data(), 2, 3, 2);
    EXPECT_EQ(frame[0], 1);
    frame.assign(36, 0xEE);
    e.SnapShotM3(nullptr, nullptr, frame.data(), 2, 3, 1);
    EXPECT_EQ(frame, Bytes(36, 0xEE));
}

TEST(SnapShotM45, CopiesAllButTheLastRow)
{
    FEDSP e;
    Bytes src = counting(18, 1), out(18, 0xEE);
    e.SnapShotM45(src.data(), out.data(), 2, 3);
    EXPECT_TRUE(std::equal(src.begin(), src.begin() + 12, out.begin()));
    EXPECT_EQ(Bytes(out.begin() + 12, out.end()), Bytes(6, 0xEE));
    e.SnapShotM45(nullptr, out.data(), 2, 3);
    e.SnapShotM45(src.data(), out.data(), 2, 1);
    EXPECT_EQ(out[12], 0xEE);
}

TEST(LcvScale, EqualSizesCopyExactly)
{
    FEDSP e;
    Bytes src = counting(5 * 4 * 3, 7), out(src.size());
    e.lcvScale(out.data(), src.data(), 5, 4, 5, 4);
    EXPECT_EQ(out, src);
}

TEST(LcvScale, HalvesAndDoubles)
{
    FEDSP e;
    Bytes src(8 * 2 * 3);
    for (std::size_t i = 0; i < src.size(); ++i)
        src[i] = static_cast<unsigned char>(i / 3 % 8 * 20 + i % 3);
    Bytes half(4 * 3), twice(16 * 2 * 3);
    e.lcvScale(half.data(), src.data(), 8, 2, 4, 1);
    // The step is trunc(1024.5 / 0.5) = 2049 of 1024 parts.
    EXPECT_EQ(half, (Bytes{0, 1, 2, 40, 41, 42, 80, 81, 82, 120, 121, 122}));
    e.lcvScale(twice.data(), src.data(), 8, 2, 16, 2);
    EXPECT_EQ(Bytes(twice.begin(), twice.begin() + 9), (Bytes{0, 1, 2, 10, 11, 12, 20, 21, 22}));
}

TEST(LcvScale, ExtrapolatesBeyondTheLastPairAndClamps)
{
    FEDSP e;
    // Step trunc(1024.5 / (2 / 3)) = 1536: output column 1 is source 1.5, beyond the pair 1, 2 only
    // from 2 on.
    Bytes src{0, 0, 0, 100, 100, 100, 200, 10, 90, 0, 0, 0, 100, 100, 100, 200, 10, 90};
    Bytes out(2 * 2 * 3);
    e.lcvScale(out.data(), src.data(), 3, 2, 2, 2);
    EXPECT_EQ(Bytes(out.begin() + 3, out.begin() + 6), (Bytes{150, 55, 95}));
    // Twice the width of 2 columns: column 3 is source 1.5, weight 1.5 on the second.
    Bytes two{100, 200, 10, 200, 100, 250, 100, 200, 10, 200, 100, 250}, four(4 * 2 * 3);
    e.lcvScale(four.data(), two.data(), 2, 2, 4, 2);
    EXPECT_EQ(Bytes(four.begin() + 9, four.begin() + 12), (Bytes{250, 50, 255}));
}

TEST(LcvScale, TinySourcesAndEmptySizesAreIgnored)
{
    FEDSP e;
    Bytes src(12, 9), out(12, 0xEE);
    e.lcvScale(out.data(), src.data(), 1, 4, 2, 2);
    e.lcvScale(out.data(), src.data(), 4, 1, 2, 2);
    e.lcvScale(out.data(), src.data(), 2, 2, 0, 2);
    e.lcvScale(out.data(), nullptr, 2, 2, 2, 2);
    EXPECT_EQ(out, Bytes(12, 0xEE));
}
