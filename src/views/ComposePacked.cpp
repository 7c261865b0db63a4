// Composition of packed 3-byte images, for hosts; no layout uses it.
#include "FEDSP.h"

#include "engine/Numeric.h"

#include <algorithm>
#include <cstring>

namespace {

// Kept: the last row is not copied.
void copyAllButLastRow(const unsigned char* src, unsigned char* dst, int w, int h)
{
    if (src && w > 0 && h > 1) std::memcpy(dst, src, 3 * std::size_t(w) * std::size_t(h - 1));
}

// A source index pair and the weight of its second sample, 1/1024; beyond the last pair the weight
// exceeds 1024 and extrapolates.
struct Tap {
    std::int64_t index, weight;
    Tap(int out, int step, int size)
        : index(std::min<std::int64_t>(
              size - 2, std::max<std::int64_t>((std::int64_t(out) * step) >> 10, 0))),
          weight(std::int64_t(out) * step - index * 1024)
    {
    }
};

} // namespace

void FEDSP::SnapShotM3(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pDst, int nW,
                       int nH, int nCentre)
{
    if (nW <= 0 || nH <= 0) return;
    const std::size_t rowBytes = 3 * std::size_t(nW);
    const std::size_t top = nCentre == 1 ? std::size_t(nH / 2) : 0;
    copyAllButLastRow(pSrc1, pDst + top * rowBytes, nW, nH);
    copyAllButLastRow(pSrc2, pDst + std::size_t(nH) * rowBytes, nW, nH);
}

void FEDSP::SnapShotM45(unsigned char* pSrc, unsigned char* pDst, int nW, int nH)
{
    copyAllButLastRow(pSrc, pDst, nW, nH);
}

void FEDSP::lcvScale(unsigned char* pDst, unsigned char* pSrc, int nSrcW, int nSrcH, int nDstW,
                     int nDstH)
{
    if (!pDst || !pSrc || nSrcW < 2 || nSrcH < 2 || nDstW < 1 || nDstH < 1) return;
    const float ratioX = float(double(nDstW) / nSrcW);
    const float ratioY = float(double(nDstH) / nSrcH);
    const int stepX = fe::trunc32(1024.5 / double(ratioX));
    const int stepY = fe::trunc32(1024.5 / double(ratioY));
    const std::int64_t rowBytes = 3 * std::int64_t(nSrcW);
    for (int y = 0; y < nDstH; ++y) {
        const Tap rows(y, stepY, nSrcH);
        for (int x = 0; x < nDstW; ++x) {
            const Tap columns(x, stepX, nSrcW);
            const unsigned char* p = pSrc + rows.index * rowBytes + 3 * columns.index;
            for (int c = 0; c < 3; ++c, ++p) {
                const std::int64_t top = p[0] * (1024 - columns.weight) + p[3] * columns.weight;
                const std::int64_t bottom =
                    p[rowBytes] * (1024 - columns.weight) + p[rowBytes + 3] * columns.weight;
                const std::int64_t v = (bottom * rows.weight + top * (1024 - rows.weight)) >> 20;
                *pDst++ = static_cast<unsigned char>(std::clamp<std::int64_t>(v, 0, 255));
            }
        }
    }
}
