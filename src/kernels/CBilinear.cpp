// The whole-frame remapping kernels.
#include "CBilinear.h"

#include "kernels/Sampling.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace fe;

namespace {

// Maps packed pixels of 3 bytes; output byte c comes from source byte order[c].
void mapPacked(const unsigned char* src, unsigned char* dst, const int* table, int inW, int outW,
               int outH, const int (&order)[3])
{
    if (!canMap(src, dst, table, outW, outH, inW)) return;
    const std::size_t count = std::size_t(outW) * std::size_t(outH);
    for (std::size_t k = 0; k < count; ++k, dst += 3) {
        const MapEntry entry = loadEntry(table, k);
        const Bilinear sample(entry, 3, std::ptrdiff_t(inW) * 3);
        for (int c = 0; c < 3; ++c)
            dst[c] = sample(src + entry.index + order[c]);
    }
}

// Calls take(chroma index) for each second entry of each second row.
template <class Take>
void walkChroma(const int* table, int outW, int outH, int stride, Take take)
{
    for (int y = 0; y < outH; y += 2) {
        const std::size_t row = std::size_t(y) * std::size_t(outW);
        for (int x = 0; x < outW; x += 2)
            take(chromaIndex(loadEntry(table, row + std::size_t(x)).index, stride));
    }
}

int ticksSince(std::clock_t start)
{
    return std::abs(int(start - std::clock()));
}

// Prints the two timing lines of a kernel.
class TickLines {
public:
    explicit TickLines(const char* kernel) : kernel_(kernel), start_(std::clock()) {}

    void lumaDone()
    {
        // Kept: nothing counts empty pixels, and the line says so.
        const int emptyPixels = 0;
        std::printf("%s: luma Tick %i, sum_empty_pixel %i\n", kernel_, ticksSince(start_),
                    emptyPixels);
        start_ = std::clock();
    }
    void chromaDone() const { std::printf("%s: chroma Tick %i\n", kernel_, ticksSince(start_)); }

private:
    const char* kernel_;
    std::clock_t start_;
};

} // namespace

CBilinear::CBilinear() : m_pKernel(&CBilinear::Bilinear_NV12_C) {}

CBilinear::~CBilinear() = default;

void CBilinear::Bilinear_RGB24_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int,
                                 int nOutW, int nOutH)
{
    // Kept: red and blue change places.
    mapPacked(pSrc, pDst, pTbl, nInW, nOutW, nOutH, {2, 1, 0});
}

void CBilinear::Bilinear_YUV444_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                                  int, int nOutW, int nOutH)
{
    mapPacked(pSrc, pDst, pTbl, nInW, nOutW, nOutH, {0, 1, 2});
}

void CBilinear::Bilinear_NV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int, int nInH,
                                int nOutW, int nOutH, int nStride)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nStride)) return;
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    TickLines ticks("Bilinear_NV12_C");
    mapLumaRows(pSrc, pDst, pTbl, 0, count, nStride);
    ticks.lumaDone();

    const unsigned char* src = pSrc + std::ptrdiff_t(nStride) * nInH;
    unsigned char* dst = pDst + count;
    walkChroma(pTbl, nOutW, nOutH, nStride, [&](std::ptrdiff_t pair) {
        std::memcpy(dst, src + 2 * pair, 2);
        dst += 2;
    });
    ticks.chromaDone();
}

void CBilinear::Bilinear_YV12_C(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int, int nInH,
                                int nOutW, int nOutH, int nStride)
{
    if (!canMap(pSrc, pDst, pTbl, nOutW, nOutH, nStride)) return;
    const std::size_t count = std::size_t(nOutW) * std::size_t(nOutH);
    TickLines ticks("Bilinear_YV12_C");
    mapLumaRows(pSrc, pDst, pTbl, 0, count, nStride);
    ticks.lumaDone();

    const std::ptrdiff_t luma = std::ptrdiff_t(nStride) * nInH;
    for (int plane = 0; plane < 2; ++plane) {
        const unsigned char* src = pSrc + luma + plane * (luma / 4);
        unsigned char* dst = pDst + count + std::size_t(plane) * (count / 4);
        walkChroma(pTbl, nOutW, nOutH, nStride,
                   [&](std::ptrdiff_t sample) { *dst++ = src[sample]; });
    }
    ticks.chromaDone();
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
    walkChroma(pTbl, nOutW, nOutH, nInW, [&](std::ptrdiff_t pair) {
        dst[0] = src[2 * pair + 1];
        dst[1] = src[2 * pair];
        // Kept: whatever the source's chroma is, the picture is grey.
        std::memset(dst, 0x80, 2);
        dst += 2;
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
