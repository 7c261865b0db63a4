// The inner loop of the lens model for x86 vectors of any width, written once. V, which each file
// of an instruction set defines, says what a vector is; everything has internal linkage, so that no
// other file can end up with its instructions.
#ifndef LUMOFE_LENSROWSSIMD_H
#define LUMOFE_LENSROWSSIMD_H

#include "mapping/LensRows.h"

#include <cstddef>
#include <cstdint>

namespace fe {

namespace {

// FastAtan in degrees, multiplied out. Its last bits differ, but rounded to float it has the plain
// code's bits for every float there is: LensRowsTest.cpp tries them.
constexpr double kTerm1 = (0.7853981633974483 + 0.2447) * double(kDegrees);
constexpr double kTerm2 = (0.0663 - 0.2447) * double(kDegrees);
constexpr double kTerm3 = -0.0663 * double(kDegrees);
constexpr double kRightAngle = 1.5707963267948966 * double(kDegrees);

// From here on the angle is kRightAngle.
constexpr float kFarAway = 0x1p100f;

// The angle whose tangent is t, for t from 0 to 1.
template <class V>
inline typename V::Doubles angleOf(typename V::Doubles t)
{
    return t * (V::all(kTerm1) + t * (V::all(kTerm2) + t * V::all(kTerm3)));
}

// What the angle whose tangent is t lacks to a right one, for t from 1 to kFarAway. `inverse` is
// 1 / t rounded to float, which one Newton step makes precise.
template <class V>
inline typename V::Doubles complementOf(typename V::Doubles t, typename V::Doubles inverse)
{
    return angleOf<V>(inverse + inverse * (V::all(1.0) - t * inverse));
}

// Each pass below handles a strip of a row before the next one goes on with it: the processor
// overlaps the divisions of a short loop better than those of one that does everything.
constexpr int kStrip = 256;

struct Strip {
    alignas(32) float dY[kStrip], dX[kStrip]; // offset from the centre, on the view plane
    alignas(32) float inverse[kStrip];        // 1 / (r * r)
    alignas(32) float inside[kStrip];         // a mask: neither outside the circle nor the input
    alignas(32) float q[kStrip];              // r / |m|, the radius on the tilted plane
    alignas(32) float t[kStrip];              // tangent of the angle to the axis, at most kFarAway
    alignas(32) float g[kStrip];              // g / m is what the lens multiplies offsets by
};

template <class V>
void findOffsets(const LensView& view, const LensRow& row, const float* Ca, int count,
                 const unsigned char* entries, Strip& s)
{
    using Floats = typename V::Floats;
    const Floats si = V::all(view.si), co = V::all(view.co);
    const Floats RaSi = V::all(row.Ra * view.si), RaCo = V::all(row.Ra * view.co);
    const Floats P = V::all(view.P), Q = V::all(view.Q);
    const Floats centreRow = V::all(view.centreRow), centreCol = V::all(view.centreCol);
    const Floats scale = V::all(kRadiusScale), one = V::all(1.0f);
    for (int j = 0; j < count; j += V::kLanes) {
        V::prefetch(entries + std::size_t(j) * 8); // the last pass writes there
        const Floats c = V::load(Ca + j);
        const Floats dY = (RaCo + c * si) + Q - centreRow;
        const Floats dX = P + (c * co - RaSi) - centreCol;
        const Floats y = dY * scale;
        const Floats x = dX * scale;
        V::store(s.dY + j, dY);
        V::store(s.dX + j, dX);
        V::store(s.inverse + j, one / (y * y + x * x));
    }
}

template <class V, bool kTilted>
void findRadii(const LensView& view, const LensRow& row, int count, Strip& s)
{
    using Floats = typename V::Floats;
    using Ints = typename V::Ints;
    const Floats halfWidth = V::all(view.halfWidth), radius = V::all(float(view.Lr));
    const Floats tanHalf = V::all(view.lens.tanHalf), m = V::all(row.m < 0 ? -row.m : row.m);
    for (int j = 0; j < count; j += V::kLanes) {
        const Floats inverse = V::load(s.inverse + j);
        const Floats y = Floats(0x5F3759DF - (Ints(inverse) >> 1));
        const Floats r = y * (V::all(1.5f) - V::all(0.5f) * inverse * y * y); // FastInvSqrt
        const Ints inside = (halfWidth > r) | V::notAtLeast(r + V::all(3.0f), radius);
        V::store(s.inside + j, Floats(inside));
        const Floats q = kTilted ? r / m : r;
        V::store(s.q + j, q);
        // The axis has r = -infinity.
        V::store(s.t + j, V::min(V::all(kFarAway), V::abs(q * tanHalf / radius)));
    }
}

// Where m is negative, q and t would be too, and the angles near the axis. Their signs cancel in g,
// so all go without; only the right angle that the other angles are taken from needs one.
template <class V>
void bend(const LensView& view, const LensRow& row, int count, Strip& s)
{
    using Floats = typename V::Floats;
    const Floats one = V::all(1.0f);
    const Floats diameter = V::all(2 * float(view.Lr)), fov = V::all(view.lens.fov);
    const auto rightAngle = V::all(row.m < 0 ? -kRightAngle : kRightAngle);
    for (int j = 0; j < count; j += V::kLanes) {
        const Floats t = V::load(s.t + j);
        const Floats inverse = one / t;
        const auto near = [&] { return V::narrow(angleOf<V>(V::low(t)), angleOf<V>(V::high(t))); };
        const auto far = [&] {
            return V::narrow(rightAngle - complementOf<V>(V::low(t), V::low(inverse)),
                             rightAngle - complementOf<V>(V::high(t), V::high(inverse)));
        };
        const auto isFar = t > one;
        const int farLanes = V::bits(isFar);
        const Floats theta = farLanes == V::kAllLanes ? far()
                             : farLanes == 0          ? near()
                                                      : V::choose(isFar, far(), near());
        V::store(s.g + j, diameter / (fov * V::load(s.q + j)) * theta);
    }
}

template <class V, bool kTilted>
bool writeEntries(const LensView& view, const LensRow& row, int count, const Strip& s,
                  unsigned char* entries)
{
    using Floats = typename V::Floats;
    using Ints = typename V::Ints;
    const Floats m = V::all(row.m), zero = V::all(0.0f), steps = V::all(256.0f);
    const Floats centreRow = V::all(view.centreRow), centreCol = V::all(view.centreCol);
    const Floats lastRow = V::all(view.lastRow), lastCol = V::all(view.lastCol);
    const Ints weights = V::words(V::all(view.pitch), V::all(1 << 16));
    bool someWithout = false;
    for (int j = 0; j < count; j += V::kLanes) {
        const Floats g = V::load(s.g + j);
        Floats srcRow = V::load(s.dY + j) * g;
        Floats srcCol = V::load(s.dX + j) * g;
        if (kTilted) {
            srcRow = srcRow / m;
            srcCol = srcCol / m;
        }
        srcRow = srcRow + centreRow;
        srcCol = srcCol + centreCol;

        const Ints row256 = V::truncate(srcRow * steps);
        const Ints col256 = V::truncate(srcCol * steps);
        const Ints fractions = V::words(row256, col256 << 16) & V::all(0xFF00FF);
        const Ints indices = V::sumOfProducts(V::words(row256 >> 8, col256 << 8), weights);

        const Ints inside = Ints(V::load(s.inside + j));
        const Ints hasSource =
            (V::min(srcRow, srcCol) > zero) & (srcRow < lastRow) & (srcCol < lastCol);
        const int stored = V::bits(inside & hasSource);
        unsigned char* const out = entries + std::size_t(j) * 8;
        if (stored == V::kAllLanes) {
            V::storeEntries(out, fractions, indices);
            continue;
        }
        someWithout |= V::bits(inside) != stored;
        unsigned char all[V::kLanes * 8];
        V::storeEntries(all, fractions, indices);
        for (int lane = 0; lane < V::kLanes; ++lane)
            if (stored >> lane & 1) __builtin_memcpy(out + lane * 8, all + lane * 8, 8);
    }
    return someWithout;
}

template <class V, bool kTilted>
bool mapStrip(const LensView& view, const LensRow& row, const float* Ca, int count,
              unsigned char* entries)
{
    Strip s;
    findOffsets<V>(view, row, Ca, count, entries, s);
    findRadii<V, kTilted>(view, row, count, s);
    bend<V>(view, row, count, s);
    return writeEntries<V, kTilted>(view, row, count, s, entries);
}

// Whether the passes give the plain code's bytes: positions and pitch have 15 bits, the radius is a
// float, and q is not 0, for which there is a rule of its own.
inline bool suits(const LensView& view, const LensRow& row)
{
    return view.lastRow < 0x7FFF && view.lastCol < 0x7FFF &&
           view.pitch == std::int16_t(view.pitch) && view.Lr > 0 && view.Lr <= 1 << 24 &&
           row.m >= -0x1p20f && row.m <= 0x1p20f;
}

template <class V>
bool mapLensRowIn(const LensView& view, const LensRow& row, const float* Ca, int count,
                  unsigned char* entries)
{
    const auto mapStripOf = row.m == 1 ? mapStrip<V, false> : mapStrip<V, true>;
    const int inVectors = suits(view, row) ? count / V::kLanes * V::kLanes : 0;
    bool someWithout = false;
    int j = 0;
    while (j < inVectors) {
        const int n = inVectors - j < kStrip ? inVectors - j : kStrip;
        someWithout |= mapStripOf(view, row, Ca + j, n, entries + std::size_t(j) * 8);
        j += n;
    }
    someWithout |= mapLensRow(view, row, Ca + j, count - j, entries + std::size_t(j) * 8);
    return someWithout;
}

} // namespace

} // namespace fe

#endif
