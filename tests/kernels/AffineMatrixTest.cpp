#include "AffineWarp.h"

#include "Capture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <initializer_list>
#include <vector>

namespace {

_RTMat matrix(std::initializer_list<float> values)
{
    _RTMat m;
    std::copy(values.begin(), values.end(), m.m);
    return m;
}

std::vector<float> values(const _RTMat& m)
{
    return std::vector<float>(m.m, m.m + 9);
}

using Floats = std::vector<float>;

} // namespace

TEST(RTMat, StartsEmptyWithThreeColumnsAndRows)
{
    _RTMat m;
    EXPECT_EQ(values(m), Floats(9, 0));
    EXPECT_EQ(m.nCols, 3);
    EXPECT_EQ(m.nRows, 3);
    EXPECT_EQ(sizeof m, 44u);
    m.m[4] = 5;
    m.nCols = 2;
    m.clear();
    EXPECT_EQ(values(m), Floats(9, 0));
    EXPECT_EQ(m.nCols, 2);
}

TEST(Generators, FillTheFloatsAndLeaveTheCounts)
{
    _RTMat m;
    m.nCols = 1;
    m.nRows = 2;
    GenTransMat(7, -8, &m);
    EXPECT_EQ(values(m), (Floats{1, 0, 7, 0, 1, -8, 0, 0, 1}));
    GenScaleMat(1.5f, 0.25f, &m);
    EXPECT_EQ(values(m), (Floats{1.5f, 0, 0, 0, 0.25f, 0, 0, 0, 1}));
    GenShearMat(0.5f, 2, &m);
    EXPECT_EQ(values(m), (Floats{1, 0.5f, 0, 2, 1, 0, 0, 0, 1}));
    EXPECT_EQ(m.nCols, 1);
    EXPECT_EQ(m.nRows, 2);
}

TEST(Generators, RotationRoundsAngleSineAndCosineToFloat)
{
    _RTMat m;
    GenRotMat(30, &m);
    EXPECT_FLOAT_EQ(m.m[0], 0.8660254f);
    EXPECT_FLOAT_EQ(m.m[1], -0.5f);
    EXPECT_FLOAT_EQ(m.m[3], 0.5f);
    EXPECT_EQ(m.m[4], m.m[0]);
    EXPECT_EQ(m.m[8], 1);
    EXPECT_EQ(m.m[2] + m.m[5] + m.m[6] + m.m[7], 0);
    GenRotMat(90, &m);
    EXPECT_FLOAT_EQ(m.m[0], -4.371139e-8f); // the cosine of pi / 2 as a float
}

TEST(RTMpy, MultipliesByItsCounts)
{
    _RTMat a = matrix({1, 2, 3, 4, 5, 6, 7, 8, 9}), b = matrix({2, 0, 1, 0, 3, 0, 1, 0, 4}), p;
    p.nCols = 9;
    EXPECT_EQ(RTMpy(&a, &b, &p), 0);
    EXPECT_EQ(values(p), (Floats{5, 6, 13, 14, 15, 28, 23, 24, 43}));
    EXPECT_EQ(p.nCols, 9); // not set

    // A row of three times a column of three, stored with their own widths.
    a.nRows = 1;
    b.nCols = 1;
    EXPECT_EQ(RTMpy(&a, &b, &p), 0);
    EXPECT_EQ(values(p), (Floats{1 * 2 + 2 * 0 + 3 * 1, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(RTMpy, CountsThatDoNotMatchFailAndLeaveTheResult)
{
    _RTMat a, b, p = matrix({1, 2, 3, 4, 5, 6, 7, 8, 9});
    b.nRows = 2;
    EXPECT_EQ(RTMpy(&a, &b, &p), -1);
    a.nCols = b.nRows = -1;
    EXPECT_EQ(RTMpy(&a, &b, &p), -1);
    a.nCols = b.nRows = 4;
    EXPECT_EQ(RTMpy(&a, &b, &p), -1);
    a.nCols = b.nRows = 3;
    a.nRows = 100;
    EXPECT_EQ(RTMpy(&a, &b, &p), -1);
    EXPECT_EQ(values(p), (Floats{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(RTInv, InvertsScales)
{
    _RTMat a = matrix({4, 0, 0, 0, 0.5f, 0, 0, 0, 1}), r;
    EXPECT_EQ(RTInv(&a, &r), 0);
    EXPECT_EQ(values(r), (Floats{0.25f, 0, 0, 0, 2, 0, 0, 0, 1}));
}

TEST(RTInv, InvertsAMatrixWithoutTranslation)
{
    _RTMat a = matrix({2, 1, 0, 1, 3, 4, 0, 5, 6}), r; // det 36 - 40 - 6 = -10
    EXPECT_EQ(RTInv(&a, &r), 0);
    const Floats expected{-2 / -10.f, -6 / -10.f, 4 / -10.f,   -6 / -10.f, 12 / -10.f,
                          -8 / -10.f, 5 / -10.f,  -10 / -10.f, 5 / -10.f};
    for (std::size_t i = 0; i < 9; ++i)
        EXPECT_FLOAT_EQ(r.m[i], expected[i]) << i;
}

// Kept: the determinant adds m6 where the textbook multiplies by it.
TEST(RTInv, ATranslationGetsAnotherScale)
{
    _RTMat a = matrix({1, 0, 5, 0, 1, 0, 0, 0, 1}), r; // determinant 1 - 5 = -4
    EXPECT_EQ(RTInv(&a, &r), 0);
    EXPECT_EQ(values(r), (Floats{-0.25f, 0, 1.25f, 0, -0.25f, 0, 0, 0, -0.25f}));
    a = matrix({1, 0, 0, 0, 1, 0, 3, 0, 1}); // 1 + 3 = 4
    EXPECT_EQ(RTInv(&a, &r), 0);
    EXPECT_EQ(values(r), (Floats{0.25f, 0, 0, 0, 0.25f, 0, -0.75f, 0, 0.25f}));
}

TEST(RTInv, SingularMatricesPrintALineAndLeaveZeros)
{
    _RTMat a, r = matrix({1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(RTInv(&a, &r), -1); }), "Z ~= 0  0.000000\n");
    EXPECT_EQ(values(r), Floats(9, 0));
    a = matrix({1e-9f, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_EQ(RTInv(&a, &r), -1);
    a = matrix({1e-7f, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_EQ(RTInv(&a, &r), 0);
}

TEST(RTInv, ANegativeColumnCountFails)
{
    _RTMat a = matrix({1, 0, 0, 0, 1, 0, 0, 0, 1}), r = matrix({1, 2, 3, 4, 5, 6, 7, 8, 9});
    a.nCols = -1;
    EXPECT_EQ(RTInv(&a, &r), -1);
    EXPECT_EQ(r.m[4], 5);
}
