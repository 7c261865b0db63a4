// A 3x3 matrix toolkit and four inverse-mapping affine warpers.
//
// Matrices act on column vectors (x, y, 1). The functions return 0 for success and -1 for failure.
#ifndef LUMOFE_AFFINEWARP_H
#define LUMOFE_AFFINEWARP_H

#include "LumoFESDK.h"

// A matrix of up to 3x3 floats, stored row by row. The counts say how much of it RTMpy uses; the
// generators leave them alone.
struct FE_API _RTMat {
    float m[9]; // row by row
    int nCols;  // columns that RTMpy uses, 0..3
    int nRows;  // rows that RTMpy uses, 0..3

    _RTMat();     // 3x3, all zero
    void clear(); // zeroes the floats
};

// M = rotation by deg degrees: [cos -sin 0; sin cos 0; 0 0 1].
FE_API void GenRotMat(float deg, _RTMat* M);
// M = [1 0 tx; 0 1 ty; 0 0 1].
FE_API void GenTransMat(int tx, int ty, _RTMat* M);
// M = [sx 0 0; 0 sy 0; 0 0 1].
FE_API void GenScaleMat(float sx, float sy, _RTMat* M);
// M = [1 shx 0; shy 1 0; 0 0 1].
FE_API void GenShearMat(float shx, float shy, _RTMat* M);

// P = A * B. P's counts are not set. Fails, leaving P as it was, when the counts do not match or
// are not 0..3. P must not be A or B.
FE_API int RTMpy(_RTMat* A, _RTMat* B, _RTMat* P);

// R = inverse of A by cofactors. The determinant holds - m2 * m4 + m6 in place of - m2 * m4 * m6,
// so the result is a true inverse only when m2 and m6 are 0, as for scales. A determinant below
// 1e-8 prints a line, leaves R all zero and fails, as does a negative column count.
FE_API int RTInv(_RTMat* A, _RTMat* R);

// The warpers walk the destination: pixel (dx, dy) is interpolated at source position
//
//     x = dx * coef[0] + (dy * coef[1] + coef[2])
//     y = dx * coef[3] + (dy * coef[4] + coef[5])
//
// Sizes and pitches are in samples. Null pointers, and sizes or pitches below 1, fail. The plain
// variants trust the caller that every 2x2 neighbourhood lies in the source. The _check variants
// write 0 (0x8080 for the 16-bit ones) where the neighbourhood's corner is negative or lies in the
// last two columns or rows; `fill` is accepted and never survives. The _UV variants treat the two
// bytes of each 16-bit sample as channels of their own.
FE_API int LM_Affine(const unsigned char* src, int srcW, int srcH, int srcPitch, unsigned char* dst,
                     int dstW, int dstH, int dstPitch, const float* coef);
FE_API int LM_Affine_check(const unsigned char* src, int srcW, int srcH, int srcPitch,
                           unsigned char* dst, int dstW, int dstH, int dstPitch, const float* coef,
                           unsigned char fill);
FE_API int LM_Affine_UV(const unsigned short* src, int srcW, int srcH, int srcPitch,
                        unsigned short* dst, int dstW, int dstH, int dstPitch, const float* coef);
FE_API int LM_Affine_UV_check(const unsigned short* src, int srcW, int srcH, int srcPitch,
                              unsigned short* dst, int dstW, int dstH, int dstPitch,
                              const float* coef);

#endif
