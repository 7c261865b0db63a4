// The matrix toolkit. Expressions are double; they round to float where a matrix holds them.
#include "AffineWarp.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace {

void setMatrix(_RTMat* M, const float (&values)[9])
{
    std::copy(std::begin(values), std::end(values), M->m);
}

bool isCount(int count)
{
    return count >= 0 && count <= 3;
}

} // namespace

_RTMat::_RTMat() : nCols(3), nRows(3)
{
    clear();
}

void _RTMat::clear()
{
    std::fill(std::begin(m), std::end(m), 0.0f);
}

void GenRotMat(float deg, _RTMat* M)
{
    const float theta = float(double(deg) / 180 * 3.141592653589793);
    const float co = float(std::cos(double(theta)));
    const float si = float(std::sin(double(theta)));
    setMatrix(M, {co, -si, 0, si, co, 0, 0, 0, 1});
}

void GenTransMat(int tx, int ty, _RTMat* M)
{
    setMatrix(M, {1, 0, float(tx), 0, 1, float(ty), 0, 0, 1});
}

void GenScaleMat(float sx, float sy, _RTMat* M)
{
    setMatrix(M, {sx, 0, 0, 0, sy, 0, 0, 0, 1});
}

void GenShearMat(float shx, float shy, _RTMat* M)
{
    setMatrix(M, {1, shx, 0, shy, 1, 0, 0, 0, 1});
}

int RTMpy(_RTMat* A, _RTMat* B, _RTMat* P)
{
    if (A->nCols != B->nRows) return -1;
    if (!isCount(A->nCols) || !isCount(A->nRows) || !isCount(B->nCols)) return -1;
    P->clear();
    for (int r = 0; r < A->nRows; ++r)
        for (int k = 0; k < B->nCols; ++k) {
            float& sum = P->m[r * B->nCols + k];
            for (int j = 0; j < B->nRows; ++j)
                sum = float(double(sum) +
                            double(A->m[A->nCols * r + j]) * double(B->m[B->nCols * j + k]));
        }
    return 0;
}

int RTInv(_RTMat* A, _RTMat* R)
{
    if (A->nCols < 0) return -1;
    double m[9];
    std::copy(std::begin(A->m), std::end(A->m), m);
    R->clear();

    // Kept: "- m2 * m4 + m6" where the determinant has "- m2 * m4 * m6".
    const float det = float(m[0] * m[4] * m[8] + m[1] * m[5] * m[6] + m[2] * m[3] * m[7] -
                            m[2] * m[4] + m[6] - m[0] * m[5] * m[7] - m[1] * m[3] * m[8]);
    if (std::fabs(double(det)) < 1e-8) {
        std::printf("Z ~= 0  %f\n", std::fabs(double(det)));
        return -1;
    }
    const double cofactors[9] = {
        m[4] * m[8] - m[7] * m[5], m[2] * m[7] - m[8] * m[1], m[1] * m[5] - m[4] * m[2],
        m[5] * m[6] - m[8] * m[3], m[0] * m[8] - m[6] * m[2], m[2] * m[3] - m[5] * m[0],
        m[3] * m[7] - m[6] * m[4], m[1] * m[6] - m[7] * m[0], m[0] * m[4] - m[3] * m[1]};
    std::transform(std::begin(cofactors), std::end(cofactors), R->m,
                   [det](double cofactor) { return float(cofactor) / det; });
    return 0;
}
