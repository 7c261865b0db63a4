// The command that tells where a spot of the raw picture lies.
#ifndef LUMOFE_TOOLS_POINT_COMMAND_H
#define LUMOFE_TOOLS_POINT_COMMAND_H

#include "Dewarper.h"

#include <optional>
#include <string>

namespace lumofe {

struct PointOptions {
    int x = 0, y = 0;             // pixels of the input, from the left and from the top
    std::string cameraPath;       // instead of the next three; empty: none
    std::optional<Size> size;     // of the input
    std::optional<Circle> circle; // default: centred
    std::optional<Mount> mount;   // default: ceiling
};

// Prints pan and tilt of the spot as the layouts take them, and which of the camera's presets looks
// nearest to it, on standard output. Throws Error for a spot outside the circle.
void runPoint(const PointOptions& options);

} // namespace lumofe

#endif
