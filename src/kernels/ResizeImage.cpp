// Resizing of semi-planar images.
#include "FEDSP.h"

#include "AffineWarp.h"
#include "kernels/ScalePlane.h"

#include <cstdio>

int FEDSP::resize_image(unsigned char* pSrc, unsigned char* pDst, const int& nSrcW,
                        const int& nSrcH, const int& nDstW, const int& nDstH)
{
    _RTMat scale, inverse;
    GenScaleMat(float(nDstW) / float(nSrcW), float(nDstH) / float(nSrcH), &scale);
    if (RTInv(&scale, &inverse) != 0) return std::printf("%s:: RTInv() Error!! ", "resize_image");
    if (nSrcW <= 0 || nSrcH <= 0 || nDstW <= 0 || nDstH <= 0) return -1;

    const fe::Isa isa = fe::isaInUse();
    fe::PlaneScaling plane{pSrc,  nSrcW,        nSrcH,        pDst, nDstW,
                           nDstH, inverse.m[0], inverse.m[4], 1,    0};
    if (!fe::scalePlane(plane, isa))
        LM_Affine_check(pSrc, nSrcW, nSrcH, nSrcW, pDst, nDstW, nDstH, nDstW, inverse.m, 128);

    // The luma plane's coefficients serve the chroma plane too: both are halved.
    plane.src += std::ptrdiff_t(nSrcW) * nSrcH;
    plane.dst += std::ptrdiff_t(nDstW) * nDstH;
    plane.srcW = nSrcW / 2;
    plane.srcH = nSrcH / 2;
    plane.dstW = nDstW / 2;
    plane.dstH = nDstH / 2;
    plane.channels = 2;
    plane.outside = 0x80;
    if (fe::scalePlane(plane, isa)) return 0;
    const void* src = plane.src;
    void* dst = plane.dst;
    return LM_Affine_UV_check(static_cast<const unsigned short*>(src), plane.srcW, plane.srcH,
                              plane.srcW, static_cast<unsigned short*>(dst), plane.dstW, plane.dstH,
                              plane.dstW, inverse.m);
}
