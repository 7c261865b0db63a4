// The remapping kernels' inner loops with SSSE3.
#include "kernels/RemapSse.h"

#include <tmmintrin.h>

namespace {

struct Ssse3Vectors : SseVectors {
    static Vec bothUpper(Vec a)
    {
        return _mm_shuffle_epi8(
            a, _mm_setr_epi8(2, 3, 2, 3, 6, 7, 6, 7, 10, 11, 10, 11, 14, 15, 14, 15));
    }
    static Vec bothLower(Vec a)
    {
        return _mm_shuffle_epi8(a,
                                _mm_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13));
    }
    template <bool swapped>
    static void storePixels(unsigned char* dst, const Vec (&pixels)[4])
    {
        const Vec bytes =
            _mm_shuffle_epi8(packPixels<swapped>(pixels),
                             _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
        _mm_storel_epi64(reinterpret_cast<Vec*>(dst), bytes);
        const int last = _mm_cvtsi128_si32(_mm_srli_si128(bytes, 8));
        std::memcpy(dst + 8, &last, sizeof last);
    }
};

} // namespace

namespace fe {

const RemapOps kRemapSsse3{mapLuma<Ssse3Vectors>, mapPacked<Ssse3Vectors, false>,
                           mapPacked<Ssse3Vectors, true>, chromaIndices<Ssse3Vectors>};

} // namespace fe
