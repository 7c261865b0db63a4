// The inner loop of the lens model in SSE2.
#include "mapping/LensRowsSimd.h"

#include <emmintrin.h>

namespace fe {

namespace {

struct Sse2 {
    using Floats = __m128;
    using Doubles = __m128d;
    using Ints = int __attribute__((vector_size(16)));
    static constexpr int kLanes = 4;
    static constexpr int kAllLanes = 0xF;

    static Floats all(float x) { return _mm_set1_ps(x); }
    static Doubles all(double x) { return _mm_set1_pd(x); }
    static Ints all(int x) { return Ints(_mm_set1_epi32(x)); }

    static Floats load(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, Floats x) { _mm_storeu_ps(p, x); }
    static void prefetch(const void* p) { _mm_prefetch(static_cast<const char*>(p), _MM_HINT_T0); }

    // b where one of them is a NaN
    static Floats min(Floats a, Floats b) { return _mm_min_ps(a, b); }
    static Floats abs(Floats x) { return Floats(Ints(x) & 0x7FFFFFFF); }
    static Ints notAtLeast(Floats a, Floats b) { return Ints(_mm_cmpnge_ps(a, b)); }
    static int bits(Ints mask) { return _mm_movemask_ps(Floats(mask)); }
    static Floats choose(Ints mask, Floats a, Floats b)
    {
        return Floats((mask & Ints(a)) | (~mask & Ints(b)));
    }

    // A double vector has half the lanes.
    static Doubles low(Floats x) { return _mm_cvtps_pd(x); }
    static Doubles high(Floats x) { return _mm_cvtps_pd(_mm_movehl_ps(x, x)); }
    static Floats narrow(Doubles low, Doubles high)
    {
        return _mm_movelh_ps(_mm_cvtpd_ps(low), _mm_cvtpd_ps(high));
    }

    static Ints truncate(Floats x) { return Ints(_mm_cvttps_epi32(x)); }
    // a's low 16 bits, b's high ones
    static Ints words(Ints a, Ints b) { return (a & 0xFFFF) | (b & ~0xFFFF); }
    // Product of the low halves + product of the high halves, as signed numbers of 16 bits
    static Ints sumOfProducts(Ints a, Ints b)
    {
        return Ints(_mm_madd_epi16(__m128i(a), __m128i(b)));
    }

    static void storeEntries(unsigned char* p, Ints fractions, Ints indices)
    {
        auto* const out = reinterpret_cast<__m128i_u*>(p);
        _mm_storeu_si128(out, _mm_unpacklo_epi32(__m128i(fractions), __m128i(indices)));
        _mm_storeu_si128(out + 1, _mm_unpackhi_epi32(__m128i(fractions), __m128i(indices)));
    }
};

} // namespace

bool mapLensRowSse2(const LensView& view, const LensRow& row, const float* Ca, int count,
                    unsigned char* entries)
{
    return mapLensRowIn<Sse2>(view, row, Ca, count, entries);
}

} // namespace fe
