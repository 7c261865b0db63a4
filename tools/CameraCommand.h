// The command that makes a camera's file.
#ifndef LUMOFE_TOOLS_CAMERA_COMMAND_H
#define LUMOFE_TOOLS_CAMERA_COMMAND_H

#include "Dewarper.h"

#include <optional>
#include <string>

namespace lumofe {

struct CameraOptions {
    std::string path;             // of the file to make; "-": standard output
    std::optional<Size> size;     // of the input; default: that of the calibration
    std::optional<Circle> circle; // default: that of the calibration, else centred
    std::string calibration;      // what `lumofe calibrate` printed; empty: none
    Mount mount = Mount::ceiling;
    View view = View::single;
    bool force = false; // replace an older file
};

// Throws Error for whatever cannot be done; then an older file stays.
void initCamera(const CameraOptions& options);

} // namespace lumofe

#endif
