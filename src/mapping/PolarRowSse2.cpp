// Rows of a polar unwrap's mapping table with SSE2, which all of the library needs.
#include "mapping/PolarRow.h"

#include <cstddef>
#include <cstring>
#include <emmintrin.h>

namespace fe {

namespace {

// Two entries each.
struct Entries {
    __m128i first, second;
};

// The positions of four columns along one axis.
__m128 positions(const double* direction, double radius, double centre)
{
    const auto half = [&](const double* d) {
        const __m128d offset = _mm_mul_pd(_mm_load_pd(d), _mm_set1_pd(radius));
        return _mm_cvtpd_ps(_mm_add_pd(offset, _mm_set1_pd(centre)));
    };
    return _mm_movelh_ps(half(direction), half(direction + 2));
}

__m128i within(__m128 position, float last)
{
    return _mm_castps_si128(_mm_and_ps(_mm_cmpgt_ps(position, _mm_setzero_ps()),
                                       _mm_cmple_ps(position, _mm_set1_ps(last))));
}

Entries half(const PolarColumns& columns, const PolarRow& row, int c)
{
    const __m128 y = positions(columns.sine + c, row.radius, row.centreRow);
    const __m128 x = positions(columns.cosine + c, row.radius, row.centreCol);
    const __m128i yWhole = _mm_cvttps_epi32(y), xWhole = _mm_cvttps_epi32(x);
    const __m128i byte = _mm_set1_epi32(0xFF);
    __m128i fractions =
        _mm_or_si128(_mm_and_si128(yWhole, byte), _mm_slli_epi32(_mm_and_si128(xWhole, byte), 16));
    const __m128i pixel =
        _mm_or_si128(_mm_srli_epi32(yWhole, 8), _mm_slli_epi32(_mm_srli_epi32(xWhole, 8), 16));
    __m128i index = _mm_madd_epi16(pixel, _mm_set1_epi32(row.pitch | 1 << 16));
    if (!row.inside) {
        const __m128i inside = _mm_and_si128(within(y, row.lastRow), within(x, row.lastCol));
        fractions = _mm_and_si128(fractions, inside);
        index = _mm_and_si128(index, inside);
    }
    return {_mm_unpacklo_epi32(fractions, index), _mm_unpackhi_epi32(fractions, index)};
}

void writeGroup(const PolarColumns& columns, const PolarRow& row, int c, void* entries)
{
    auto* out = static_cast<__m128i*>(entries);
    for (int h = 0; h < 2; ++h) {
        const Entries e = half(columns, row, c + 4 * h);
        _mm_storeu_si128(out + h, e.first);
        _mm_storeu_si128(out + 2 + h, e.second);
    }
}

} // namespace

void writePolarRowSse2(const PolarColumns& columns, const PolarRow& sharedRow, void* entries,
                       int count)
{
    const PolarRow row = sharedRow; // that no entry may be part of
    auto* out = static_cast<unsigned char*>(entries);
    constexpr int kBytes = 8 * kPolarGroup;
    for (int c = 0; c < count; c += kPolarGroup, out += kBytes) {
        if (c + kPolarGroup <= count) {
            writeGroup(columns, row, c, out);
        } else {
            unsigned char last[kBytes];
            writeGroup(columns, row, c, last);
            std::memcpy(out, last, 8 * std::size_t(count - c));
        }
    }
}

} // namespace fe
