// A first guess at the fisheye circle of a small picture.
#include "calibrate/RoughCircle.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace lumofe {
namespace {

constexpr double kLevel = 256; // of a plane
constexpr double kLeastSlope = 1 * kLevel, kLeastStep = 4 * kLevel;
constexpr int kReach = 3;           // pixels to either side of an edge
constexpr int kLeastSurround = 2;   // pixels between an edge and the border
constexpr double kDarkShare = 0.75; // of the way to the border

constexpr int kMostDraws = 20000;
// Draws for each one that would hit three points of the best circle so far: with so many more, a
// better circle would have shown, even where most triples fix it but roughly.
constexpr double kPatience = 15;
constexpr double kOnCircle = 1.2; // pixels
constexpr double kAligned = 0.8;  // cosine
constexpr double kCatch = 4;      // pixels; what the fit to all points takes in at first
constexpr std::size_t kLeastPoints = 16;
constexpr double kLeastArc = 0.75; // of the radius, about a point a pixel

bool contains(Size size, double x, double y)
{
    return x >= 0 && y >= 0 && x <= size.width - 1 && y <= size.height - 1;
}

// The point is in the picture.
double nearest(const LumaPlane& plane, double x, double y)
{
    return plane.at(int(std::lround(x)), int(std::lround(y)));
}

// Half the difference of the neighbours to either side.
Point slopeAt(const LumaPlane& plane, int x, int y)
{
    return {(double(plane.at(x + 1, y)) - double(plane.at(x - 1, y))) / 2,
            (double(plane.at(x, y + 1)) - double(plane.at(x, y - 1))) / 2};
}

double length(Point p)
{
    return std::sqrt(p.x * p.x + p.y * p.y);
}

// Whether the picture is dark from the edge to the border.
bool surroundIsDark(const LumaPlane& plane, const RimPoint& edge)
{
    const auto at = [&](double d) {
        return Point{edge.at.x + d * edge.inward.x, edge.at.y + d * edge.inward.y};
    };
    const Point in = at(kReach), out = at(-kLeastSurround);
    if (!contains(plane.size, in.x, in.y) || !contains(plane.size, out.x, out.y)) return false;
    const double bright = nearest(plane, in.x, in.y);
    const Point far = at(-kReach);
    const Point dark = contains(plane.size, far.x, far.y) ? far : out;
    const double middle = (bright + nearest(plane, dark.x, dark.y)) / 2;
    if (2 * (bright - middle) < kLeastStep) return false;

    int count = 0, darker = 0;
    for (int d = kLeastSurround;; ++d, ++count) {
        const Point p = at(-d);
        if (!contains(plane.size, p.x, p.y)) break;
        darker += nearest(plane, p.x, p.y) < middle;
    }
    return darker >= kDarkShare * count;
}

// The size of the slope, for a comparison along its direction.
std::vector<double> slopes(const LumaPlane& plane)
{
    std::vector<double> all(plane.values.size());
    for (int y = 1; y < plane.size.height - 1; ++y)
        for (int x = 1; x < plane.size.width - 1; ++x)
            all[std::size_t(y) * std::size_t(plane.size.width) + std::size_t(x)] =
                length(slopeAt(plane, x, y));
    return all;
}

// Asked very often, so without roots.
bool fits(const RimPoint& point, const FineCircle& circle)
{
    const double dx = circle.x - point.at.x, dy = circle.y - point.at.y;
    const double dd = dx * dx + dy * dy;
    const double least = circle.radius - kOnCircle, most = circle.radius + kOnCircle;
    if (dd < least * least || dd > most * most) return false;
    const double towards = point.inward.x * dx + point.inward.y * dy;
    return towards > 0 && towards * towards >= kAligned * kAligned * dd;
}

} // namespace

std::vector<RimPoint> rimPoints(const LumaPlane& plane)
{
    const std::vector<double> slope = slopes(plane);
    const auto slopeOf = [&](int x, int y) {
        return slope[std::size_t(y) * std::size_t(plane.size.width) + std::size_t(x)];
    };
    std::vector<RimPoint> points;
    for (int y = 1; y < plane.size.height - 1; ++y) {
        for (int x = 1; x < plane.size.width - 1; ++x) {
            const double here = slopeOf(x, y);
            if (here < kLeastSlope) continue;
            const Point s = slopeAt(plane, x, y);
            const RimPoint edge{{double(x), double(y)}, {s.x / here, s.y / here}};
            const int dx = int(std::lround(edge.inward.x)), dy = int(std::lround(edge.inward.y));
            if (slopeOf(x + dx, y + dy) > here || slopeOf(x - dx, y - dy) >= here) continue;
            if (surroundIsDark(plane, edge)) points.push_back(edge);
        }
    }
    return points;
}

bool plausible(const FineCircle& circle, Size size)
{
    const double width = size.width, height = size.height;
    return circle.radius >= std::min(width, height) / 6 &&
           circle.radius <= 0.6 * length({width, height}) && contains(size, circle.x, circle.y);
}

std::optional<FineCircle> roughCircle(const std::vector<RimPoint>& points, Size size)
{
    if (points.size() < kLeastPoints) return std::nullopt;
    std::minstd_rand engine;
    const auto draw = [&]() -> const RimPoint& { return points[engine() / 8 % points.size()]; };

    FineCircle best;
    std::ptrdiff_t most = 0;
    double draws = kMostDraws;
    for (int i = 0; i < draws; ++i) {
        const RimPoint &a = draw(), &b = draw(), &c = draw();
        const auto circle = circleThrough(a.at, b.at, c.at);
        if (!circle || !plausible(*circle, size)) continue;
        if (!fits(a, *circle) || !fits(b, *circle) || !fits(c, *circle)) continue;
        const std::ptrdiff_t count =
            std::ranges::count_if(points, [&](const RimPoint& p) { return fits(p, *circle); });
        if (count <= most) continue;
        most = count;
        best = *circle;
        const double odds = double(points.size()) / double(most);
        draws = std::min(draws, kPatience * odds * odds * odds);
    }
    if (double(most) < std::max(double(kLeastPoints), kLeastArc * best.radius)) return std::nullopt;

    std::vector<Point> places;
    places.reserve(points.size());
    for (const RimPoint& p : points)
        places.push_back(p.at);
    const auto fit = fitCircle(places, best, kCatch);
    return fit && plausible(fit->circle, size) ? fit->circle : best;
}

} // namespace lumofe
