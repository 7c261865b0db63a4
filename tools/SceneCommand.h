// The command that renders the built-in test scene as a fisheye picture.
#ifndef LUMOFE_TOOLS_SCENE_COMMAND_H
#define LUMOFE_TOOLS_SCENE_COMMAND_H

#include "Mounting.h"

#include <string>

namespace lumofe {

struct SceneOptions {
    std::string output; // "-": PNG on standard output
    int size = 2048;    // width and height, pixels
    Mount mount = Mount::ceiling;
    bool force = false; // replace an existing file
};

// Throws Error for whatever cannot be done; then no output file is left.
void runScene(const SceneOptions& options);

} // namespace lumofe

#endif
