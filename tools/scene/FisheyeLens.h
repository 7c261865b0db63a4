// The fisheye lens of the test scene.
#ifndef LUMOFE_TOOLS_FISHEYE_LENS_H
#define LUMOFE_TOOLS_FISHEYE_LENS_H

#include "scene/Camera.h"

namespace lumofe {

// Angle from the optical axis at the rim of the circle, degrees.
inline constexpr double kRimAngle = 80 * 1.115007;

// An exact equidistant lens whose circle fills a picture of size x size pixels: a point at distance
// d from the axis sees the angle d / (size / 2) * kRimAngle. The axis goes through the centre of
// pixel (size / 2, size / 2); outside the circle nothing is seen.
Lens fisheyeLens(int size);

Image renderFisheye(const Room& room, const Camera& camera, int size);

} // namespace lumofe

#endif
