// Finds the fisheye circle in pictures.
#include "calibrate/CircleFinder.h"

#include "calibrate/RimRays.h"
#include "calibrate/RoughCircle.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumofe {
namespace {

constexpr double kLevel = 256;    // of a plane
constexpr int kRoughSide = 320;   // pixels of the picture in which the circle is looked for first
constexpr double kRoughError = 3; // of those pixels
constexpr int kRefinements = 3;
constexpr double kOnRim = 0.006, kLeastOnRim = 1; // of the radius; pixels
constexpr double kCheckBand = 0.1;                // of the radius
constexpr double kLeastCheckBand = 8;             // pixels
constexpr double kOutside = 1.03;                 // of the radius
// Neighbouring rays see the same pixels; as many of them tell as much as one on its own would.
constexpr double kRaysAlike = 16;

// 0 at `none` and beyond, 1 at `full` and beyond, in proportion between.
double ramp(double value, double none, double full)
{
    return std::clamp((value - none) / (full - none), 0.0, 1.0);
}

std::optional<FineCircle> roughlyFound(const LumaPlane& plane, int factor)
{
    const LumaPlane small = smoothed(reduced(plane, factor));
    auto circle = roughCircle(rimPoints(small), small.size);
    if (!circle) return std::nullopt;
    const double shift = (factor - 1) / 2.0;
    return FineCircle{circle->x * factor + shift, circle->y * factor + shift,
                      circle->radius * factor};
}

double darkShareOutside(const LumaPlane& plane, const FineCircle& circle, double limit)
{
    const double reach = kOutside * circle.radius;
    long count = 0, dark = 0;
    for (int y = 0; y < plane.size.height; ++y) {
        for (int x = 0; x < plane.size.width; ++x) {
            const double dx = x - circle.x, dy = y - circle.y;
            if (dx * dx + dy * dy <= reach * reach) continue;
            ++count;
            dark += plane.at(x, y) < limit * kLevel;
        }
    }
    return count == 0 ? 0 : double(dark) / double(count);
}

// Fits once more, and judges by how the picture looks around the circle.
std::optional<FoundCircle> judged(const LumaPlane& plane, const FineCircle& circle)
{
    const double band = std::max(kCheckBand * circle.radius, kLeastCheckBand);
    const double tolerance = std::max(kOnRim * circle.radius, kLeastOnRim);
    const RimRays rays = rimRays(plane, circle, band);
    const auto fit = fitCircle(rays.rim, circle, 2 * tolerance);
    if (!fit) return std::nullopt;

    const auto onRim = std::ranges::count_if(
        rays.rim, [&](Point p) { return std::abs(distance(fit->circle, p)) <= tolerance; });
    FoundCircle found;
    found.circle = fit->circle;
    found.rimVisible = double(rays.visible) / kRays;
    found.rimFound = double(onRim) / kRays;
    found.residual = fit->residual;
    found.contrast = rays.step;
    found.surroundDark = darkShareOutside(plane, fit->circle, rays.surround + rays.step / 2);
    const double error = fit->error * std::sqrt(kRaysAlike) / fit->circle.radius;
    const std::pair<double, Doubt> marks[] = {
        {ramp(found.rimFound, 0.1, 0.3), Doubt::littleRim},
        {ramp(double(onRim) / std::max(rays.visible, 1), 0.2, 0.5), Doubt::brokenRim},
        {ramp(error, 0.01, 0.003), Doubt::raggedRim},
        {ramp(found.surroundDark, 0.3, 0.6), Doubt::brightSurround}};
    found.doubt = std::ranges::min_element(marks)->second;
    found.confidence = 1;
    for (const auto& mark : marks)
        found.confidence *= mark.first;
    return found;
}

} // namespace

std::optional<FoundCircle> findCircle(const LumaPlane& plane)
{
    const int longer = std::max(plane.size.width, plane.size.height);
    const int factor = std::max(1, (longer + kRoughSide - 1) / kRoughSide);
    auto circle = roughlyFound(plane, factor);
    if (!circle) return std::nullopt;

    double band = kRoughError * factor + 2 * kOnRim * circle->radius;
    for (int i = 0; i < kRefinements; ++i, band = std::max(band / 2, 4.0)) {
        const auto fit = fitCircle(rimRays(plane, *circle, band).rim, *circle, band);
        if (!fit) return std::nullopt;
        circle = fit->circle;
    }
    const auto found = judged(plane, *circle);
    return found && plausible(found->circle, plane.size) ? found : std::nullopt;
}

} // namespace lumofe
