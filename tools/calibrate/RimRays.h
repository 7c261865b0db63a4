// The rim of the fisheye circle, measured along rays from its centre.
#ifndef LUMOFE_TOOLS_RIM_RAYS_H
#define LUMOFE_TOOLS_RIM_RAYS_H

#include "calibrate/CircleFit.h"
#include "calibrate/LumaPlane.h"

namespace lumofe {

inline constexpr int kRays = 1024; // to a full turn

struct RimRays {
    int visible = 0;        // rays that cross the circle inside the picture
    std::vector<Point> rim; // where each clearly turns from dark to bright inwards, the outermost
                            // such place; nothing for rays without one
    double step = 0;        // by how much it turns brighter there, median, levels; 0 without any
    double surround = 0;    // how bright it is outside of it, median, levels
};

// Looks for the rim within `band` pixels of the circle, to either side.
RimRays rimRays(const LumaPlane& plane, const FineCircle& circle, double band);

} // namespace lumofe

#endif
