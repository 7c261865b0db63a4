// What `lumofe calibrate` found.
#ifndef LUMOFE_TOOLS_CALIBRATION_H
#define LUMOFE_TOOLS_CALIBRATION_H

#include "Dewarper.h"

#include <string>

namespace lumofe {

struct Calibration {
    Size input;     // of the pictures
    Circle circle;  // rounded to whole pixels
    bool confident; // of the circle
};

// Reads the JSON that it prints. "-": standard input. Throws Error for something else.
Calibration readCalibration(const std::string& path);

} // namespace lumofe

#endif
