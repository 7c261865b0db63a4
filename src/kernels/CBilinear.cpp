// The whole-frame remapping kernels.
#include "CBilinear.h"

#include "kernels/CopyPairs.h"
#include "kernels/RemapOps.h"
#include "kernels/Sampling.h"
#include "kernels/TickLines.h"

#include <algorithm>
#include <cstdio>

using namespace fe;

namespace {

// A rotated view's row crosses hundreds of the source's lines. Narrow strips keep to a few, which
// the next rows need again.
constexpr std::size_t kStrip = 128; // pixels

// Calls row(first pixel, count, entries) for each row of each strip of a picture.
template <class Row>
void walkStrips(const int* table, int outW, int outH, Row row)
{
    const std::size_t w = std::size_t(outW), h = std::size_t(outH);
    for (std::size_t x = 0; x < w; x += kStrip)
        for (std::size_t y = 0; y < h; ++y) {
            const std::size_t first = y * w + x;
            row(first, std::min(kStrip, w - x), table + 2 * first);
        }
}

// How many bytes of the table ahead samples are fetched from a part of it that ends here: eight
// rows, if there are as many.
std::size_t aheadOf(std::size_t end, std::size_t pixels, int outW)
{
    const std::size_t eightRows = 8 * std::size_t(outW);
    return end + eightRows <= pixels ? eightRows * kMapEntryBytes : 0;
}

// Calls take(number of the first sample, indices, count) for a row's chroma.
template <class Take>
void takeChroma(const RemapOps& ops, const int* entries, std::size_t pixels, const Divider& stride,
                std::size_t first, Take take)
{
    std::int32_t indices[kStrip / 2];
    const std::size_t count = (pixels + 1) / 2;
    ops.chromaIndices(indices, entries, count, stride);
    take(first, indices, count);
}

// Number of a pixel's chroma sample in a picture so wide; of even rows and columns only.
std::size_t sampleOf(std::size_t pixel, int outW)
{
    const std::size_t w = std::size_t(outW), y = pixel / w;
    return y / 2 * ((w + 1) / 2) + (pixel - y * w) / 2;
}

// Maps the luma plane, and the chroma of every second row by take(first sample, indices, count).
template <class Take>
void mapPlanes(const unsigned char* src, unsigned char* dst, const int* table, int outW, int outH,
               int stride, Take take)
{
    const RemapOps& ops = remapOps(isaInUse());
    const Divider divider(stride);
    const std::size_t pixels = std::size_t(outW) * std::size_t(outH);
    const std::int32_t reach = reachOf(table, pixels);
    walkStrips(table, outW, outH, [&](std::size_t first, std::size_t count, const int* entries) {
        ops.luma(src, dst + first, entries, count, stride, reach,
                 aheadOf(first + count, pixels, outW));
        if (first / std::size_t(outW) % 2 == 0)
            takeChroma(ops, entries, count, divider, sampleOf(first, outW), take);
    });
}

void mapPixels(const unsigned char* src, unsigned char* dst, const int* table, int inW, int outW,
               int outH, bool swapped)
{
    if (!canMap(src, dst, table, outW, outH, inW)) return;
    const RemapOps& ops = remapOps(isaInUse());
    const auto map = swapped ? ops.packedSwapped : ops.packed;
    const std::size_t pixels = std::size_t(outW) * std::size_t(outH);
    const std::int32_t reach = reachOf(table, pixels);
    walkStrips(table, outW, outH, [&](std::size_t first, std::size_t count, const int* entries) {
        map(src, dst + 3 * first, entries, count, 3 * std::ptrdiff_t(inW), reach,
            aheadOf(first + count, pixels, outW));
    });
}

} // namespace

CBilinear::CBilinear() : m_pKernel(&CBilinear::Bilinear_NV12_C) {}

CBilinear::~CBilinear() = default;

void CBilinear::Bilinear_RGB24_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int,
                                 int nOutW, int nOutH)
{
    // Kept: red and blue change places.
    mapPixels(pSrc, pDst, pTbl, nInW, nOutW, nOutH, true);
}

void CBilinear::Bilinear_YUV444_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                  int, int nOutW, int nOutH)
{
    mapPixels(pSrc, pDst, pTbl, nInW, nOutW, nOutH, false);
}

void CBilinear::Bilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int, int nInH,
                                int nOutW, int nOutH, int nStride)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nStride)) return;
    TickLines ticks("Bilinear_NV12_C");
    const unsigned char* chroma = pSrc + std::ptrdiff_t(nStride) * nInH;
    unsigned char* dst = pDst + std::size_t(nOutW) * std::size_t(nOutH);
    const bool grouped = isaInUse() != Isa::plain;
    mapPlanes(pSrc, pDst, pTbl, nOutW, nOutH, nStride,
              [=](std::size_t first, const std::int32_t* pairs, std::size_t n) {
                  if (grouped) {
                      copyPairs(pairs, n, chroma, dst + 2 * first);
                      return;
                  }
                  for (std::size_t k = 0; k < n; ++k)
                      std::memcpy(dst + 2 * (first + k), chroma + 2 * std::ptrdiff_t(pairs[k]), 2);
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
    unsigned char* plane = pDst + count;
    mapPlanes(pSrc, pDst, pTbl, nOutW, nOutH, nStride,
              [=](std::size_t start, const std::int32_t* samples, std::size_t n) {
                  for (std::size_t k = 0; k < n; ++k) {
                      // Of odd sizes the first plane would reach into the second, which wins.
                      if (start + k < count / 4) plane[start + k] = first[samples[k]];
                      plane[count / 4 + start + k] = second[samples[k]];
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
    const auto grey = [=](std::size_t first, const std::int32_t* pairs, std::size_t n) {
        for (std::size_t k = 0; k < n; ++k) {
            unsigned char* pair = dst + 2 * (first + k);
            pair[0] = src[2 * std::ptrdiff_t(pairs[k]) + 1];
            pair[1] = src[2 * std::ptrdiff_t(pairs[k])];
            // Kept: whatever the source's chroma is, the picture is grey.
            std::memset(pair, 0x80, 2);
        }
    };
    const RemapOps& ops = remapOps(isaInUse());
    const Divider divider(nInW);
    walkStrips(pTbl, nOutW, nOutH, [&](std::size_t first, std::size_t pixels, const int* entries) {
        if (first / std::size_t(nOutW) % 2 == 0)
            takeChroma(ops, entries, pixels, divider, sampleOf(first, nOutW), grey);
    });
}

void CBilinear::Bilinear_RGB24(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, int nStride)
{
    if (!pSrc || !pDst || !pTbl || nOutW < 11 || !m_pKernel) return;
    (this->*m_pKernel)(pSrc, pDst, pTbl, nInW, nInH, nOutW, nOutH, nStride);
}

void CBilinear::Bilinear_RGB24_SSE2(unsigned char*, unsigned char*, int*, int, int, int, int) {}

void CBilinear::Bilinear_RGB24_SSSE3(unsigned char*, unsigned char*, int*, int, int, int, int) {}
