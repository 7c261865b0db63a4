// A first guess at the fisheye circle of a small picture.
#ifndef LUMOFE_TOOLS_ROUGH_CIRCLE_H
#define LUMOFE_TOOLS_ROUGH_CIRCLE_H

#include "calibrate/CircleFit.h"
#include "calibrate/LumaPlane.h"

namespace lumofe {

// Where a picture turns from a dark surround to something brighter.
struct RimPoint {
    Point at;
    Point inward; // towards the brighter side; of length 1
};

// All such points of a smoothed picture: edges from which it stays dark outwards, for most of the
// way to the picture's border.
std::vector<RimPoint> rimPoints(const LumaPlane& plane);

// Whether a camera can deliver that: the centre is in the picture, and the diameter at least a
// third of the shorter side and at most 1.2 times the diagonal.
bool plausible(const FineCircle& circle, Size size);

// The plausible circle that most of the points lie on, with their inward sides inside. The same
// points give the same circle always. Nothing when hardly any lie on a circle.
std::optional<FineCircle> roughCircle(const std::vector<RimPoint>& points, Size size);

} // namespace lumofe

#endif
