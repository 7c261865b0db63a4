// Scaling of one plane with AVX2.
#include "kernels/ScalePlane.h"

#include <cstddef>
#include <immintrin.h>

namespace fe {

namespace {

__m256i load(const void* p)
{
    return _mm256_load_si256(static_cast<const __m256i*>(p));
}

// The samples and their right neighbours, as 16-bit halves.
__m256i pairsOf(const unsigned char* window, const ScaleGroup& group)
{
    const void* p = window;
    const __m256i bytes =
        _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(p)));
    return _mm256_shuffle_epi8(bytes, load(group.shuffle));
}

__m256 weigh(__m256i pairs, const ScaleGroup& group)
{
    const __m256i sum = _mm256_madd_epi16(pairs, load(group.weights));
    return _mm256_cvtepi32_ps(_mm256_slli_epi32(sum, 2));
}

__m256 weighRest(__m256i pairs, const ScaleGroup& group)
{
    const __m256i difference = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x0001FFFF));
    return _mm256_mul_ps(_mm256_cvtepi32_ps(difference), _mm256_load_ps(group.rest));
}

void across(const ScaleColumns& columns, const unsigned char* row, float* out)
{
    if (!columns.windowed) {
        kScaleSse2.across(columns, row, out);
        return;
    }
    const int* window = columns.window;
    const ScaleGroup* group = columns.groups;
    const float* end = out + std::ptrdiff_t(columns.steps) * kScaleStep;
    if (columns.whole)
        for (; out < end; out += kScaleGroup, ++window, ++group)
            _mm256_store_ps(out, weigh(pairsOf(row + *window, *group), *group));
    else
        for (; out < end; out += kScaleGroup, ++window, ++group) {
            const __m256i pairs = pairsOf(row + *window, *group);
            _mm256_store_ps(out, _mm256_add_ps(weigh(pairs, *group), weighRest(pairs, *group)));
        }
}

// The results of 32 values in 1 / 2^16.
__m256i bytesOf(const __m256i* values)
{
    __m256i turns[2]; // the high halves of two vectors each, in turn
    for (std::size_t t = 0; t < 2; ++t)
        turns[t] =
            _mm256_blend_epi16(_mm256_srli_epi32(values[2 * t], 16), values[2 * t + 1], 0xAA);
    const __m256i vectors = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(0, 2, 4, 6, 1, 3, 5, 7, 8, 10, 12, 14, 9, 11, 13, 15));
    const __m256i bytes = _mm256_shuffle_epi8(_mm256_packus_epi16(turns[0], turns[1]), vectors);
    return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

void store(unsigned char* out, __m256i bytes)
{
    void* p = out;
    _mm256_storeu_si256(static_cast<__m256i*>(p), bytes);
}

// Writes whole steps, rounding down. Bit s tells that step s has bytes that may be too small.
// A function of its own, so that nothing else is computed in that mode.
[[gnu::noinline]] unsigned int quickly(const ScaleRows& rows, unsigned char* out, int steps)
{
    const float* top = rows.top;
    const float* bottom = rows.bottom;
    const __m256 weight = _mm256_set1_ps(rows.weight);
    const __m256i edge = _mm256_set1_epi16(-3);
    unsigned int doubts = 0;
    for (int s = 0; s < steps; ++s) {
        __m256i values[4];
        for (__m256i& value : values) {
            const __m256 t = _mm256_load_ps(top);
            const __m256 difference = _mm256_sub_ps(_mm256_load_ps(bottom), t);
            value = _mm256_cvtps_epi32(_mm256_add_ps(t, _mm256_mul_ps(weight, difference)));
            top += 8;
            bottom += 8;
        }
        const __m256i most = _mm256_max_epu16(_mm256_max_epu16(values[0], values[1]),
                                              _mm256_max_epu16(values[2], values[3]));
        const __m256i doubtful = _mm256_cmpeq_epi16(_mm256_max_epu16(most, edge), most);
        doubts |= unsigned(_mm256_movemask_epi8(doubtful) != 0) << s;
        store(out + std::ptrdiff_t(s) * kScaleStep, bytesOf(values));
    }
    return doubts;
}

// A step as the affine warpers compute it.
__m256i carefully(const ScaleRows& rows, int step)
{
    const double weight = double(rows.weight);
    const __m256d upper = _mm256_set1_pd(1 - weight), lower = _mm256_set1_pd(weight);
    const auto four = [&](int i) {
        const __m256d top = _mm256_cvtps_pd(_mm_load_ps(rows.top + i));
        const __m256d bottom = _mm256_cvtps_pd(_mm_load_ps(rows.bottom + i));
        return _mm256_cvttpd_epi32(
            _mm256_add_pd(_mm256_mul_pd(upper, top), _mm256_mul_pd(lower, bottom)));
    };
    __m256i values[4];
    for (int v = 0; v < 4; ++v) {
        const int i = step * kScaleStep + 8 * v;
        values[v] = _mm256_set_m128i(four(i + 4), four(i));
    }
    return bytesOf(values);
}

// Writes whole steps.
void writeSteps(const ScaleRows& rows, unsigned char* out, int steps)
{
    const unsigned int mode = _mm_getcsr();
    _mm_setcsr((mode & ~unsigned(_MM_ROUND_MASK)) | _MM_ROUND_DOWN);
    unsigned int doubts = quickly(rows, out, steps);
    _mm_setcsr(mode);
    for (; doubts != 0; doubts &= doubts - 1) {
        const int step = __builtin_ctz(doubts);
        store(out + std::ptrdiff_t(step) * kScaleStep, carefully(rows, step));
    }
}

void down(const ScaleRows& rows, unsigned char* out, int count)
{
    const int steps = count / kScaleStep, rest = count % kScaleStep;
    const int done = steps * kScaleStep;
    writeSteps(rows, out, steps);
    if (rest == 0) return;
    unsigned char last[kScaleStep];
    writeSteps({rows.top + done, rows.bottom + done, rows.weight}, last, 1);
    __builtin_memcpy(out + done, last, unsigned(rest));
}

} // namespace

const ScaleOps kScaleAvx2{across, down};

} // namespace fe
