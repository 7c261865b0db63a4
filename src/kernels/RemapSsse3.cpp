// The remapping kernels' inner loops with SSSE3.
#include "kernels/RemapSse.h"

#include <tmmintrin.h>

namespace {

struct Ssse3Vectors : SseVectors {
    static Vec add8(Vec a, Vec b) { return _mm_add_epi8(a, b); }
    static Vec differences8(Vec a) { return _mm_maddubs_epi16(a, _mm_set1_epi16(0x01FF)); }
    static Vec shuffle8(Vec a, Vec order) { return _mm_shuffle_epi8(a, order); }
    static Vec loadBytes(const unsigned char* p)
    {
        return _mm_loadu_si128(reinterpret_cast<const Vec*>(p));
    }
    static Vec eachFourTimes(const unsigned char* bytes, std::size_t i)
    {
        return _mm_shuffle_epi8(loadBytes(bytes), loadBytes(fe::kFourTimes[i]));
    }
    static Vec eachTwice(const unsigned char* bytes, std::size_t i)
    {
        return _mm_shuffle_epi8(loadBytes(bytes), loadBytes(fe::kTwice[i]));
    }
    static Vec pixelPairs(const unsigned char* src, std::ptrdiff_t rowBytes, const int* block,
                          int entry)
    {
        const unsigned char* p = src + (indexOf(block, entry) - 2);
        return _mm_shuffle_epi8(
            _mm_unpacklo_epi64(load64(p), load64(p + rowBytes)),
            _mm_setr_epi8(2, 5, 10, 13, 3, 6, 11, 14, 4, 7, 12, 15, -1, -1, -1, -1));
    }
    template <bool shared>
    static void loadWindows(const unsigned char* const (&rows)[4], const std::ptrdiff_t (&tiles)[2],
                            Vec (&windows)[2])
    {
        windows[0] = loadWindow(rows, tiles[0]);
        windows[1] = shared ? windows[0] : loadWindow(rows, tiles[1]);
    }
    // Of every 128 bits, the lower or upper half's bytes as words.
    static Vec lowBytes(Vec a) { return _mm_unpacklo_epi8(a, zero()); }
    static Vec highBytes(Vec a) { return _mm_unpackhi_epi8(a, zero()); }
    // The words of a and b in turn.
    static Vec lowWords(Vec a, Vec b) { return _mm_unpacklo_epi16(a, b); }
    static Vec highWords(Vec a, Vec b) { return _mm_unpackhi_epi16(a, b); }
    // Each tile's upper two pixels from a, its lower two from b.
    static Vec lowerPixels(Vec a, Vec b)
    {
        return _mm_castpd_si128(_mm_shuffle_pd(_mm_castsi128_pd(a), _mm_castsi128_pd(b), 2));
    }
    static Vec loadWindow(const unsigned char* const (&rows)[4], std::ptrdiff_t tile)
    {
        const auto at = [&](int row) { return load32(rows[row] + tile); };
        return _mm_unpacklo_epi64(_mm_unpacklo_epi32(at(0), at(1)),
                                  _mm_unpacklo_epi32(at(2), at(3)));
    }
    static void storeTiles(unsigned char* top, unsigned char* bottom, const Vec (&values)[8])
    {
        const Vec order = _mm_setr_epi8(0, 1, 4, 5, 8, 9, 12, 13, 2, 3, 6, 7, 10, 11, 14, 15);
        const Vec even =
            _mm_shuffle_epi8(packUpperWords(values[0], values[1], values[2], values[3]), order);
        const Vec odd =
            _mm_shuffle_epi8(packUpperWords(values[4], values[5], values[6], values[7]), order);
        _mm_storeu_si128(reinterpret_cast<Vec*>(top), _mm_unpacklo_epi16(even, odd));
        _mm_storeu_si128(reinterpret_cast<Vec*>(bottom), _mm_unpackhi_epi16(even, odd));
    }
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
                           mapPacked<Ssse3Vectors, true>, chromaIndices<Ssse3Vectors>,
                           planRow<Ssse3Vectors>};

} // namespace fe
