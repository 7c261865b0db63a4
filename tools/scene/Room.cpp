// The room of the test scene: plain surfaces with painted patterns.
#include "scene/Room.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace lumofe {
namespace {

constexpr Colour kWhite{0.90, 0.90, 0.88};
constexpr Colour kGlass{0.45, 0.68, 0.90};
constexpr Colour kWood{0.20, 0.09, 0.04};
constexpr Colour kLamp{1.0, 0.98, 0.90};

struct Point {
    double s, z;
};

struct Stroke {
    Point from, to;
};

// A door, window or picture on a wall: outline, then what it shows.
struct Fitting {
    double s0, s1, z0, z1;
    Colour fill;
    bool cross; // window bars
};

// Letters: 1 high, centred.
constexpr double kStrokeHalfWidth = 0.075;
constexpr Stroke kLetterN[] = {
    {{-.34, -.42}, {-.34, .42}}, {{-.34, .42}, {.34, -.42}}, {{.34, -.42}, {.34, .42}}};
constexpr Stroke kLetterE[] = {{{-.28, -.42}, {-.28, .42}},
                               {{-.28, .42}, {.28, .42}},
                               {{-.28, 0}, {.18, 0}},
                               {{-.28, -.42}, {.28, -.42}}};
constexpr Stroke kLetterS[] = {
    {{.25, .31}, {.16, .39}},    {{.16, .39}, {.03, .42}},     {{.03, .42}, {-.10, .41}},
    {{-.10, .41}, {-.21, .35}},  {{-.21, .35}, {-.28, .27}},   {{-.28, .27}, {-.29, .17}},
    {{-.29, .17}, {-.23, .08}},  {{-.23, .08}, {-.13, .02}},   {{-.13, .02}, {0, 0}},
    {{0, 0}, {.13, -.02}},       {{.13, -.02}, {.23, -.08}},   {{.23, -.08}, {.29, -.17}},
    {{.29, -.17}, {.28, -.27}},  {{.28, -.27}, {.21, -.35}},   {{.21, -.35}, {.10, -.41}},
    {{.10, -.41}, {-.03, -.42}}, {{-.03, -.42}, {-.16, -.39}}, {{-.16, -.39}, {-.25, -.31}}};
constexpr Stroke kLetterW[] = {{{-.48, .42}, {-.24, -.42}},
                               {{-.24, -.42}, {0, .26}},
                               {{0, .26}, {.24, -.42}},
                               {{.24, -.42}, {.48, .42}}};

constexpr Fitting kNorthFittings[] = {{-3.3, -1.5, 0.9, 2.6, kGlass, true},
                                      {1.5, 3.3, 0.9, 2.6, kGlass, true}};
constexpr Fitting kEastFittings[] = {{-3.2, -1.6, 1.2, 2.3, {0.55, 0.40, 0.08}, false},
                                     {1.6, 2.9, 0.9, 2.5, {0.06, 0.20, 0.25}, false}};
constexpr Fitting kSouthFittings[] = {{1.5, 2.6, 0, 2.2, kWood, false},
                                      {-3.1, -1.5, 1.2, 2.4, {0.55, 0.12, 0.10}, false}};
constexpr Fitting kWestFittings[] = {{-3.3, -1.3, 0.9, 2.6, kGlass, true},
                                     {1.7, 2.8, 0, 2.2, kWood, false}};

// s runs to the right of a person who faces the wall, 0 in its middle.
struct Wall {
    Colour paint;
    std::span<const Stroke> letter;
    std::span<const Fitting> fittings;
};

constexpr Wall kNorth{{0.06, 0.14, 0.42}, kLetterN, kNorthFittings};
constexpr Wall kEast{{0.48, 0.07, 0.05}, kLetterE, kEastFittings};
constexpr Wall kSouth{{0.05, 0.27, 0.09}, kLetterS, kSouthFittings};
constexpr Wall kWest{{0.55, 0.36, 0.06}, kLetterW, kWestFittings};

double length(double a, double b)
{
    return std::sqrt(a * a + b * b);
}

double distanceTo(const Stroke& stroke, Point p)
{
    const double ds = stroke.to.s - stroke.from.s, dz = stroke.to.z - stroke.from.z;
    const double along =
        ((p.s - stroke.from.s) * ds + (p.z - stroke.from.z) * dz) / (ds * ds + dz * dz);
    const double t = std::clamp(along, 0.0, 1.0);
    return length(p.s - stroke.from.s - t * ds, p.z - stroke.from.z - t * dz);
}

bool inLetter(std::span<const Stroke> letter, Point p)
{
    if (std::abs(p.s) > 0.6 || std::abs(p.z) > 0.5) return false;
    return std::ranges::any_of(
        letter, [p](const Stroke& s) { return distanceTo(s, p) < kStrokeHalfWidth; });
}

Colour fittingColour(const Fitting& f, double s, double z)
{
    constexpr double kFrame = 0.07, kBar = 0.025;
    const double edge = std::min({s - f.s0, f.s1 - s, z - f.z0, f.z1 - z});
    if (edge < kFrame) return kWhite;
    const double fromMiddle =
        std::min(std::abs(s - (f.s0 + f.s1) / 2), std::abs(z - (f.z0 + f.z1) / 2));
    return f.cross && fromMiddle < kBar ? kWhite : f.fill;
}

// 1 away from the room's edges, darker towards them.
double cornerShade(double distance)
{
    const double near = std::max(0.0, 1 - distance / 0.8);
    return 1 - 0.4 * near * near;
}

Colour wallColour(const Wall& wall, double s, double z)
{
    const double shade = cornerShade(Room::kHalfWidth - std::abs(s)) * cornerShade(z) *
                         cornerShade(Room::kHeight - z);
    if (inLetter(wall.letter,
                 {s / Room::kLetterHeight, (z - Room::kLetterZ) / Room::kLetterHeight}))
        return kWhite * shade;
    for (const Fitting& f : wall.fittings)
        if (s > f.s0 && s < f.s1 && z > f.z0 && z < f.z1) return fittingColour(f, s, z) * shade;
    if (z < 0.12) return kWood * shade;
    if (std::abs(z - 0.75) < 0.03) return kWhite * shade;
    return wall.paint * (z < 0.75 ? 0.6 * shade : shade);
}

Colour floorColour(double x, double y)
{
    const double shade =
        cornerShade(Room::kHalfWidth - std::abs(x)) * cornerShade(Room::kHalfWidth - std::abs(y));
    const double radius = length(x, y);
    constexpr double kRose = 0.9, kNeedle = 0.75, kNeedleHalfWidth = 0.16;
    if (radius < kRose) {
        if (radius > kRose - 0.06) return kWood * shade;
        const bool needle = std::abs(x) / kNeedleHalfWidth + std::abs(y) / kNeedle < 1;
        if (!needle) return kWhite * shade;
        return (y > 0 ? Colour{0.75, 0.03, 0.03} : Colour{0.03, 0.05, 0.30}) * shade;
    }
    constexpr double kTile = 0.5;
    const bool dark =
        (int((x + Room::kHalfWidth) / kTile) + int((y + Room::kHalfWidth) / kTile)) % 2 != 0;
    return (dark ? Colour{0.16, 0.14, 0.12} : Colour{0.60, 0.57, 0.52}) * shade;
}

Colour ceilingColour(double x, double y)
{
    constexpr int kTiles = 11;
    constexpr double kTile = 2 * Room::kHalfWidth / kTiles;
    const double u = (x + Room::kHalfWidth) / kTile, v = (y + Room::kHalfWidth) / kTile;
    const int i = int(u), j = int(v);
    const double edge = kTile * std::min({u - i, i + 1 - u, v - j, j + 1 - v});
    if (edge < 0.015) return {0.25, 0.25, 0.25};
    if (i % 4 == 1 && j % 4 == 1 && edge > 0.05) return kLamp;
    return Colour{0.62, 0.62, 0.60} * (cornerShade(Room::kHalfWidth - std::abs(x)) *
                                       cornerShade(Room::kHalfWidth - std::abs(y)));
}

// How far along the ray the slab from low to high ends.
double exitDistance(double origin, double direction, double low, double high)
{
    if (direction > 0) return (high - origin) / direction;
    if (direction < 0) return (low - origin) / direction;
    return std::numeric_limits<double>::infinity();
}

} // namespace

Colour Room::trace(Vec3 origin, Vec3 direction) const
{
    const double tx = exitDistance(origin.x, direction.x, -kHalfWidth, kHalfWidth);
    const double ty = exitDistance(origin.y, direction.y, -kHalfWidth, kHalfWidth);
    const double tz = exitDistance(origin.z, direction.z, 0, kHeight);
    const Vec3 hit = origin + direction * std::min({tx, ty, tz});
    if (tz <= tx && tz <= ty)
        return direction.z < 0 ? floorColour(hit.x, hit.y) : ceilingColour(hit.x, hit.y);
    if (ty <= tx)
        return direction.y > 0 ? wallColour(kNorth, hit.x, hit.z)
                               : wallColour(kSouth, -hit.x, hit.z);
    return direction.x > 0 ? wallColour(kEast, -hit.y, hit.z) : wallColour(kWest, hit.y, hit.z);
}

} // namespace lumofe
