// Conversions between packed 4:2:2, packed 24-bit, 4:4:4 and semi-planar 4:2:0 pixels.
#include "FEDSP.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

// What a component contributes to a colour, times 64, for each value of its byte.
using Contribution = std::array<std::int16_t, 256>;

constexpr Contribution contribution(int lowest, int highest, int zero, double gain)
{
    Contribution table{};
    for (int i = 0; i < 256; ++i) {
        const int nominal = std::clamp(i, lowest, highest);
        // Kept: half is added to negative values too before the fraction is cut off, so they come
        // out up to 1.5 too high.
        // NOLINTNEXTLINE(bugprone-incorrect-roundings)
        table[std::size_t(i)] = std::int16_t((nominal - zero) * gain * 64 + 0.5);
    }
    return table;
}

// ITU-R BT.601, studio range.
constexpr Contribution kLuma = contribution(16, 235, 16, 1.164);
constexpr Contribution kBlueOfU = contribution(16, 240, 128, 2.018);
constexpr Contribution kGreenOfU = contribution(16, 240, 128, -0.391);
constexpr Contribution kGreenOfV = contribution(16, 240, 128, -0.813);
constexpr Contribution kRedOfV = contribution(16, 240, 128, 1.596);

unsigned char fromScaled(int scaled)
{
    return static_cast<unsigned char>(std::clamp(scaled >> 6, 0, 255));
}

void rgbRow(const unsigned char* src, unsigned char* dst, int width)
{
    for (int x = 0; x + 1 < width; x += 2, src += 4, dst += 6) {
        const unsigned char u = src[1], v = src[3];
        for (int i = 0; i < 2; ++i) {
            const int luma = kLuma[src[std::ptrdiff_t(2) * i]];
            unsigned char* bgr = dst + std::ptrdiff_t(3) * i;
            bgr[0] = fromScaled(luma + kBlueOfU[u]);
            bgr[1] = fromScaled(luma + kGreenOfU[u] + kGreenOfV[v]);
            bgr[2] = fromScaled(luma + kRedOfV[v]);
        }
    }
}

// A pixel in ITU-R BT.601 studio range. The inverse of the above but for rounding.
struct Yuv {
    double y, u, v;

    explicit Yuv(const unsigned char* bgr)
    {
        const double b = bgr[0], g = bgr[1], r = bgr[2];
        y = 0.257 * r + 0.504 * g + 0.098 * b + 16;
        u = -0.148 * r - 0.291 * g + 0.439 * b + 128;
        v = 0.439 * r - 0.368 * g - 0.071 * b + 128;
    }
};

unsigned char truncated(double component)
{
    return static_cast<unsigned char>(std::int16_t(component));
}

void yuy2Row(const unsigned char* src, unsigned char* dst, int width)
{
    for (int x = 0; x < width; x += 2, src += 6, dst += 4) {
        const Yuv left(src), right(src + 3);
        dst[0] = truncated(left.y);
        dst[1] = truncated((left.u + right.u) / 2.0);
        dst[2] = truncated(right.y);
        dst[3] = truncated((left.v + right.v) / 2.0);
    }
}

// Calls convert(source row, output row) for |height| rows, bottom row of the source first when the
// height is negative.
template <class Convert>
void convertRows(const unsigned char* src, long long srcStride, unsigned char* dst,
                 long long dstStride, int height, Convert convert)
{
    const long long rows = std::abs(static_cast<long long>(height));
    for (long long row = 0; row < rows; ++row) {
        const long long srcRow = height < 0 ? rows - 1 - row : row;
        convert(src + std::ptrdiff_t(srcRow * srcStride), dst + std::ptrdiff_t(row * dstStride));
    }
}

// A stride below 1 stands for rows without padding.
long long strideOf(int stride, int width, int pixelBytes)
{
    return stride < 1 ? static_cast<long long>(width) * pixelBytes : stride;
}

// Pixels of a picture, 0 when there is nothing to convert.
std::size_t pixelCount(const void* src, const void* dst, int width, int height)
{
    return src && dst && width > 0 && height > 0 ? std::size_t(width) * std::size_t(height) : 0;
}

} // namespace

void FEDSP::YUY2_to_RGB24_Normal_c(const unsigned char* pSrc, int nSrcStride, unsigned char* pDst,
                                   int nWidth, int nHeight, int nDstStride)
{
    if (!pSrc || !pDst || nWidth < 1) return;
    convertRows(pSrc, strideOf(nSrcStride, nWidth, 2), pDst, strideOf(nDstStride, nWidth, 3),
                nHeight, [&](auto src, auto dst) { rgbRow(src, dst, nWidth); });
}

void FEDSP::RGB24_to_YUY2_Normal_c(unsigned char* pSrc, int nSrcStride, unsigned char* pDst,
                                   int nWidth, int nHeight, int nDstStride)
{
    if (!pSrc || !pDst || nWidth < 1) return;
    convertRows(pSrc, strideOf(nSrcStride, nWidth, 3), pDst, strideOf(nDstStride, nWidth, 2),
                nHeight, [&](auto src, auto dst) { yuy2Row(src, dst, nWidth); });
}

void FEDSP::YUY2_to_YUV444(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight)
{
    const std::size_t pairs = pixelCount(pSrc, pDst, nWidth, nHeight) / 2;
    for (std::size_t i = 0; i < pairs; ++i, pSrc += 4, pDst += 6) {
        const unsigned char y0 = pSrc[0], u = pSrc[1], y1 = pSrc[2], v = pSrc[3];
        pDst[0] = y0;
        pDst[1] = u;
        pDst[2] = v;
        pDst[3] = y1;
        pDst[4] = u;
        pDst[5] = v;
    }
}

void FEDSP::YUY2_to_NV12_YUV444(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight)
{
    const std::size_t count = pixelCount(pSrc, pDst, nWidth, nHeight);
    const unsigned char* chroma = pSrc + count;
    for (std::size_t i = 0; i < count; ++i) {
        // Kept: chroma runs along with the pixels, not by rows and columns, and changes its order.
        const unsigned char* pair = chroma + i / 4 * 2;
        pDst[3 * i] = pSrc[i];
        pDst[3 * i + 1] = pair[1];
        pDst[3 * i + 2] = pair[0];
    }
}

void FEDSP::YUY2_to_YUV444_NV12(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight)
{
    const std::size_t count = pixelCount(pSrc, pDst, nWidth, nHeight);
    // Kept: chroma starts at its second byte and advances by one byte a pixel.
    const unsigned char* chroma = pSrc + count + 1;
    for (std::size_t i = 0; i < count; ++i) {
        pDst[2 * i] = pSrc[i];
        pDst[2 * i + 1] = chroma[i];
    }
}
