// The command that dewarps a still or a video.
#ifndef LUMOFE_TOOLS_RENDER_COMMAND_H
#define LUMOFE_TOOLS_RENDER_COMMAND_H

#include "Dewarper.h"

#include <optional>
#include <string>

namespace lumofe {

struct RenderOptions {
    std::string input;  // "-": standard input
    std::string output; // "-": standard output
    View view = View::single;
    Mount mount = Mount::ceiling;
    PixelFormat format = PixelFormat::nv12;
    std::optional<Circle> circle; // default: centred, half the shorter side
    std::optional<Size> size;     // default: defaultOutputSize()
    double pan = 0;               // degrees
    std::optional<double> tilt;   // degrees; default: by mounting
    double zoom = 0;              // percent
    int timeFrames = 0;           // further frames to measure
    bool verbose = false;         // show the library's lines on standard error
};

// The largest 4:3 size inside the input's with both sides multiples of 4.
Size defaultOutputSize(Size input);

// Throws Error for whatever cannot be done; then no output file is left.
void runRender(const RenderOptions& options);

} // namespace lumofe

#endif
