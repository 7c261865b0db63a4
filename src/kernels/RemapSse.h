// Vectors of 128 bits for RemapBlocks.h: what SSE2 and SSSE3 have in common.
#include "kernels/RemapBlocks.h"

#include <emmintrin.h>

namespace {

struct SseVectors {
    using Vec = __m128i;
    static constexpr std::size_t kLanes = 4; // entries in a vector, in their order

    static Vec zero() { return _mm_setzero_si128(); }
    static Vec all16(int x) { return _mm_set1_epi16(short(x)); }
    static Vec all32(int x) { return _mm_set1_epi32(x); }
    static Vec bitAnd(Vec a, Vec b) { return _mm_and_si128(a, b); }
    static Vec bitOr(Vec a, Vec b) { return _mm_or_si128(a, b); }
    static Vec bitXor(Vec a, Vec b) { return _mm_xor_si128(a, b); }
    static Vec add16(Vec a, Vec b) { return _mm_add_epi16(a, b); }
    static Vec sub16(Vec a, Vec b) { return _mm_sub_epi16(a, b); }
    static Vec mul16(Vec a, Vec b) { return _mm_mullo_epi16(a, b); }
    static Vec saturatedSub16(Vec a, Vec b) { return _mm_subs_epu16(a, b); }
    static Vec equal16(Vec a, Vec b) { return _mm_cmpeq_epi16(a, b); }
    static Vec add32(Vec a, Vec b) { return _mm_add_epi32(a, b); }
    static Vec sub32(Vec a, Vec b) { return _mm_sub_epi32(a, b); }
    static Vec greater32(Vec a, Vec b) { return _mm_cmpgt_epi32(a, b); }
    static Vec multiplyAdd(Vec a, Vec b) { return _mm_madd_epi16(a, b); }
    template <int bits>
    static Vec left16(Vec a)
    {
        return _mm_slli_epi16(a, bits);
    }
    // The upper byte of each word less its lower one.
    static Vec differences8(Vec a)
    {
        return _mm_sub_epi16(_mm_srli_epi16(a, 8), _mm_and_si128(a, _mm_set1_epi16(255)));
    }
    template <int bits>
    static Vec right32(Vec a)
    {
        return _mm_srli_epi32(a, bits);
    }
    static bool any(Vec a)
    {
        return _mm_movemask_epi8(_mm_cmpeq_epi32(a, _mm_setzero_si128())) != 0xFFFF;
    }
    static void store(std::int32_t* p, Vec a) { _mm_storeu_si128(reinterpret_cast<Vec*>(p), a); }
    static void prefetch(const unsigned char* p)
    {
        _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0);
    }

    // Products of the lower 32 bits; the upper halves are dropped.
    static Vec mul32(Vec a, Vec b)
    {
        const Vec even = _mm_mul_epu32(a, b);
        const Vec odd = _mm_mul_epu32(_mm_srli_epi64(a, 32), _mm_srli_epi64(b, 32));
        return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, 0x08), _mm_shuffle_epi32(odd, 0x08));
    }
    // a * b >> shift in 64 bits; the results have 32.
    static Vec highProduct(Vec a, Vec b, int shift)
    {
        const Vec bits = _mm_cvtsi32_si128(shift);
        const Vec even = _mm_srl_epi64(_mm_mul_epu32(a, b), bits);
        const Vec odd = _mm_srl_epi64(_mm_mul_epu32(_mm_srli_epi64(a, 32), b), bits);
        return _mm_or_si128(even, _mm_slli_epi64(odd, 32));
    }

    static Vec load(const int* p) { return _mm_loadu_si128(reinterpret_cast<const Vec*>(p)); }
    // Double words 1 or 0 of pairs: even ones of a, then of b.
    template <int which>
    static Vec everySecond(Vec a, Vec b)
    {
        return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b),
                                               _MM_SHUFFLE(2 + which, which, 2 + which, which)));
    }
    static void loadEntries(const int* block, Vec& fractions, Vec& indices)
    {
        const Vec a = load(block), b = load(block + 4);
        fractions = everySecond<0>(a, b);
        indices = everySecond<1>(a, b);
    }
    static Vec fractionsInOrder(const int* block)
    {
        return everySecond<0>(load(block), load(block + 4));
    }
    // Indices of entries 0, 2, 4, 6.
    static Vec secondIndices(const int* block)
    {
        const Vec a = everySecond<1>(load(block), load(block + 4));
        const Vec b = everySecond<1>(load(block + 8), load(block + 12));
        return everySecond<0>(a, b);
    }

    static Vec load32(const unsigned char* p)
    {
        int bytes;
        std::memcpy(&bytes, p, sizeof bytes);
        return _mm_cvtsi32_si128(bytes);
    }
    // Four bytes from each entry's index and the offset on.
    static Vec gather(const unsigned char* src, std::ptrdiff_t offset, const int* block)
    {
        const auto at = [=](int entry) { return load32(src + (indexOf(block, entry) + offset)); };
        return _mm_unpacklo_epi64(_mm_unpacklo_epi32(at(0), at(1)),
                                  _mm_unpacklo_epi32(at(2), at(3)));
    }
    static Vec load64(const unsigned char* p)
    {
        return _mm_loadl_epi64(reinterpret_cast<const Vec*>(p));
    }
    // The neighbours of one entry: a double word for each byte of a pixel, then nothing of use. Two
    // bytes before a pixel are loaded with it.
    static Vec pixelPairs(const unsigned char* src, std::ptrdiff_t rowBytes, const int* block,
                          int entry)
    {
        const unsigned char* p = src + (indexOf(block, entry) - 2);
        const Vec rows = _mm_unpacklo_epi8(load64(p), load64(p + rowBytes));
        return _mm_unpacklo_epi8(_mm_srli_si128(rows, 4), _mm_srli_si128(rows, 10));
    }
    // The upper words of a in the lower words of the result, those of b in its upper ones.
    static Vec upperWords(Vec a, Vec b)
    {
        return _mm_or_si128(_mm_srli_epi32(a, 16), _mm_and_si128(b, _mm_set1_epi32(-65536)));
    }
    static Vec broadcast(Vec a, int lane)
    {
        switch (lane) {
        case 0:
            return _mm_shuffle_epi32(a, 0x00);
        case 1:
            return _mm_shuffle_epi32(a, 0x55);
        case 2:
            return _mm_shuffle_epi32(a, 0xAA);
        default:
            return _mm_shuffle_epi32(a, 0xFF);
        }
    }
    // The upper or lower word of each double word in both of its words.
    static Vec bothUpper(Vec a) { return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, 0xF5), 0xF5); }
    static Vec bothLower(Vec a) { return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, 0xA0), 0xA0); }

    static Vec packUpperWords(Vec a, Vec b, Vec c, Vec d)
    {
        const Vec ab = _mm_packs_epi32(_mm_srai_epi32(a, 16), _mm_srai_epi32(b, 16));
        const Vec cd = _mm_packs_epi32(_mm_srai_epi32(c, 16), _mm_srai_epi32(d, 16));
        return _mm_xor_si128(_mm_packs_epi16(ab, cd), _mm_set1_epi8(-128));
    }
    static void storeBytes(unsigned char* dst, const Vec (&values)[4])
    {
        _mm_storeu_si128(reinterpret_cast<Vec*>(dst),
                         packUpperWords(values[0], values[1], values[2], values[3]));
    }
    template <bool swapped>
    static Vec packPixels(const Vec (&pixels)[4])
    {
        Vec p[4];
        for (int i = 0; i < 4; ++i)
            p[i] = swapped ? _mm_shuffle_epi32(pixels[i], 0xC6) : pixels[i];
        return packUpperWords(p[0], p[1], p[2], p[3]);
    }
    template <bool swapped>
    static void storePixels(unsigned char* dst, const Vec (&pixels)[4])
    {
        unsigned char bytes[16];
        _mm_storeu_si128(reinterpret_cast<Vec*>(bytes), packPixels<swapped>(pixels));
        for (int i = 0; i < 4; ++i)
            std::memcpy(dst + 3 * i, bytes + 4 * i, 3);
    }
};

} // namespace
