// Rows of a polar unwrap's mapping table with AVX2.
#include "mapping/PolarRow.h"

#include <immintrin.h>

namespace fe {

namespace {

// Four entries each, in turn.
struct Entries {
    __m256i first, second;
};

// The positions of eight columns along one axis.
__m256 positions(const double* direction, double radius, double centre)
{
    const auto half = [&](const double* d) {
        const __m256d offset = _mm256_mul_pd(_mm256_load_pd(d), _mm256_set1_pd(radius));
        return _mm256_cvtpd_ps(_mm256_add_pd(offset, _mm256_set1_pd(centre)));
    };
    return _mm256_set_m128(half(direction + 4), half(direction));
}

__m256i within(__m256 position, float last)
{
    const __m256 behindStart = _mm256_cmp_ps(position, _mm256_setzero_ps(), _CMP_GT_OQ);
    const __m256 beforeEnd = _mm256_cmp_ps(position, _mm256_set1_ps(last), _CMP_LE_OQ);
    return _mm256_castps_si256(_mm256_and_ps(behindStart, beforeEnd));
}

// Takes the low halves of one and the high halves of the other's elements.
__m256i halves(__m256i low, __m256i high)
{
    return _mm256_blend_epi16(low, high, 0xAA);
}

template <bool kInside>
Entries group(const PolarColumns& columns, const PolarRow& row, int c)
{
    const __m256 y = positions(columns.sine + c, row.radius, row.centreRow);
    const __m256 x = positions(columns.cosine + c, row.radius, row.centreCol);
    const __m256i yWhole = _mm256_cvttps_epi32(y), xWhole = _mm256_cvttps_epi32(x);
    __m256i fractions = _mm256_and_si256(halves(yWhole, _mm256_slli_epi32(xWhole, 16)),
                                         _mm256_set1_epi32(0x00FF00FF));
    __m256i index =
        _mm256_madd_epi16(halves(_mm256_srli_epi32(yWhole, 8), _mm256_slli_epi32(xWhole, 8)),
                          _mm256_set1_epi32(row.pitch | 1 << 16));
    if (!kInside) {
        const __m256i inside = _mm256_and_si256(within(y, row.lastRow), within(x, row.lastCol));
        fractions = _mm256_and_si256(fractions, inside);
        index = _mm256_and_si256(index, inside);
    }
    return {_mm256_unpacklo_epi32(fractions, index), _mm256_unpackhi_epi32(fractions, index)};
}

void store(const Entries& e, void* entries)
{
    auto* out = static_cast<__m256i*>(entries);
    _mm256_storeu_si256(out, e.first);
    _mm256_storeu_si256(out + 1, e.second);
}

template <bool kInside>
void writeRow(const PolarColumns& columns, const PolarRow& row, unsigned char* out, int count)
{
    constexpr int kBytes = 8 * kPolarGroup;
    int c = 0;
    for (; c + kPolarGroup <= count; c += kPolarGroup, out += kBytes)
        store(group<kInside>(columns, row, c), out);
    if (c == count) return;
    unsigned char last[kBytes];
    store(group<kInside>(columns, row, c), last);
    for (int b = 0; b < 8 * (count - c); ++b)
        out[b] = last[b];
}

} // namespace

void writePolarRowAvx2(const PolarColumns& columns, const PolarRow& sharedRow, void* entries,
                       int count)
{
    const PolarRow row = sharedRow; // that no entry may be part of
    auto* out = static_cast<unsigned char*>(entries);
    if (row.inside)
        writeRow<true>(columns, row, out, count);
    else
        writeRow<false>(columns, row, out, count);
}

} // namespace fe
