// Scaling of one plane, block of columns by block of columns.
//
// The affine warpers interpolate between columns in double, round to float, and interpolate between
// rows in double. These passes give the same with fewer steps. All positions but 0 are at least
// 1/64 and float, so that their fractions f are multiples of 2^-29.
//
// Across: for samples p and q of 8 bits the warpers' (1 - f) * p + f * q is exact in double, as is
// 1 - f. Here f is w / 2^14 + rest / 2^16 with an integer w and a rest below 4 of 15 bits. The
// integer 4 * (p * (2^14 - w) + q * w) is a multiple of 4 below 2^24, and (q - p) * rest has 23
// bits, so both are exact floats, and their sum is the same number in 1 / 2^16, rounded once to
// float. It is done once for each source row.
//
// Down: (1 - f) * top and f * bottom are exact in double, and the warpers' result is the integer
// below their sum x, which is rounded once. In floats that are rounded down, top + f * (bottom -
// top) in 1 / 2^16 is never above x and less than 3 below it. So its integer part n tells the
// result, n / 2^16, unless the low half of n is among the last three before 2^16; then x may have
// reached the next integer, and is computed as the warpers do.
#include "kernels/ScalePlane.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace fe {

namespace {

constexpr int kLargest = 1 << 20; // columns or rows: positions fit floats and ints
constexpr float kSmallestStep = 1.0f / 64;

bool areApart(const unsigned char* a, std::int64_t aBytes, const unsigned char* b,
              std::int64_t bBytes)
{
    const auto start = [](const unsigned char* p) {
        return std::int64_t(reinterpret_cast<std::uintptr_t>(p));
    };
    return start(a) + aBytes <= start(b) || start(b) + bBytes <= start(a);
}

bool isServed(const PlaneScaling& p)
{
    for (int size : {p.srcW, p.srcH, p.dstW, p.dstH})
        if (size < 1 || size > kLargest) return false;
    for (float step : {p.stepX, p.stepY})
        if (!(step >= kSmallestStep && step <= float(kLargest))) return false;
    return p.src && p.dst &&
           areApart(p.src, std::int64_t(p.srcW) * p.srcH * p.channels, p.dst,
                    std::int64_t(p.dstW) * p.dstH * p.channels);
}

// Where a destination column or row lies, in source pixels. Everything behind the last two pixels
// is as good as `size`.
float positionOf(int pixel, float step, int size)
{
    return std::min(float(pixel * double(step)), float(size));
}

// How many destination columns have a source: the last two source columns count as outside.
int insideColumns(const PlaneScaling& p)
{
    int count = p.dstW;
    while (count > 0 && int(positionOf(count - 1, p.stepX, p.srcW)) >= p.srcW - 2)
        --count;
    return count;
}

std::span<ScaleGroup> groupsOf(ScaleColumns& c)
{
    return {c.groups, std::size_t(c.steps) * (kScaleStep / kScaleGroup)};
}

// Places each group in a window of the row's `readable` bytes.
void placeWindows(ScaleColumns& c, int readable)
{
    c.windowed = readable >= kScaleWindow;
    int* window = c.window;
    for (ScaleGroup& group : groupsOf(c)) {
        *window = std::min(group.index[0], readable - kScaleWindow);
        if (group.index[kScaleGroup - 1] + c.channels - *window >= kScaleWindow) c.windowed = false;
        for (int i = 0; i < kScaleGroup; ++i) {
            const unsigned place = unsigned(group.index[i] - *window);
            group.shuffle[i] = 0x80008000u | place | (place + unsigned(c.channels)) << 16;
        }
        ++window;
    }
}

// Describes the columns from `first` on.
void placeColumns(ScaleColumns& c, const PlaneScaling& p, int first, int inside)
{
    const int odd = p.channels - 1;
    c.channels = p.channels;
    c.count = std::min((inside - first) << odd, kScaleBlock);
    c.steps = (c.count + kScaleStep - 1) / kScaleStep;

    const int last = inside - 1;
    const float step = p.stepX;
    const int srcW = p.srcW;
    int rests = 0;
    for (ScaleGroup& group : groupsOf(c)) {
        const int at = int(&group - c.groups) * kScaleGroup;
        for (int i = 0; i < kScaleGroup; ++i) {
            const float x = positionOf(std::min(first + ((at + i) >> odd), last), step, srcW);
            const int whole = int(x);
            const float fraction = (x - float(whole)) * 65536;
            const int weight = int(fraction) >> 2;
            const float rest = fraction - float(weight << 2);
            group.index[i] = (whole << odd) + (i & odd);
            group.weights[i] = unsigned((1 << 14) - weight) | unsigned(weight) << 16;
            group.rest[i] = rest;
            rests |= int(rest * (1 << 13));
        }
    }
    c.whole = rests == 0;
    placeWindows(c, (int(positionOf(last, step, srcW)) + 2) << odd);
}

// Source rows that were interpolated across, the latest two.
class Rows {
public:
    Rows(const PlaneScaling& p, const ScaleColumns& columns, const ScaleOps& ops)
        : src_(p.src), pitch_(std::ptrdiff_t(p.srcW) * p.channels), columns_(columns), ops_(ops)
    {
    }

    // Rows of growing numbers, each followed by the one below it.
    void moveTo(int row)
    {
        if (row == top_) return;
        std::swap(upper_, lower_);
        if (row != top_ + 1) across(row, upper_);
        across(row + 1, lower_);
        top_ = row;
    }
    const float* upper() const { return upper_; }
    const float* lower() const { return lower_; }

private:
    void across(int row, float* out) const { ops_.across(columns_, src_ + row * pitch_, out); }

    const unsigned char* src_;
    std::ptrdiff_t pitch_;
    const ScaleColumns& columns_;
    const ScaleOps& ops_;
    int top_ = -2;
    alignas(32) float buffers_[2][kScaleBlock];
    float* upper_ = buffers_[0];
    float* lower_ = buffers_[1];
};

void scaleBlock(const PlaneScaling& p, const ScaleColumns& columns, int first, const ScaleOps& ops)
{
    Rows rows(p, columns, ops);
    const std::ptrdiff_t pitch = std::ptrdiff_t(p.dstW) * p.channels;
    unsigned char* out = p.dst + std::ptrdiff_t(first) * p.channels;
    for (int row = 0; row < p.dstH; ++row, out += pitch) {
        const float y = positionOf(row, p.stepY, p.srcH);
        const int whole = int(y);
        if (whole >= p.srcH - 2) break;
        rows.moveTo(whole);
        ops.down({rows.upper(), rows.lower(), y - float(whole)}, out, columns.count);
    }
}

// Sets what lies right of `inside` columns or below the last two source rows' upper edge.
void clearOutside(const PlaneScaling& p, int inside)
{
    const std::size_t pitch = std::size_t(p.dstW) * std::size_t(p.channels);
    const std::size_t used = std::size_t(inside) * std::size_t(p.channels);
    unsigned char* out = p.dst;
    for (int row = 0; row < p.dstH; ++row, out += pitch) {
        const bool below = int(positionOf(row, p.stepY, p.srcH)) >= p.srcH - 2;
        const std::size_t first = below ? 0 : used;
        std::memset(out + first, p.outside, pitch - first);
    }
}

} // namespace

bool scalePlane(const PlaneScaling& plane, Isa isa)
{
    if (isa == Isa::plain || !isServed(plane)) return false;
    const ScaleOps& ops = isa == Isa::avx2 ? kScaleAvx2 : kScaleSse2;
    const int inside = insideColumns(plane);
    clearOutside(plane, inside);
    ScaleColumns columns;
    for (int first = 0; first < inside; first += kScaleBlock / plane.channels) {
        placeColumns(columns, plane, first, inside);
        scaleBlock(plane, columns, first, ops);
    }
    return true;
}

} // namespace fe
