// Circles through points.
#include "calibrate/CircleFit.h"

#include <array>
#include <cmath>

namespace lumofe {
namespace {

constexpr int kRounds = 12;
constexpr double kSingular = 1e-6; // of a determinant of unit scale

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

double determinant(const Vector& a, const Vector& b, const Vector& c)
{
    return a[0] * (b[1] * c[2] - b[2] * c[1]) - b[0] * (a[1] * c[2] - a[2] * c[1]) +
           c[0] * (a[1] * b[2] - a[2] * b[1]);
}

// The normal equations of one round; the unknowns are the changes of x, y and radius.
struct Normal {
    Matrix columns{};
    Vector right{};
    double weights = 0;
    double squares = 0; // of distances, weighted

    void add(Point p, const FineCircle& circle, double tolerance)
    {
        const double dx = p.x - circle.x, dy = p.y - circle.y;
        const double d = std::sqrt(dx * dx + dy * dy);
        const double e = d - circle.radius;
        const double share = e / tolerance;
        if (d <= 0 || std::abs(share) >= 1) return;
        const double w = (1 - share * share) * (1 - share * share);
        const Vector slope{dx / d, dy / d, 1};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j)
                columns[j][i] += w * slope[i] * slope[j];
            right[i] += w * slope[i] * e;
        }
        weights += w;
        squares += w * e * e;
    }

    bool singular() const
    {
        return !(determinant(columns[0], columns[1], columns[2]) >
                 kSingular * weights * weights * weights) ||
               weights < 3;
    }
    Vector solution() const
    {
        const double whole = determinant(columns[0], columns[1], columns[2]);
        return {determinant(right, columns[1], columns[2]) / whole,
                determinant(columns[0], right, columns[2]) / whole,
                determinant(columns[0], columns[1], right) / whole};
    }
    // Sum of the diagonal of the inverse: the variances for distances of variance 1.
    double variances() const
    {
        double sum = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3, k = (i + 2) % 3;
            sum += columns[j][j] * columns[k][k] - columns[j][k] * columns[k][j];
        }
        return sum / determinant(columns[0], columns[1], columns[2]);
    }
};

} // namespace

double distance(const FineCircle& circle, Point point)
{
    const double dx = point.x - circle.x, dy = point.y - circle.y;
    return std::sqrt(dx * dx + dy * dy) - circle.radius;
}

std::optional<FineCircle> circleThrough(Point a, Point b, Point c)
{
    const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
    const double bb = bx * bx + by * by, cc = cx * cx + cy * cy;
    const double area = 2 * (bx * cy - by * cx);
    if (area * area <= 1e-4 * bb * cc) return std::nullopt;
    const double ux = (cy * bb - by * cc) / area, uy = (bx * cc - cx * bb) / area;
    return FineCircle{a.x + ux, a.y + uy, std::sqrt(ux * ux + uy * uy)};
}

std::optional<CircleFit> fitCircle(const std::vector<Point>& points, const FineCircle& guess,
                                   double tolerance)
{
    CircleFit fit{guess, 0, 0};
    for (int round = 0; round <= kRounds; ++round) {
        Normal normal;
        for (const Point& p : points)
            normal.add(p, fit.circle, tolerance);
        if (normal.singular()) return std::nullopt;
        fit.residual = std::sqrt(normal.squares / normal.weights);
        fit.error = fit.residual * std::sqrt(normal.variances());
        if (round == kRounds) break;
        const Vector step = normal.solution();
        fit.circle.x += step[0];
        fit.circle.y += step[1];
        fit.circle.radius += step[2];
    }
    if (!(fit.circle.radius > 0)) return std::nullopt;
    return fit;
}

} // namespace lumofe
