// The remapping kernels that do a band of output rows per call.
#include "CBilinear.h"

#include "kernels/RemapOps.h"
#include "kernels/Sampling.h"

#include <algorithm>

using namespace fe;

namespace {

constexpr int kBandRows = 64;

// Maps the luma rows of the band that starts at `line` and calls put(chroma row, x, chroma index)
// for its chroma. Returns the first row after the band.
template <class Put>
int mapBand(const unsigned char* src, unsigned char* dst, const int* table, int inW, int outW,
            int outH, int line, Put put)
{
    if (line >= outH || line < 0 || !canMap(src, dst, table, outW, outH, inW)) return line;
    const int end = outH - line > kBandRows ? line + kBandRows : outH;
    const std::size_t rowLength = std::size_t(outW);
    const std::size_t first = std::size_t(line) * rowLength;
    const std::size_t count = std::size_t(end - line) * rowLength;
    const int* band = table + 2 * first;
    remapOps(isaInUse()).luma(src, dst + first, band, count, inW, reachOf(band, count), 0);

    // Kept: chroma rows are counted like the band's luma rows, so the first half of the bands
    // writes all of them.
    for (int q = line; q < std::min(end, (outH + 1) / 2); ++q) {
        const std::size_t row = 2 * std::size_t(q) * rowLength;
        for (int x = 0; x < outW; x += 2)
            put(std::size_t(q), std::size_t(x),
                chromaIndex(loadEntry(table, row + std::size_t(x)).index, inW));
    }
    return end;
}

} // namespace

int CBilinear::Bilinear_NV12_S(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, int nLine)
{
    return mapBand(pSrc, pDst, pTbl, nInW, nOutW, nOutH, nLine,
                   [&](std::size_t q, std::size_t x, std::ptrdiff_t pair) {
                       const std::size_t rowLength = std::size_t(nOutW);
                       const unsigned char* src = pSrc + std::ptrdiff_t(nInW) * nInH + 2 * pair;
                       unsigned char* dst =
                           pDst + rowLength * std::size_t(nOutH) + q * rowLength + x;
                       // Kept: the two chroma bytes change places, as nowhere else.
                       dst[0] = src[1];
                       dst[1] = src[0];
                   });
}

int CBilinear::Bilinear_YV12_S(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                               int nInH, int nOutW, int nOutH, int nLine)
{
    return mapBand(
        pSrc, pDst, pTbl, nInW, nOutW, nOutH, nLine,
        [&](std::size_t q, std::size_t x, std::ptrdiff_t sample) {
            // Kept: the second plane overwrites the first, and the output's second
            // plane is left as it was.
            const std::ptrdiff_t secondPlane = std::ptrdiff_t(nInW / 2) * nInH / 2;
            pDst[std::size_t(nOutW) * std::size_t(nOutH) + q * std::size_t(nOutW / 2) + x / 2] =
                pSrc[std::ptrdiff_t(nInW) * nInH + secondPlane + sample];
        });
}
