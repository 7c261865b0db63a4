// Resizing of semi-planar images.
#include "FEDSP.h"

#include "AffineWarp.h"

#include <cstdio>

int FEDSP::resize_image(unsigned char* pSrc, unsigned char* pDst, const int& nSrcW,
                        const int& nSrcH, const int& nDstW, const int& nDstH)
{
    _RTMat scale, inverse;
    GenScaleMat(float(nDstW) / float(nSrcW), float(nDstH) / float(nSrcH), &scale);
    if (RTInv(&scale, &inverse) != 0) return std::printf("%s:: RTInv() Error!! ", "resize_image");
    if (nSrcW <= 0 || nSrcH <= 0 || nDstW <= 0 || nDstH <= 0) return -1;

    LM_Affine_check(pSrc, nSrcW, nSrcH, nSrcW, pDst, nDstW, nDstH, nDstW, inverse.m, 128);
    // The luma plane's coefficients serve the chroma plane too: both are halved.
    const void* srcChroma = pSrc + std::ptrdiff_t(nSrcW) * nSrcH;
    void* dstChroma = pDst + std::ptrdiff_t(nDstW) * nDstH;
    return LM_Affine_UV_check(static_cast<const unsigned short*>(srcChroma), nSrcW / 2, nSrcH / 2,
                              nSrcW / 2, static_cast<unsigned short*>(dstChroma), nDstW / 2,
                              nDstH / 2, nDstW / 2, inverse.m);
}
