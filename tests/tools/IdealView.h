// What ideal cameras in the test scene see: the yardstick for the library's pictures.
//
// A view is a pinhole picture: its pixels lie on a plane, and the tilt divides each row by a number
// that grows linearly down the view. The position fields that the library reports say by how much.
// Everything else here is geometry of the room: a view looks towards a wall, and is upright for a
// person who faces it.
#ifndef LUMOFE_TESTS_IDEAL_VIEW_H
#define LUMOFE_TESTS_IDEAL_VIEW_H

#include "Mounting.h"
#include "ToolTestSupport.h"
#include "scene/Camera.h"

#include <LumoFESDK.h>

namespace lumofe::test {

// Radius of the circle in scene(), pixels; its centre is at (kRadius, kRadius).
inline constexpr int kRadius = 640;

inline constexpr Vec3 kUp{0, 0, 1};
inline constexpr Vec3 kWalls[] = {{0, 1, 0}, {1, 0, 0}, {0, -1, 0}, {-1, 0, 0}}; // N, E, S, W

// The horizontal direction at an angle clockwise from north, seen from above; degrees.
Vec3 facingAt(double degrees);

// The plane of a layout's views.
struct ViewPlane {
    double areaW, areaH; // of the view at zoom 0, input pixels
    double scale;        // plane pixels per pixel of the area
    double slope;        // how much a degree of tilt changes the depth in a row of the area
};
inline constexpr ViewPlane kSinglePlane{800, 600, 0.5625, 1.0 / (300 * 45)};
inline constexpr ViewPlane kSubViewPlane{400, 300, 1, 0.0222 / 150};

// What a pinhole camera in the scene's camera position sees with these position fields, upright for
// a person who faces the given way. depthScale stretches the depth of the plane.
Image idealView(Mount mount, Vec3 facing, Size size, const FE_ViewPosition& position,
                const ViewPlane& plane, double depthScale = 1);

// Columns run clockwise as seen from above, from `azimuth` (degrees from north) over `span`; rows
// from the distance `top` to `bottom` from the circle's centre in the raw picture, all `lift` rows
// higher. Ceiling and floor.
struct Unwrap {
    double azimuth, span;
    double top, bottom;
    double lift;
};
Image idealUnwrap(Mount mount, Size size, const Unwrap& unwrap);

// The raw picture of the wall camera between two of its rows, squeezed to a size.
Image idealWallPanorama(Size size, double top, double bottom);

Image mirrored(Image image);
Image upsideDown(Image image);
Image cropped(const Image& image, int x, int y, Size size);

} // namespace lumofe::test

#endif
