// Pictures of the test scene through any lens.
#ifndef LUMOFE_TOOLS_CAMERA_H
#define LUMOFE_TOOLS_CAMERA_H

#include "Mounting.h"
#include "media/Image.h"
#include "scene/Room.h"

#include <functional>
#include <optional>

namespace lumofe {

// right and down are those of the picture; the three directions are at right angles, of length 1.
struct Camera {
    Vec3 position;
    Vec3 forward;
    Vec3 right;
    Vec3 down;
};

// Where the test scene's camera of a mounting hangs.
//   ceiling  in the middle just under the ceiling, looks down; picture top north, right east
//   floor    in the middle at desk height, looks up; picture top north, right west
//   wall     in the middle of the south wall, looks north; picture top up, right east
Camera cameraFor(Mount mount);

// The direction that a picture point sees: x to the picture's right, y down, z forward. Nothing:
// black. The centre of pixel (column, row) is the point (column, row).
using Lens = std::function<std::optional<Vec3>(double column, double row)>;

// Averages 4 x 4 points a pixel in linear light.
Image renderPicture(const Room& room, const Camera& camera, const Lens& lens, Size size);

} // namespace lumofe

#endif
