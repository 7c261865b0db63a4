// The inner loop of the lens model in AVX2.
#include "mapping/LensRowsSimd.h"

#include <immintrin.h>

namespace fe {

namespace {

struct Avx2 {
    using Floats = __m256;
    using Doubles = __m256d;
    using Ints = int __attribute__((vector_size(32)));
    static constexpr int kLanes = 8;
    static constexpr int kAllLanes = 0xFF;

    static Floats all(float x) { return _mm256_set1_ps(x); }
    static Doubles all(double x) { return _mm256_set1_pd(x); }
    static Ints all(int x) { return Ints(_mm256_set1_epi32(x)); }

    static Floats load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, Floats x) { _mm256_storeu_ps(p, x); }
    static void prefetch(const void* p) { _mm_prefetch(static_cast<const char*>(p), _MM_HINT_T0); }

    // b where one of them is a NaN
    static Floats min(Floats a, Floats b) { return _mm256_min_ps(a, b); }
    static Floats abs(Floats x) { return Floats(Ints(x) & 0x7FFFFFFF); }
    static Ints notAtLeast(Floats a, Floats b) { return Ints(_mm256_cmp_ps(a, b, _CMP_NGE_UQ)); }
    static int bits(Ints mask) { return _mm256_movemask_ps(Floats(mask)); }
    static Floats choose(Ints mask, Floats a, Floats b)
    {
        return _mm256_blendv_ps(b, a, Floats(mask));
    }

    // A double vector has half the lanes.
    static Doubles low(Floats x) { return _mm256_cvtps_pd(_mm256_castps256_ps128(x)); }
    static Doubles high(Floats x) { return _mm256_cvtps_pd(_mm256_extractf128_ps(x, 1)); }
    static Floats narrow(Doubles low, Doubles high)
    {
        return _mm256_set_m128(_mm256_cvtpd_ps(high), _mm256_cvtpd_ps(low));
    }

    static Ints truncate(Floats x) { return Ints(_mm256_cvttps_epi32(x)); }
    // a's low 16 bits, b's high ones
    static Ints words(Ints a, Ints b)
    {
        return Ints(_mm256_blend_epi16(__m256i(a), __m256i(b), 0xAA));
    }
    // Product of the low halves + product of the high halves, as signed numbers of 16 bits
    static Ints sumOfProducts(Ints a, Ints b)
    {
        return Ints(_mm256_madd_epi16(__m256i(a), __m256i(b)));
    }

    static void storeEntries(unsigned char* p, Ints fractions, Ints indices)
    {
        const __m256i even = _mm256_unpacklo_epi32(__m256i(fractions), __m256i(indices));
        const __m256i odd = _mm256_unpackhi_epi32(__m256i(fractions), __m256i(indices));
        auto* const out = reinterpret_cast<__m128i_u*>(p);
        _mm_storeu_si128(out, _mm256_castsi256_si128(even));
        _mm_storeu_si128(out + 1, _mm256_castsi256_si128(odd));
        _mm_storeu_si128(out + 2, _mm256_extracti128_si256(even, 1));
        _mm_storeu_si128(out + 3, _mm256_extracti128_si256(odd, 1));
    }
};

} // namespace

bool mapLensRowAvx2(const LensView& view, const LensRow& row, const float* Ca, int count,
                    unsigned char* entries)
{
    return mapLensRowIn<Avx2>(view, row, Ca, count, entries);
}

} // namespace fe
