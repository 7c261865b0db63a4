// The remapping kernels: every output pixel is sampled where a mapping table says.
//
// A mapping table holds one entry per output pixel in row-major order, two 32-bit words each:
//
//     word 0, bits 0-15    vertical fraction, 1/256 pixel, 0..256: weight of the lower neighbours
//     word 0, bits 16-31   horizontal fraction, 1/256 pixel, 0..256: weight of the right neighbours
//     word 1               index of the top-left source sample: for 4:2:0 frames an element of the
//                          luma plane (row * stride + column), for 3-byte frames a byte offset
//                          (row * 3 * inW + 3 * column)
//
// An entry {0, 0} samples the first source pixel like any other entry; it is not a marker.
#ifndef LUMOFE_CBILINEAR_H
#define LUMOFE_CBILINEAR_H

#include "LumoFESDK.h"

// An entry of the fixed map: that of a mapping table, and a third word. 12 bytes.
struct FEMM_DATA {
    unsigned short fy;   // vertical fraction, 1/256 pixel: weight of the lower neighbours
    unsigned short fx;   // horizontal fraction, 1/256 pixel: weight of the right neighbours
    unsigned int index;  // row * 1280 + column of the top-left source sample
    unsigned int index2; // 0 .. 1280 * 1024 - 1: the entry's own place in the map; not used
};

// The fixed map: one entry for each pixel of a 1280 x 1024 picture, row by row, of a source of that
// size. It looks once around the middle of the fisheye circle; every entry has a source, in rows
// 127 to 896 and columns 225 to 1053. Hosts may overwrite it.
extern "C" FE_API FEMM_DATA FMMTbl[1280 * 1024];

// The remapping kernels. All but Bilinear_RGB24 use no member data; any object will do. In all of
// them
//
//   pSrc         source frame
//   pDst         output frame of nOutW x nOutH pixels, rows without padding
//   pTbl         mapping table of nOutW * nOutH entries
//   nInW, nInH   source size in pixels
//   nStride      distance of two source luma rows in bytes; that of two chroma rows is nStride
//                rounded down to even (pairs) or half of it (planes)
//
// A null pointer, or an output size, width of 3-byte input or stride below 1, does nothing. Indices
// are trusted: the table's builder keeps them inside the source. A neighbour whose weight is 0 is
// not read.
class FE_API CBilinear {
public:
    CBilinear();  // sets m_pKernel
    ~CBilinear(); // nothing to free

    // 3 bytes a pixel; bytes 0 and 2 of every pixel are exchanged. nInH is not used.
    void Bilinear_RGB24_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                          int nOutW, int nOutH);
    // 3 bytes a pixel, in source order. nInH is not used.
    void Bilinear_YUV444_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                           int nOutW, int nOutH);

    // Whole 4:2:0 frames. Luma is interpolated, chroma taken from the nearest sample: one for each
    // second entry of each second row, (nOutW + 1) / 2 * ((nOutH + 1) / 2) in all, written without
    // gaps. Each call prints two timing lines. nInW is not used.
    void Bilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                         int nOutW, int nOutH, int nStride);
    void Bilinear_YV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                         int nOutW, int nOutH, int nStride);

    // One band of 64 output rows, starting at nLine; the stride is nInW. Chroma rows are numbered
    // like the luma rows of the band, so a sequence of calls from line 0 writes each of them once.
    // Returns the line of the next call, nOutH when the frame is done, nLine when it lies outside.
    //
    // The semi-planar kernel exchanges the two bytes of each chroma pair; the three-plane kernel
    // writes both chroma planes to the place of the first.
    int Bilinear_NV12_S(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                        int nOutW, int nOutH, int nLine);
    int Bilinear_YV12_S(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                        int nOutW, int nOutH, int nLine);

    // A 4:2:0 frame with two planes through a map like FMMTbl, in grey: every chroma byte is 128.
    // The stride is nInW. pTbl, a mapping table of nOutW * nOutH entries, looks up chroma that is
    // then not used. pMap has nOutW * nOutH entries; null does nothing. Prints one timing line
    // without a line feed.
    void invBilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                            int nOutW, int nOutH, FEMM_DATA* pMap);

    // Forwards to m_pKernel, Bilinear_NV12_C unless a host changed it, when nOutW is at least 11.
    void Bilinear_RGB24(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                        int nOutW, int nOutH, int nStride);

    // Do nothing.
    void Bilinear_RGB24_SSE2(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                             int nInH, int nOutW, int nOutH);
    void Bilinear_RGB24_SSSE3(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                              int nInH, int nOutW, int nOutH);

    // The kernel that Bilinear_RGB24 calls.
    void (CBilinear::*m_pKernel)(unsigned char*, unsigned char*, int*, int, int, int, int, int);
};

#endif
