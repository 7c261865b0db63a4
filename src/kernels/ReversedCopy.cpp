// Copying in reverse order, 16 bytes at a time.
#include "kernels/ReversedCopy.h"

#include "kernels/Isa.h"

#include <cstdint>
#include <cstring>
#include <emmintrin.h>

namespace fe {

namespace {

constexpr std::size_t kBytes = sizeof(__m128i);

__m128i load(const void* p)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(p));
}

void store(void* p, __m128i value)
{
    _mm_storeu_si128(static_cast<__m128i*>(p), value);
}

__m128i reverseWords(__m128i v)
{
    constexpr int kReverse = _MM_SHUFFLE(0, 1, 2, 3);
    const __m128i halves = _mm_shufflehi_epi16(_mm_shufflelo_epi16(v, kReverse), kReverse);
    return _mm_shuffle_epi32(halves, _MM_SHUFFLE(1, 0, 3, 2));
}

__m128i reverseBytes(__m128i v)
{
    return reverseWords(_mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8)));
}

bool areApart(const unsigned char* a, const unsigned char* b, std::size_t bytes)
{
    const auto x = reinterpret_cast<std::uintptr_t>(a), y = reinterpret_cast<std::uintptr_t>(b);
    return x < y ? y - x >= bytes : x - y >= bytes;
}

} // namespace

void copyReversed(const unsigned char* src, unsigned char* dst, std::size_t count,
                  std::size_t elementBytes)
{
    const std::size_t bytes = count * elementBytes;
    std::size_t done = 0;
    if (isaInUse() != Isa::plain && areApart(src, dst, bytes))
        for (; done + kBytes <= bytes; done += kBytes) {
            const __m128i v = load(src + (bytes - done - kBytes));
            store(dst + done, elementBytes == 1 ? reverseBytes(v) : reverseWords(v));
        }
    for (; done < bytes; done += elementBytes)
        std::memcpy(dst + done, src + (bytes - done - elementBytes), elementBytes);
}

} // namespace fe
