// The rim of the fisheye circle, measured along rays from its centre.
#ifndef LUMOFE_TOOLS_RIM_RAYS_H
#define LUMOFE_TOOLS_RIM_RAYS_H

#include "calibrate/CircleFit.h"
#include "calibrate/LumaPlane.h"

namespace lumofe {

inline constexpr int kRays = 1024; // to a full turn

// A step from dark to bright, inwards along a ray.
struct RimStep {
    Point at;
    double step = 0; // levels
};

struct RimRays {
    int visible = 0;          // rays that cross the circle inside the picture
    std::vector<RimStep> rim; // the outermost clear step of each, where there is one
    double step = 0;          // levels, of the middle one; 0 without any
    double surround = 0;      // levels, outside of the middle step
};

// Looks for the rim within `band` pixels of the circle, to either side.
RimRays rimRays(const LumaPlane& plane, const FineCircle& circle, double band);

} // namespace lumofe

#endif
