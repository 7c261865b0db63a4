// The whole-frame remapping kernels.
#include "CBilinear.h"

#include "kernels/RemapOps.h"
#include "kernels/Sampling.h"
#include "kernels/TickLines.h"

#include <algorithm>
#include <cstdio>

using namespace fe;

namespace {

// Calls take(indices, count) for the chroma of every second entry of a row, in pieces.
template <class Take>
void walkChromaRow(const RemapOps& ops, const int* row, int outW, int stride, Take take)
{
    constexpr std::size_t kPiece = 256;
    std::int32_t indices[kPiece];
    const std::size_t samples = (std::size_t(outW) + 1) / 2;
    for (std::size_t x = 0; x < samples; x += kPiece) {
        const std::size_t count = std::min(kPiece, samples - x);
        ops.chromaIndices(indices, row + 4 * x, count, stride);
        take(indices, count);
    }
}

// Maps the luma plane, and the chroma of every second row by take(indices, count).
template <class Take>
void mapPlanes(const unsigned char* src, unsigned char* dst, const int* table, int outW, int outH,
               int stride, Take take)
{
    const RemapOps& ops = remapOps(isaInUse());
    const std::size_t rowLength = std::size_t(outW);
    const std::int32_t reach = reachOf(table, rowLength * std::size_t(outH));
    for (std::size_t y = 0; y < std::size_t(outH); ++y) {
        const int* row = table + 2 * y * rowLength;
        ops.luma(src, dst + y * rowLength, row, rowLength, stride, reach);
        if (y % 2 == 0) walkChromaRow(ops, row, outW, stride, take);
    }
}

} // namespace

CBilinear::CBilinear() : m_pKernel(&CBilinear::Bilinear_NV12_C) {}

CBilinear::~CBilinear() = default;

void CBilinear::Bilinear_RGB24_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int,
                                 int nOutW, int nOutH)
{
    // Kept: red and blue change places.
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nInW)) return;
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    remapOps(isaInUse())
        .packedSwapped(pSrc, pDst, pTbl, count, 3 * std::ptrdiff_t(nInW), reachOf(pTbl, count));
}

void CBilinear::Bilinear_YUV444_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                  int, int nOutW, int nOutH)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nInW)) return;
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    remapOps(isaInUse())
        .packed(pSrc, pDst, pTbl, count, 3 * std::ptrdiff_t(nInW), reachOf(pTbl, count));
}

void CBilinear::Bilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int, int nInH,
                                int nOutW, int nOutH, int nStride)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nStride)) return;
    TickLines ticks("Bilinear_NV12_C");
    const unsigned char* chroma = pSrc + std::ptrdiff_t(nStride) * nInH;
    unsigned char* dst = pDst + std::size_t(nOutW) * std::size_t(nOutH);
    mapPlanes(pSrc, pDst, pTbl, nOutW, nOutH, nStride,
              [&](const std::int32_t* pairs, std::size_t n) {
                  for (std::size_t k = 0; k < n; ++k, dst += 2)
                      std::memcpy(dst, chroma + 2 * std::ptrdiff_t(pairs[k]), 2);
              });
    ticks.print();
}

void CBilinear::Bilinear_YV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int, int nInH,
                                int nOutW, int nOutH, int nStride)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nStride)) return;
    TickLines ticks("Bilinear_YV12_C");
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    const std::ptrdiff_t luma = std::ptrdiff_t(nStride) * nInH;
    const unsigned char* first = pSrc + luma;
    const unsigned char* second = first + luma / 4;
    unsigned char* const plane = pDst + count;
    std::size_t done = 0;
    mapPlanes(pSrc, pDst, pTbl, nOutW, nOutH, nStride,
              [&](const std::int32_t* samples, std::size_t n) {
                  for (std::size_t k = 0; k < n; ++k, ++done) {
                      // Of odd sizes the first plane would reach into the second, which wins.
                      if (done < count / 4) plane[done] = first[samples[k]];
                      plane[count / 4 + done] = second[samples[k]];
                  }
              });
    ticks.print();
}

void CBilinear::invBilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                   int nInH, int nOutW, int nOutH, FEMM_DATA* pMap)
{
    if (!pMap || !canMap(pSrc, pDst, pTbl, nOutW, nOutH, nInW)) return;
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    const std::clock_t start = std::clock();
    for (std::size_t k = 0; k < count; ++k) {
        const MapEntry entry = {pMap[k].fy | std::uint32_t(pMap[k].fx) << 16,
                                std::int32_t(pMap[k].index)};
        pDst[k] = Bilinear(entry, 1, nInW)(pSrc + entry.index);
    }
    std::printf("%s: Tick %i", "invBilinear_NV12_C", ticksSince(start));

    const unsigned char* src = pSrc + std::ptrdiff_t(nInW) * nInH;
    unsigned char* dst = pDst + count;
    const auto grey = [&](const std::int32_t* pairs, std::size_t n) {
        for (std::size_t k = 0; k < n; ++k, dst += 2) {
            dst[0] = src[2 * std::ptrdiff_t(pairs[k]) + 1];
            dst[1] = src[2 * std::ptrdiff_t(pairs[k])];
            // Kept: whatever the source's chroma is, the picture is grey.
            std::memset(dst, 0x80, 2);
        }
    };
    for (std::size_t y = 0; y < std::size_t(nOutH); y += 2)
        walkChromaRow(remapOps(isaInUse()), pTbl + 2 * y * std::size_t(nOutW), nOutW, nInW, grey);
}

void CBilinear::Bilinear_RGB24(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, int nStride)
{
    if (!pSrc || !pDst || !pTbl || nOutW < 11 || !m_pKernel) return;
    (this->*m_pKernel)(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, nStride);
}

void CBilinear::Bilinear_RGB24_SSE2(unsigned char*, unsigned char*, int*, int, int, int, int) {}

void CBilinear::Bilinear_RGB24_SSSE3(unsigned char*, unsigned char*, int*, int, int, int, int) {}
