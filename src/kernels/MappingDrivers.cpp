// The mapping drivers: one choice of kernel by format, under the published names.
#include "FEDSP.h"

#include <cstdio>

namespace {

bool isSemiPlanar(FORMAT format)
{
    return format == FORMAT_YUYV || format == FORMAT_NV12;
}

} // namespace

void FEDSP::FCMapping(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                      int nInH, int nOutW, int nOutH, bool)
{
    if (!pTbl) return;
    if (format == FORMAT_RGB)
        Bilinear_RGB24_C(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH);
    else if (isSemiPlanar(format))
        Bilinear_NV12_C(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, m_nPitch);
    else
        Bilinear_YV12_C(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, m_nPitch);
}

int FEDSP::FCMapping_line(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl,
                          int nInW, int nInH, int nOutW, int nOutH, bool, int nLine)
{
    if (!pTbl) return -1;
    if (format == FORMAT_RGB) {
        std::puts("FORMAT_RGB is Not support ");
        return 0;
    }
    return isSemiPlanar(format)
               ? Bilinear_NV12_S(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, nLine)
               : Bilinear_YV12_S(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, nLine);
}

void FEDSP::CPIMapping(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                       int nInH, int nOutH, int, int, int nOutW, bool bSetting)
{
    FCMapping(format, pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting);
}

int FEDSP::CPIMapping_line(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl,
                           int nInW, int nInH, int nOutH, int, int, int nOutW, bool bSetting,
                           int nLine)
{
    return FCMapping_line(format, pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting, nLine);
}

void FEDSP::FCMapping_NV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                           int nOutW, int nOutH, bool bSetting)
{
    FCMapping(FORMAT_NV12, pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting);
}

int FEDSP::FCMapping_NV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, bool bSetting, int nLine)
{
    return FCMapping_line(FORMAT_NV12, pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting, nLine);
}

void FEDSP::CPIMapping_NV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                            int nOutH, int, int, int nOutW, bool bSetting)
{
    FCMapping_NV12(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting);
}

int FEDSP::CPIMapping_NV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                int nInH, int nOutH, int, int, int nOutW, bool bSetting, int nLine)
{
    return FCMapping_NV12_line(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting, nLine);
}

// Kept: the four fixed three-plane drivers run the semi-planar kernels.

void FEDSP::FCMapping_YV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                           int nOutW, int nOutH, bool bSetting)
{
    FCMapping_NV12(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting);
}

int FEDSP::FCMapping_YV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, bool bSetting, int nLine)
{
    return FCMapping_NV12_line(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting, nLine);
}

void FEDSP::CPIMapping_YV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                            int nOutH, int, int, int nOutW, bool bSetting)
{
    FCMapping_NV12(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting);
}

int FEDSP::CPIMapping_YV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                int nInH, int nOutH, int, int, int nOutW, bool bSetting, int nLine)
{
    return FCMapping_NV12_line(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, bSetting, nLine);
}
