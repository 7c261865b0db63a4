// The two ways in which a kernel reads the source: interpolated samples and nearest chroma.
#ifndef LUMOFE_SAMPLING_H
#define LUMOFE_SAMPLING_H

#include "mapping/MapEntry.h"

#include <cstddef>
#include <cstdint>

namespace fe {

// Weights of an entry, and the distances to its neighbours. A neighbour of weight 0 is replaced by
// the sample itself: the last pixel of a plane has none.
struct Bilinear {
    std::uint32_t fx, fy, gx, gy;
    std::ptrdiff_t right, down;

    Bilinear(MapEntry entry, std::ptrdiff_t pixel, std::ptrdiff_t row)
        : fx(entry.fractions >> 16), fy(entry.fractions & 0xFFFF), gx((256 - fx) & 0xFFFF),
          gy((256 - fy) & 0xFFFF), right(fx ? pixel : 0), down(fy ? row : 0)
    {
    }

    unsigned char operator()(const unsigned char* p) const
    {
        const std::uint32_t top = p[0] * (gx * gy) + p[right] * (fx * gy);
        const std::uint32_t bottom = p[down] * (gx * fy) + p[down + right] * (fx * fy);
        return static_cast<unsigned char>((bottom + top) >> 16);
    }
};

// Index of the chroma sample that covers luma element `index` of a plane with that stride.
inline std::ptrdiff_t chromaIndex(std::int32_t index, int stride)
{
    const std::int32_t row = index / stride;
    const std::int32_t col = index - row * stride;
    return std::ptrdiff_t(stride >> 1) * (row >> 1) + (col >> 1);
}

// True when a kernel has something to do.
inline bool canMap(const void* src, const void* dst, const void* table, int outW, int outH,
                   int stride)
{
    return src && dst && table && outW > 0 && outH > 0 && stride > 0;
}

} // namespace fe

#endif
