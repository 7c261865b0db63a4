// Build tool: writes the contents of FMMTbl into a file.
//
// The map is a smooth surface through three output rows: the top one, the middle one and the bottom
// one. Each row is a cubic Hermite spline along the columns, and the rows are joined by a
// quadratic. Only the four basic operations are used, so every build makes the same bytes.
#include "CBilinear.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 1024;

// Where a spline passes at an output column, and how steep it is there, per output pixel.
struct Knot {
    double x, position, slope;
};

// The middle of a step of 1/256 pixel.
constexpr double at(int pixel, int fraction)
{
    return pixel + (fraction + 0.5) / 256;
}

// The top row starts in a straight line.
constexpr double kStraight = 32;
constexpr double kRowStep = -6.4 / 256;
constexpr double kColStep = 138.0 / 256;

// clang-format off
constexpr Knot kTopRows[] = {
    {0,         at(127, 252),                        kRowStep},
    {kStraight, at(127, 252) + kStraight * kRowStep, kRowStep},
    {46,        127.02,                              0},
    {640,       at(128, 237),                        0.0022},
    {1279,      at(129, 195),                        0.0005},
};
constexpr Knot kTopCols[] = {
    {0,         at(540, 189),                        kColStep},
    {kStraight, at(540, 189) + kStraight * kColStep, kColStep},
    {240,       612,                                 0},
    {640,       at(569, 32),                         -0.12},
    {1279,      at(554, 213),                        0.06},
};
constexpr Knot kMiddleRows[] = {
    {0,    at(510, 181), -0.002},
    {640,  at(510, 48),  0.0006},
    {1279, at(511, 175), 0.0035},
};
constexpr Knot kMiddleCols[] = { // to the circle's right end and back to its left end
    {0,    at(485, 104),  1.7},
    {430,  1052.25,       0},
    {640,  at(1023, 179), -0.3},
    {1150, 230,           0},
    {1279, at(278, 172),  0.8},
};
constexpr Knot kBottomRows[] = {
    {0,    895.2,        0.0004},
    {640,  at(895, 122), 0.0006},
    {1279, at(896, 1),   0.001},
};
constexpr Knot kBottomCols[] = {
    {0,    700,          -0.05},
    {640,  at(693, 224), 0.02},
    {1279, at(734, 225), 0.1},
};
// clang-format on

// Source: the cubic Hermite basis.
double spline(std::span<const Knot> knots, int x)
{
    std::size_t i = 0;
    while (i + 2 < knots.size() && x >= knots[i + 1].x)
        ++i;
    const Knot &a = knots[i], &b = knots[i + 1];
    const double h = b.x - a.x;
    const double t = (x - a.x) / h, s = 1 - t;
    return a.position * (1 + 2 * t) * s * s + b.position * (1 + 2 * s) * t * t +
           h * (a.slope * t * s * s - b.slope * t * t * s);
}

// Source positions, rows or columns, of a whole output row.
using Positions = std::array<double, kWidth>;

Positions positions(std::span<const Knot> knots)
{
    Positions row;
    for (int x = 0; x < kWidth; ++x)
        row[std::size_t(x)] = spline(knots, x);
    return row;
}

// Lagrange's weights of the top, middle and bottom row for output row y.
std::array<double, 3> rowWeights(int y)
{
    constexpr double middle = 512, bottom = 1023;
    return {(y - middle) * (y - bottom) / (middle * bottom),
            y * (y - bottom) / (middle * (middle - bottom)),
            y * (y - middle) / (bottom * (bottom - middle))};
}

std::vector<FEMM_DATA> fixedMap()
{
    const std::array rows{positions(kTopRows), positions(kMiddleRows), positions(kBottomRows)};
    const std::array cols{positions(kTopCols), positions(kMiddleCols), positions(kBottomCols)};
    std::vector<FEMM_DATA> map;
    map.reserve(std::size_t(kWidth) * kHeight);
    for (int y = 0; y < kHeight; ++y) {
        const auto weights = rowWeights(y);
        const auto blend = [&](const auto& three, std::size_t x) {
            return weights[0] * three[0][x] + weights[1] * three[1][x] + weights[2] * three[2][x];
        };
        const auto fraction = [](double position) {
            return static_cast<unsigned short>((position - std::floor(position)) * 256);
        };
        for (std::size_t x = 0; x < kWidth; ++x) {
            const double row = blend(rows, x), col = blend(cols, x);
            map.push_back({fraction(row), fraction(col), unsigned(row) * kWidth + unsigned(col),
                           unsigned(map.size())});
        }
    }
    return map;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
        return 1;
    }
    const std::vector<FEMM_DATA> map = fixedMap();
    std::FILE* file = std::fopen(argv[1], "wb");
    if (!file) {
        std::perror(argv[1]);
        return 1;
    }
    const bool written = std::fwrite(map.data(), sizeof(FEMM_DATA), map.size(), file) == map.size();
    if (std::fclose(file) != 0 || !written) {
        std::perror(argv[1]);
        return 1;
    }
    return 0;
}
