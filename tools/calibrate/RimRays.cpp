// The rim of the fisheye circle, measured along rays from its centre.
#include "calibrate/RimRays.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

namespace lumofe {
namespace {

constexpr double kLevel = 256;        // of a plane
constexpr double kLeastStep = 2;      // levels
constexpr double kClear = 0.15;       // of the middle one of the rays' largest steps
constexpr double kAboveNoise = 6;     // times the middle one of the steps furthest out
constexpr double kAcross = 1.0 / 300; // of the radius: half the width of a ray
constexpr double kWindow = 1.0 / 150; // of the radius, more: what a step is compared over
constexpr int kLeastWindow = 2;       // pixels
constexpr double kInPicture = 2;      // pixels that a visible rim is away from the border

// Directions by halving right angles: square roots are the same everywhere, sines are not.
const std::array<Point, kRays>& directions()
{
    static const std::array<Point, kRays> all = [] {
        std::array<Point, kRays> d;
        constexpr std::size_t kQuarter = kRays / 4;
        d[0] = {1, 0};
        d[kQuarter] = {0, 1};
        for (std::size_t gap = kQuarter; gap > 1; gap /= 2) {
            for (std::size_t i = 0; i < kQuarter; i += gap) {
                const Point sum{d[i].x + d[i + gap].x, d[i].y + d[i + gap].y};
                const double length = std::sqrt(sum.x * sum.x + sum.y * sum.y);
                d[i + gap / 2] = {sum.x / length, sum.y / length};
            }
        }
        for (std::size_t i = kQuarter; i < kRays; ++i)
            d[i] = {-d[i - kQuarter].y, d[i - kQuarter].x};
        return d;
    }();
    return all;
}

bool contains(Size size, Point p)
{
    return p.x >= 0 && p.y >= 0 && p.x <= size.width - 1 && p.y <= size.height - 1;
}

// Between pixels; levels. The point is in the picture.
double levelAt(const LumaPlane& plane, Point p)
{
    const int x = std::min(int(p.x), plane.size.width - 2);
    const int y = std::min(int(p.y), plane.size.height - 2);
    const double u = p.x - x, v = p.y - y;
    const double top = plane.at(x, y) * (1 - u) + plane.at(x + 1, y) * u;
    const double bottom = plane.at(x, y + 1) * (1 - u) + plane.at(x + 1, y + 1) * u;
    return (top * (1 - v) + bottom * v) / kLevel;
}

// Sums of levels along a ray, from `start` pixels from the centre outwards, as far as the picture
// goes.
struct Profile {
    double start = 0;
    std::vector<double> sums{0};

    int count() const { return int(sums.size()) - 1; }
    double mean(int from, int to) const
    {
        return (sums[std::size_t(to)] - sums[std::size_t(from)]) / (to - from);
    }
    // The same where some or all of the samples may not be there; then the nearest one counts.
    double meanWithin(int from, int to) const
    {
        const int first = std::clamp(from, 0, count() - 1);
        return mean(first, std::clamp(to, first + 1, count()));
    }
};

Profile profileAlong(const LumaPlane& plane, const FineCircle& circle, Point direction, double band)
{
    Profile profile;
    profile.start = std::max(1.0, circle.radius - band);
    const double across = std::max(1.0, kAcross * circle.radius);
    const int count = 1 + int(circle.radius + band - profile.start);
    for (int i = 0; i < count; ++i) {
        const double d = profile.start + i;
        const Point p{circle.x + d * direction.x, circle.y + d * direction.y};
        const Point left{p.x - across * direction.y, p.y + across * direction.x};
        const Point right{p.x + across * direction.y, p.y - across * direction.x};
        if (!contains(plane.size, p) || !contains(plane.size, left) || !contains(plane.size, right))
            break;
        profile.sums.push_back(profile.sums.back() +
                               (levelAt(plane, p) + levelAt(plane, left) + levelAt(plane, right)) /
                                   3);
    }
    return profile;
}

// How much brighter the window before each sample is than that from it on.
std::vector<double> stepsOf(const Profile& profile, int window)
{
    std::vector<double> steps;
    for (int i = window; i + window <= profile.count(); ++i)
        steps.push_back(profile.mean(i - window, i) - profile.mean(i, i + window));
    return steps;
}

// The outermost peak that is high enough, to a fraction of a sample; less than 0 when there is
// none.
double outermostPeak(std::span<const double> steps, double least)
{
    for (std::size_t i = steps.size(); i-- > 2;) {
        const double out = steps[i], here = steps[i - 1], in = steps[i - 2];
        if (here < least || here < out || here <= in) continue;
        return double(i - 1) + (out - in) / (2 * (2 * here - out - in));
    }
    return -1;
}

double middle(std::vector<double> values)
{
    if (values.empty()) return 0;
    const auto at = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::ranges::nth_element(values, at);
    return *at;
}

} // namespace

RimRays rimRays(const LumaPlane& plane, const FineCircle& circle, double band)
{
    const int window = kLeastWindow + int(kWindow * circle.radius);
    std::vector<Profile> profiles;
    std::vector<std::vector<double>> steps;
    std::vector<double> largest, outermost;
    RimRays rays;
    for (const Point& direction : directions()) {
        profiles.push_back(profileAlong(plane, circle, direction, band + 2 * window));
        steps.push_back(stepsOf(profiles.back(), window));
        const double reach = profiles.back().start + profiles.back().count();
        if (reach < circle.radius + kInPicture + window || steps.back().empty()) {
            steps.back().clear();
            continue;
        }
        ++rays.visible;
        largest.push_back(*std::ranges::max_element(steps.back()));
        outermost.push_back(std::abs(steps.back().back()));
    }

    const double clear =
        std::max({kLeastStep, kClear * middle(largest), kAboveNoise * middle(outermost)});
    std::vector<double> found, surround;
    for (std::size_t i = 0; i < kRays; ++i) {
        const double peak = outermostPeak(steps[i], clear);
        if (peak < 0) continue;
        const Profile& profile = profiles[i];
        // The step at sample i lies between the samples i - 1 and i.
        const double d = profile.start + window + peak - 0.5;
        const Point& direction = directions()[i];
        rays.rim.push_back({circle.x + d * direction.x, circle.y + d * direction.y});
        // Soft edges reach into the windows next to the step.
        const int split = window + int(std::lround(peak));
        surround.push_back(profile.meanWithin(split + window, split + 2 * window));
        found.push_back(profile.meanWithin(split - 2 * window, split - window) - surround.back());
    }
    rays.step = middle(found);
    rays.surround = middle(surround);
    return rays;
}

} // namespace lumofe
