// The remapping kernels' inner loops with AVX2.
#include "kernels/RemapBlocks.h"

#include <immintrin.h>

namespace {

struct Avx2Vectors {
    using Vec = __m256i;
    // Entries in a vector, in the order 0 1 4 5, 2 3 6 7 where nothing else is said.
    static constexpr std::size_t kLanes = 8;

    static Vec zero() { return _mm256_setzero_si256(); }
    static Vec all16(int x) { return _mm256_set1_epi16(short(x)); }
    static Vec all32(int x) { return _mm256_set1_epi32(x); }
    static Vec bitAnd(Vec a, Vec b) { return _mm256_and_si256(a, b); }
    static Vec bitOr(Vec a, Vec b) { return _mm256_or_si256(a, b); }
    static Vec bitXor(Vec a, Vec b) { return _mm256_xor_si256(a, b); }
    static Vec add16(Vec a, Vec b) { return _mm256_add_epi16(a, b); }
    static Vec sub16(Vec a, Vec b) { return _mm256_sub_epi16(a, b); }
    static Vec mul16(Vec a, Vec b) { return _mm256_mullo_epi16(a, b); }
    static Vec saturatedSub16(Vec a, Vec b) { return _mm256_subs_epu16(a, b); }
    static Vec equal16(Vec a, Vec b) { return _mm256_cmpeq_epi16(a, b); }
    static Vec add32(Vec a, Vec b) { return _mm256_add_epi32(a, b); }
    static Vec sub32(Vec a, Vec b) { return _mm256_sub_epi32(a, b); }
    static Vec mul32(Vec a, Vec b) { return _mm256_mullo_epi32(a, b); }
    static Vec greater32(Vec a, Vec b) { return _mm256_cmpgt_epi32(a, b); }
    static Vec multiplyAdd(Vec a, Vec b) { return _mm256_madd_epi16(a, b); }
    template <int bits>
    static Vec left16(Vec a)
    {
        return _mm256_slli_epi16(a, bits);
    }
    // The upper byte of each word less its lower one.
    static Vec differences8(Vec a) { return _mm256_maddubs_epi16(a, _mm256_set1_epi16(0x01FF)); }
    template <int bits>
    static Vec right32(Vec a)
    {
        return _mm256_srli_epi32(a, bits);
    }
    static bool any(Vec a) { return !_mm256_testz_si256(a, a); }
    static void store(std::int32_t* p, Vec a) { _mm256_storeu_si256(reinterpret_cast<Vec*>(p), a); }
    static void prefetch(const unsigned char* p)
    {
        _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0);
    }
    static Vec highProduct(Vec a, Vec b, int shift)
    {
        const __m128i bits = _mm_cvtsi32_si128(shift);
        const Vec even = _mm256_srl_epi64(_mm256_mul_epu32(a, b), bits);
        const Vec odd = _mm256_srl_epi64(_mm256_mul_epu32(_mm256_srli_epi64(a, 32), b), bits);
        return _mm256_or_si256(even, _mm256_slli_epi64(odd, 32));
    }

    static Vec load(const int* p) { return _mm256_loadu_si256(reinterpret_cast<const Vec*>(p)); }
    template <int which>
    static Vec everySecond(Vec a, Vec b)
    {
        return _mm256_castps_si256(
            _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b),
                              _MM_SHUFFLE(2 + which, which, 2 + which, which)));
    }
    static void loadEntries(const int* block, Vec& fractions, Vec& indices)
    {
        const Vec a = load(block), b = load(block + 8);
        fractions = everySecond<0>(a, b);
        indices = everySecond<1>(a, b);
    }
    static Vec fractionsInOrder(const int* block)
    {
        return _mm256_permute4x64_epi64(everySecond<0>(load(block), load(block + 8)), 0xD8);
    }
    // Indices of entries 0, 2, 4 ... 14, in that order.
    static Vec secondIndices(const int* block)
    {
        const Vec a = everySecond<1>(load(block), load(block + 8));
        const Vec b = everySecond<1>(load(block + 16), load(block + 24));
        return _mm256_permutevar8x32_epi32(everySecond<0>(a, b),
                                           _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    }

    static Vec broadcast32(const unsigned char* p)
    {
        int bytes;
        std::memcpy(&bytes, p, sizeof bytes);
        return _mm256_set1_epi32(bytes);
    }
    // Four bytes from each entry's index and the offset on. A broadcast costs a load and a blend
    // goes anywhere, while an insertion waits for the one unit that shuffles.
    static Vec gather(const unsigned char* src, std::ptrdiff_t offset, const int* block)
    {
        const auto at = [=](int entry) {
            return broadcast32(src + (indexOf(block, entry) + offset));
        };
        Vec a = at(0), b = at(2);
        a = _mm256_blend_epi32(a, at(1), 0x02);
        b = _mm256_blend_epi32(b, at(3), 0x20);
        a = _mm256_blend_epi32(a, at(4), 0x04);
        b = _mm256_blend_epi32(b, at(6), 0x40);
        a = _mm256_blend_epi32(a, at(5), 0x08);
        b = _mm256_blend_epi32(b, at(7), 0x80);
        return _mm256_blend_epi32(a, b, 0xF0);
    }
    static Vec broadcast64(const unsigned char* p)
    {
        return _mm256_broadcastq_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
    }
    // The neighbours of an entry and of that four further on, as in RemapSse.h.
    static Vec pixelPairs(const unsigned char* src, std::ptrdiff_t rowBytes, const int* block,
                          int entry)
    {
        const unsigned char* p = src + (indexOf(block, entry) - 2);
        const unsigned char* q = src + (indexOf(block, entry + 4) - 2);
        const Vec a = _mm256_blend_epi32(broadcast64(p), broadcast64(p + rowBytes), 0x0C);
        const Vec b = _mm256_blend_epi32(broadcast64(q), broadcast64(q + rowBytes), 0xC0);
        const __m128i order =
            _mm_setr_epi8(2, 5, 10, 13, 3, 6, 11, 14, 4, 7, 12, 15, -1, -1, -1, -1);
        return _mm256_shuffle_epi8(_mm256_blend_epi32(a, b, 0xF0),
                                   _mm256_broadcastsi128_si256(order));
    }
    static Vec upperWords(Vec a, Vec b)
    {
        return _mm256_blend_epi16(_mm256_srli_epi32(a, 16), b, 0xAA);
    }
    static Vec broadcast(Vec a, int lane)
    {
        switch (lane) {
        case 0:
            return _mm256_shuffle_epi32(a, 0x00);
        case 1:
            return _mm256_shuffle_epi32(a, 0x55);
        case 2:
            return _mm256_shuffle_epi32(a, 0xAA);
        default:
            return _mm256_shuffle_epi32(a, 0xFF);
        }
    }
    static Vec bothUpper(Vec a)
    {
        const __m128i order = _mm_setr_epi8(2, 3, 2, 3, 6, 7, 6, 7, 10, 11, 10, 11, 14, 15, 14, 15);
        return _mm256_shuffle_epi8(a, _mm256_broadcastsi128_si256(order));
    }
    static Vec bothLower(Vec a)
    {
        const __m128i order = _mm_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13);
        return _mm256_shuffle_epi8(a, _mm256_broadcastsi128_si256(order));
    }

    static Vec add8(Vec a, Vec b) { return _mm256_add_epi8(a, b); }
    static Vec shuffle8(Vec a, Vec order) { return _mm256_shuffle_epi8(a, order); }
    static Vec inBothLanes(const unsigned char* p)
    {
        return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(p)));
    }
    static Vec loadBytes(const unsigned char* p)
    {
        return _mm256_loadu_si256(reinterpret_cast<const Vec*>(p));
    }
    static Vec eachFourTimes(const unsigned char* bytes, std::size_t i)
    {
        return _mm256_shuffle_epi8(loadBytes(bytes), loadBytes(fe::kFourTimes[i]));
    }
    static Vec eachTwice(const unsigned char* bytes, std::size_t i)
    {
        return _mm256_shuffle_epi8(loadBytes(bytes), loadBytes(fe::kTwice[i]));
    }
    // Of every 128 bits, the lower or upper half's bytes as words.
    static Vec lowBytes(Vec a) { return _mm256_unpacklo_epi8(a, zero()); }
    static Vec highBytes(Vec a) { return _mm256_unpackhi_epi8(a, zero()); }
    // The words of a and b in turn.
    static Vec lowWords(Vec a, Vec b) { return _mm256_unpacklo_epi16(a, b); }
    static Vec highWords(Vec a, Vec b) { return _mm256_unpackhi_epi16(a, b); }
    // Each tile's upper two pixels from a, its lower two from b.
    static Vec lowerPixels(Vec a, Vec b) { return _mm256_blend_epi32(a, b, 0xCC); }
    template <bool shared>
    static void loadWindows(const unsigned char* const (&rows)[4], const std::ptrdiff_t (&tiles)[2],
                            Vec (&windows)[1])
    {
        const auto at = [&](int row, int tile) { return broadcast32(rows[row] + tiles[tile]); };
        Vec a = at(0, 0);
        if constexpr (shared) {
            a = _mm256_blend_epi32(a, at(1, 0), 0x22);
            a = _mm256_blend_epi32(a, at(2, 0), 0x44);
            windows[0] = _mm256_blend_epi32(a, at(3, 0), 0x88);
        } else {
            Vec b = at(0, 1);
            a = _mm256_blend_epi32(a, at(1, 0), 0x02);
            b = _mm256_blend_epi32(b, at(1, 1), 0x20);
            a = _mm256_blend_epi32(a, at(2, 0), 0x04);
            b = _mm256_blend_epi32(b, at(2, 1), 0x40);
            a = _mm256_blend_epi32(a, at(3, 0), 0x08);
            b = _mm256_blend_epi32(b, at(3, 1), 0x80);
            windows[0] = _mm256_blend_epi32(a, b, 0xF0);
        }
    }
    static void storeTiles(unsigned char* top, unsigned char* bottom, const Vec (&values)[4])
    {
        const Vec bytes =
            _mm256_packs_epi16(upperWords(values[0], values[1]), upperWords(values[2], values[3]));
        const Vec order = _mm256_broadcastsi128_si256(
            _mm_setr_epi8(0, 2, 1, 3, 8, 10, 9, 11, 4, 6, 5, 7, 12, 14, 13, 15));
        const Vec rows =
            _mm256_shuffle_epi8(_mm256_xor_si256(bytes, _mm256_set1_epi8(-128)), order);
        const __m128i even = _mm256_castsi256_si128(rows);
        const __m128i odd = _mm256_extracti128_si256(rows, 1);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(top), _mm_unpacklo_epi16(even, odd));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bottom), _mm_unpackhi_epi16(even, odd));
    }

    static void storeBytes(unsigned char* dst, const Vec (&values)[2])
    {
        const Vec words =
            _mm256_packs_epi32(_mm256_srai_epi32(values[0], 16), _mm256_srai_epi32(values[1], 16));
        const Vec bytes = _mm256_packs_epi16(words, words);
        const __m128i inOrder =
            _mm_unpacklo_epi16(_mm256_castsi256_si128(bytes), _mm256_extracti128_si256(bytes, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                         _mm_xor_si128(inOrder, _mm_set1_epi8(-128)));
    }
    template <bool swapped>
    static void storePixels(unsigned char* dst, const Vec (&pixels)[4])
    {
        Vec p[4];
        for (int i = 0; i < 4; ++i)
            p[i] = _mm256_srai_epi32(pixels[i], 16);
        const Vec four =
            _mm256_packs_epi16(_mm256_packs_epi32(p[0], p[1]), _mm256_packs_epi32(p[2], p[3]));
        const __m128i order =
            swapped ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
                    : _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const Vec bytes = _mm256_shuffle_epi8(_mm256_xor_si256(four, _mm256_set1_epi8(-128)),
                                              _mm256_broadcastsi128_si256(order));
        // The first four pixels' store is four bytes too long; the next ones go over it.
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm256_castsi256_si128(bytes));
        const __m128i upper = _mm256_extracti128_si256(bytes, 1);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 12), upper);
        const int last = _mm_extract_epi32(upper, 2);
        std::memcpy(dst + 20, &last, sizeof last);
    }
};

} // namespace

namespace fe {

const RemapOps kRemapAvx2{mapLuma<Avx2Vectors>, mapPacked<Avx2Vectors, false>,
                          mapPacked<Avx2Vectors, true>, chromaIndices<Avx2Vectors>,
                          planRow<Avx2Vectors>};

} // namespace fe
