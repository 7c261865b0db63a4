// Conversions between the pixel layouts.
#include "media/Pixels.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace lumofe {
namespace {

// The conversions count in 1/65536, so that whole videos can be converted in real time.
std::uint8_t toByte(int v)
{
    return std::uint8_t(std::clamp(v, 0, 255));
}

// Value of a chroma plane at a luma position, 16 times too large: weights 9 3 3 1 of the four
// nearest chroma samples.
int chroma16(const std::uint8_t* plane, Size size, int x, int y)
{
    const int nearX = x / 2, nearY = y / 2;
    const int farX = std::clamp(x % 2 == 0 ? nearX - 1 : nearX + 1, 0, size.width - 1);
    const int farY = std::clamp(y % 2 == 0 ? nearY - 1 : nearY + 1, 0, size.height - 1);
    const std::uint8_t* nearRow = plane + std::ptrdiff_t(nearY) * size.width;
    const std::uint8_t* farRow = plane + std::ptrdiff_t(farY) * size.width;
    return 9 * nearRow[nearX] + 3 * nearRow[farX] + 3 * farRow[nearX] + farRow[farX];
}

void copyRows(const std::uint8_t* src, std::size_t srcStride, std::uint8_t* dst,
              std::size_t dstStride, int rows)
{
    for (int y = 0; y < rows; ++y)
        std::memcpy(dst + std::size_t(y) * dstStride, src + std::size_t(y) * srcStride, dstStride);
}

} // namespace

Frame420 toFrame420(const Image& image)
{
    Frame420 frame(image.size);
    std::uint8_t* luma = frame.plane(0);
    for (int y = 0; y < image.size.height; ++y) {
        for (int x = 0; x < image.size.width; ++x) {
            const std::uint8_t* p = image.pixel(x, y);
            *luma++ = toByte((19595 * p[0] + 38470 * p[1] + 7471 * p[2] + (1 << 15)) >> 16);
        }
    }
    const Size chroma = frame.planeSize(1);
    std::uint8_t* u = frame.plane(1);
    std::uint8_t* v = frame.plane(2);
    for (int y = 0; y < chroma.height; ++y) {
        const int rows[2] = {2 * y, std::min(2 * y + 1, image.size.height - 1)};
        for (int x = 0; x < chroma.width; ++x) {
            const int columns[2] = {2 * x, std::min(2 * x + 1, image.size.width - 1)};
            int sum[3] = {0, 0, 0};
            for (int row : rows)
                for (int column : columns)
                    for (int c = 0; c < 3; ++c)
                        sum[c] += image.pixel(column, row)[c];
            // Sums of four: two bits more.
            constexpr int kMiddle = (128 << 18) + (1 << 17);
            *u++ = toByte((kMiddle - 11058 * sum[0] - 21710 * sum[1] + 32768 * sum[2]) >> 18);
            *v++ = toByte((kMiddle + 32768 * sum[0] - 27439 * sum[1] - 5329 * sum[2]) >> 18);
        }
    }
    return frame;
}

Image toImage(const Frame420& frame)
{
    Image image(frame.size);
    const Size chroma = frame.planeSize(1);
    const std::uint8_t* luma = frame.plane(0);
    for (int y = 0; y < frame.size.height; ++y) {
        for (int x = 0; x < frame.size.width; ++x) {
            const int l = (*luma++ << 20) + (1 << 19);
            const int u = chroma16(frame.plane(1), chroma, x, y) - 16 * 128;
            const int v = chroma16(frame.plane(2), chroma, x, y) - 16 * 128;
            std::uint8_t* p = image.pixel(x, y);
            p[0] = toByte((l + 91881 * v) >> 20);
            p[1] = toByte((l - 22554 * u - 46802 * v) >> 20);
            p[2] = toByte((l + 116130 * u) >> 20);
        }
    }
    return image;
}

void interleaveChroma(const std::uint8_t* planar, std::uint8_t* semiPlanar, Size size)
{
    const std::size_t luma = Frame420::lumaBytes(size), chroma = Frame420::chromaBytes(size);
    std::memcpy(semiPlanar, planar, luma);
    const std::uint8_t* u = planar + luma;
    const std::uint8_t* v = u + chroma;
    std::uint8_t* pairs = semiPlanar + luma;
    for (std::size_t i = 0; i < chroma; ++i) {
        pairs[2 * i] = u[i];
        pairs[2 * i + 1] = v[i];
    }
}

void separateChroma(const std::uint8_t* semiPlanar, std::uint8_t* planar, Size size)
{
    const std::size_t luma = Frame420::lumaBytes(size), chroma = Frame420::chromaBytes(size);
    std::memcpy(planar, semiPlanar, luma);
    std::uint8_t* u = planar + luma;
    std::uint8_t* v = u + chroma;
    const std::uint8_t* pairs = semiPlanar + luma;
    for (std::size_t i = 0; i < chroma; ++i) {
        u[i] = pairs[2 * i];
        v[i] = pairs[2 * i + 1];
    }
}

Size evenSize(Size size)
{
    return {size.width / 2 * 2, size.height / 2 * 2};
}

Image cropToEven(Image image)
{
    const Size even = evenSize(image.size);
    if (even == image.size) return image;
    Image out(even);
    copyRows(image.bytes.data(), std::size_t(image.size.width) * 3, out.bytes.data(),
             std::size_t(even.width) * 3, even.height);
    return out;
}

Frame420 cropToEven(Frame420 frame)
{
    const Size even = evenSize(frame.size);
    if (even == frame.size) return frame;
    Frame420 out(even);
    for (int p = 0; p < 3; ++p) {
        const Size from = frame.planeSize(p), to = out.planeSize(p);
        copyRows(frame.plane(p), std::size_t(from.width), out.plane(p), std::size_t(to.width),
                 to.height);
    }
    return out;
}

void copyUpsideDown(const std::uint8_t* src, std::uint8_t* dst, int rowBytes, int rows)
{
    for (int y = 0; y < rows; ++y)
        std::memcpy(dst + std::ptrdiff_t(rows - 1 - y) * rowBytes,
                    src + std::ptrdiff_t(y) * rowBytes, std::size_t(rowBytes));
}

void reverseRows(std::uint8_t* bytes, int rowBytes, int rows)
{
    for (std::ptrdiff_t top = 0, bottom = rows - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(bytes + top * rowBytes, bytes + (top + 1) * rowBytes,
                         bytes + bottom * rowBytes);
}

void exchangeRedAndBlue(std::uint8_t* bytes, std::size_t pixels)
{
    for (std::size_t i = 0; i < 3 * pixels; i += 3)
        std::swap(bytes[i], bytes[i + 2]);
}

void exchangeRedAndBlue(Image& image)
{
    exchangeRedAndBlue(image.bytes.data(), image.bytes.size() / 3);
}

} // namespace lumofe
