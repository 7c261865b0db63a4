// Circles through points.
#ifndef LUMOFE_TOOLS_CIRCLE_FIT_H
#define LUMOFE_TOOLS_CIRCLE_FIT_H

#include <optional>
#include <vector>

namespace lumofe {

// Pixels; the centre of pixel (column, row) is the point (column, row).
struct Point {
    double x = 0;
    double y = 0;
};

// As exact as it is known; the library takes whole pixels.
struct FineCircle {
    double x = 0;
    double y = 0;
    double radius = 0;
};

// How far the point lies outside the circle; negative inside.
double distance(const FineCircle& circle, Point point);

// The circle through three points; nothing when they lie on a line, or nearly.
std::optional<FineCircle> circleThrough(Point a, Point b, Point c);

struct CircleFit {
    FineCircle circle;
    double residual = 0; // root mean square of the distances of points that count, pixels
    double error = 0;    // standard error of centre and radius, all told, for independent points
};

// The circle with the least squares of distances, found from a first guess. Distances beyond
// `tolerance` do not count, and nearer ones ever less towards it, so that strays do not pull.
// Nothing when the points that count do not determine a circle.
std::optional<CircleFit> fitCircle(const std::vector<Point>& points, const FineCircle& guess,
                                   double tolerance);

} // namespace lumofe

#endif
