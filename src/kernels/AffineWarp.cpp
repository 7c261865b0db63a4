// The affine warpers: one walk over the destination, with the channel and the border as parameters.
// Expressions are double; they round to float where noted, so that a flat image stays flat.
#include "AffineWarp.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

struct Geometry {
    int srcW, srcH, srcPitch, dstW, dstH, dstPitch;
};

// A position between four samples.
struct Position {
    std::ptrdiff_t index; // of the top-left sample
    double fx, fy;        // floats by value
};

// Interpolates one channel; sample(i) is the channel's value at index i.
template <class Sample>
int interpolate(const Position& p, int pitch, Sample sample)
{
    const double gx = 1 - p.fx;
    const float top = float(gx * sample(p.index) + p.fx * sample(p.index + 1));
    const float bottom = float(gx * sample(p.index + pitch) + p.fx * sample(p.index + pitch + 1));
    return int((1 - p.fy) * double(top) + p.fy * double(bottom));
}

struct Luma {
    static constexpr std::size_t kBytes = 1;
    static constexpr int kOutside = 0;

    static int at(const unsigned char* src, int pitch, const Position& p)
    {
        return interpolate(p, pitch, [src](std::ptrdiff_t i) { return src[i]; });
    }
};

// Two channels in 16-bit samples. Chroma planes behind an odd luma plane are not aligned, so
// samples are taken as bytes.
struct ChromaPair {
    static constexpr std::size_t kBytes = 2;
    static constexpr int kOutside = 0x8080;

    static int at(const unsigned char* src, int pitch, const Position& p)
    {
        const int low = interpolate(p, pitch, [src](std::ptrdiff_t i) { return src[2 * i]; });
        const int high = interpolate(p, pitch, [src](std::ptrdiff_t i) { return src[2 * i + 1]; });
        return (high << 8) | (low & 255);
    }
};

// Calls inside(floor x, floor y) with the corner's coordinates to ask whether it has a value.
template <class Channel, class Inside>
int warp(const void* srcSamples, const Geometry& g, void* dstSamples, const float* coef,
         Inside inside)
{
    if (!srcSamples || !dstSamples || !coef || g.srcW <= 0 || g.srcH <= 0 || g.dstW <= 0 ||
        g.dstH < 1 || g.srcPitch < 1 || g.dstPitch <= 0)
        return -1;
    const auto* src = static_cast<const unsigned char*>(srcSamples);
    auto* dst = static_cast<unsigned char*>(dstSamples);
    for (int dy = 0; dy < g.dstH; ++dy) {
        const float rowX = float(dy * double(coef[1]) + double(coef[2]));
        const float rowY = float(dy * double(coef[4]) + double(coef[5]));
        unsigned char* row = dst + std::size_t(dy) * std::size_t(g.dstPitch) * Channel::kBytes;
        for (int dx = 0; dx < g.dstW; ++dx) {
            const double sx = double(float(dx * double(coef[0]) + double(rowX)));
            const double sy = double(float(dx * double(coef[3]) + double(rowY)));
            const double x0 = std::floor(sx), y0 = std::floor(sy);
            int value = Channel::kOutside;
            if (inside(x0, y0)) {
                const Position p{std::ptrdiff_t(y0) * g.srcPitch + std::ptrdiff_t(x0),
                                 double(float(sx - x0)), double(float(sy - y0))};
                value = Channel::at(src, g.srcPitch, p);
            }
            std::memcpy(row + std::size_t(dx) * Channel::kBytes, &value, Channel::kBytes);
        }
    }
    return 0;
}

// The source must hold every neighbourhood; only what is no position at all is left out.
template <class Channel>
int warpTrusting(const void* src, const Geometry& g, void* dst, const float* coef)
{
    constexpr double kFar = 1 << 30;
    return warp<Channel>(src, g, dst, coef, [](double x, double y) {
        return std::fabs(x) < kFar && std::fabs(y) < kFar;
    });
}

// Kept: the last two columns and rows count as outside.
template <class Channel>
int warpChecking(const void* src, const Geometry& g, void* dst, const float* coef)
{
    return warp<Channel>(src, g, dst, coef, [&g](double x, double y) {
        return x >= 0 && x < g.srcW - 2 && y >= 0 && y < g.srcH - 2;
    });
}

} // namespace

int LM_Affine(const unsigned char* src, int srcW, int srcH, int srcPitch, unsigned char* dst,
              int dstW, int dstH, int dstPitch, const float* coef)
{
    return warpTrusting<Luma>(src, {srcW, srcH, srcPitch, dstW, dstH, dstPitch}, dst, coef);
}

int LM_Affine_check(const unsigned char* src, int srcW, int srcH, int srcPitch, unsigned char* dst,
                    int dstW, int dstH, int dstPitch, const float* coef, unsigned char)
{
    // Kept: the fill value never survives; outside pixels are 0.
    return warpChecking<Luma>(src, {srcW, srcH, srcPitch, dstW, dstH, dstPitch}, dst, coef);
}

int LM_Affine_UV(const unsigned short* src, int srcW, int srcH, int srcPitch, unsigned short* dst,
                 int dstW, int dstH, int dstPitch, const float* coef)
{
    return warpTrusting<ChromaPair>(src, {srcW, srcH, srcPitch, dstW, dstH, dstPitch}, dst, coef);
}

int LM_Affine_UV_check(const unsigned short* src, int srcW, int srcH, int srcPitch,
                       unsigned short* dst, int dstW, int dstH, int dstPitch, const float* coef)
{
    return warpChecking<ChromaPair>(src, {srcW, srcH, srcPitch, dstW, dstH, dstPitch}, dst, coef);
}
