// The command that finds the fisheye circle in pictures.
#ifndef LUMOFE_TOOLS_CALIBRATE_COMMAND_H
#define LUMOFE_TOOLS_CALIBRATE_COMMAND_H

#include <string>
#include <vector>

namespace lumofe {

struct CalibrateOptions {
    std::vector<std::string> inputs; // "-": standard input
    std::string overlay;             // still to draw the circle on; empty: none
    bool plain = false;              // prints the circle as --circle takes it, and no JSON
    bool force = false;              // replace an older overlay
};

// Prints what was found on standard output. False, after a line on standard error, when that is no
// circle to rely on; plain then prints nothing. Throws Error for whatever cannot be done; then
// nothing is printed and no file is left.
bool runCalibrate(const CalibrateOptions& options);

} // namespace lumofe

#endif
