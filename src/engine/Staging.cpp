// Staging the input, and turning and mirroring images.
#include "FEDSP.h"

#include "kernels/ReversedCopy.h"

#include <cstring>

namespace {

// Copies rows in reverse order.
void flipRows(const unsigned char* src, unsigned char* dst, std::size_t rowBytes, int rows)
{
    for (int r = 0; r < rows; ++r)
        std::memcpy(dst + std::size_t(r) * rowBytes, src + std::size_t(rows - 1 - r) * rowBytes,
                    rowBytes);
}

// Mirrors each row of `length` elements.
void mirrorRows(const unsigned char* src, unsigned char* dst, std::size_t elementBytes, int length,
                int rows)
{
    const std::size_t rowBytes = std::size_t(length) * elementBytes;
    for (int r = 0; r < rows; ++r, src += rowBytes, dst += rowBytes)
        // Kept: offset by one element, so x = 0 takes the first element after the row.
        fe::copyReversed(src + elementBytes, dst, std::size_t(length), elementBytes);
}

} // namespace

void FEDSP::AccessCtr_FECopypIn(unsigned char* pSrc, unsigned char* pDst, int nW, int nH,
                                FORMAT format, bool bFlip)
{
    switch (format) {
    case FORMAT_NV12:
    case FORMAT_YV12:
        if (m_nLineIndex < 1 && nW > 0 && nH > 0)
            std::memcpy(pDst, pSrc, std::size_t(nW) * std::size_t(nH) * 3 / 2);
        break;
    case FORMAT_RGB:
        TransferButtomToUp(pSrc, pDst, nW, nH, bFlip);
        break;
    default:
        break;
    }
}

void FEDSP::TransferButtomToUp(unsigned char* pSrc, unsigned char* pDst, int nW, int nH, bool bFlip)
{
    if (nW <= 0 || nH <= 0) return;
    const std::size_t rowBytes = 3 * std::size_t(nW);
    if (bFlip)
        flipRows(pSrc, pDst, rowBytes, nH);
    else
        // Kept: the last row is not copied.
        std::memcpy(pDst, pSrc, rowBytes * std::size_t(nH - 1));
}

void FEDSP::TransferButtomToUpPlanar(unsigned char* pSrc, unsigned char* pDst, int nW, int nH,
                                     bool bFlip)
{
    if (nW <= 0 || nH <= 0) return;
    const auto turn = [&](std::size_t offset, std::size_t elementBytes, int length, int rows) {
        if (bFlip)
            flipRows(pSrc + offset, pDst + offset, std::size_t(length) * elementBytes, rows);
        else
            mirrorRows(pSrc + offset, pDst + offset, elementBytes, length, rows);
    };
    const std::size_t luma = std::size_t(nW) * std::size_t(nH);
    turn(0, 1, nW, nH);
    if (m_nFormat == FORMAT_YV12) {
        turn(luma, 1, nW / 2, nH / 2);
        turn(luma + luma / 4, 1, nW / 2, nH / 2);
    } else {
        turn(luma, 2, nW / 2, nH / 2);
    }
}
