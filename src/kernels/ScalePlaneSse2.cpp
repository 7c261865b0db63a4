// Scaling of one plane with SSE2, which all of the library needs.
#include "kernels/ScalePlane.h"

#include <cstddef>
#include <cstring>
#include <emmintrin.h>

namespace fe {

namespace {

void across(const ScaleColumns& columns, const unsigned char* row, float* out)
{
    alignas(16) unsigned int pairs[kScaleBlock];
    unsigned int* pair = pairs;
    const ScaleGroup* const end =
        columns.groups + std::ptrdiff_t(columns.steps) * (kScaleStep / kScaleGroup);
    for (const ScaleGroup* group = columns.groups; group < end; ++group)
        for (int index : group->index) {
            const unsigned char* p = row + index;
            *pair++ = unsigned(p[0]) | unsigned(p[columns.channels]) << 16;
        }

    const __m128i minus = _mm_set1_epi32(0x0001FFFF); // the right sample less the left one
    const auto load = [](const unsigned int* p) {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(p));
    };
    pair = pairs;
    for (const ScaleGroup* group = columns.groups; group < end; ++group)
        for (int i = 0; i < kScaleGroup; i += 4, pair += 4, out += 4) {
            const __m128i sum =
                _mm_slli_epi32(_mm_madd_epi16(load(pair), load(group->weights + i)), 2);
            const __m128i difference = _mm_madd_epi16(load(pair), minus);
            const __m128 rest =
                _mm_mul_ps(_mm_cvtepi32_ps(difference), _mm_load_ps(group->rest + i));
            _mm_store_ps(out, _mm_add_ps(_mm_cvtepi32_ps(sum), rest));
        }
}

// Writes the results of 16 values in 1 / 2^16.
void storeBytes(unsigned char* out, const __m128i* values)
{
    __m128i words[2];
    for (std::size_t w = 0; w < 2; ++w)
        words[w] = _mm_packs_epi32(_mm_srli_epi32(values[2 * w], 16),
                                   _mm_srli_epi32(values[2 * w + 1], 16));
    void* p = out;
    _mm_storeu_si128(static_cast<__m128i*>(p), _mm_packus_epi16(words[0], words[1]));
}

// Writes whole steps, rounding down. Bit s tells that step s has bytes that may be too small.
// A function of its own, so that nothing else is computed in that mode.
[[gnu::noinline]] unsigned int quickly(const ScaleRows& rows, unsigned char* out, int steps)
{
    const float* top = rows.top;
    const float* bottom = rows.bottom;
    const __m128 weight = _mm_set1_ps(rows.weight);
    const __m128i sure = _mm_set1_epi16(-4);
    unsigned int doubts = 0;
    for (int s = 0; s < steps; ++s) {
        __m128i doubtful = _mm_setzero_si128();
        for (int half = 0; half < 2; ++half, out += 16) {
            __m128i values[4];
            for (__m128i& value : values) {
                const __m128 t = _mm_load_ps(top);
                const __m128 difference = _mm_sub_ps(_mm_load_ps(bottom), t);
                value = _mm_cvtps_epi32(_mm_add_ps(t, _mm_mul_ps(weight, difference)));
                doubtful = _mm_or_si128(doubtful, _mm_subs_epu16(value, sure));
                top += 4;
                bottom += 4;
            }
            storeBytes(out, values);
        }
        const __m128i none = _mm_cmpeq_epi8(doubtful, _mm_setzero_si128());
        doubts |= unsigned(_mm_movemask_epi8(none) != 0xFFFF) << s;
    }
    return doubts;
}

// A step as the affine warpers compute it.
void carefully(const ScaleRows& rows, int step, unsigned char* out)
{
    const double weight = double(rows.weight);
    const __m128d upper = _mm_set1_pd(1 - weight), lower = _mm_set1_pd(weight);
    const auto two = [&](__m128 top, __m128 bottom) {
        return _mm_cvttpd_epi32(_mm_add_pd(_mm_mul_pd(upper, _mm_cvtps_pd(top)),
                                           _mm_mul_pd(lower, _mm_cvtps_pd(bottom))));
    };
    for (int i = step * kScaleStep; i < (step + 1) * kScaleStep; out += 16) {
        __m128i values[4];
        for (__m128i& value : values) {
            const __m128 t = _mm_load_ps(rows.top + i), b = _mm_load_ps(rows.bottom + i);
            value = _mm_unpacklo_epi64(two(t, b), two(_mm_movehl_ps(t, t), _mm_movehl_ps(b, b)));
            i += 4;
        }
        storeBytes(out, values);
    }
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
        carefully(rows, step, out + std::ptrdiff_t(step) * kScaleStep);
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
    std::memcpy(out + done, last, std::size_t(rest));
}

} // namespace

const ScaleOps kScaleSse2{across, down};

} // namespace fe
