// Copying pairs of chroma. Internal linkage: files of several instruction sets include this.
#ifndef LUMOFE_COPYPAIRS_H
#define LUMOFE_COPYPAIRS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

namespace fe {

// Copies the pairs of chroma with these indices, eight at a time: a store for each would take
// longer than the rest.
static inline void copyPairs(const std::int32_t* indices, std::size_t count,
                             const unsigned char* src, unsigned char* dst)
{
    std::size_t t = 0;
    for (; t + 8 <= count; t += 8) {
        const auto pair = [=](std::size_t i) {
            std::int16_t bytes;
            std::memcpy(&bytes, src + 2 * std::ptrdiff_t(indices[t + i]), sizeof bytes);
            return bytes;
        };
        __m128i eight = _mm_cvtsi32_si128(pair(0));
        eight = _mm_insert_epi16(eight, pair(1), 1);
        eight = _mm_insert_epi16(eight, pair(2), 2);
        eight = _mm_insert_epi16(eight, pair(3), 3);
        eight = _mm_insert_epi16(eight, pair(4), 4);
        eight = _mm_insert_epi16(eight, pair(5), 5);
        eight = _mm_insert_epi16(eight, pair(6), 6);
        eight = _mm_insert_epi16(eight, pair(7), 7);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 2 * t), eight);
    }
    for (; t < count; ++t)
        std::memcpy(dst + 2 * t, src + 2 * std::ptrdiff_t(indices[t]), 2);
}

} // namespace fe

#endif
