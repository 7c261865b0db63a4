// From what was asked for to what the library is told.
#ifndef LUMOFE_TOOLS_RENDER_PLAN_H
#define LUMOFE_TOOLS_RENDER_PLAN_H

#include "Dewarper.h"
#include "video/Ffmpeg.h"

#include <optional>
#include <string>
#include <vector>

namespace lumofe {

struct RenderOptions {
    std::string input;  // "-": standard input
    std::string output; // "-": standard output
    View view = View::single;
    Mount mount = Mount::ceiling;
    PixelFormat format = PixelFormat::nv12;
    std::optional<Circle> circle; // default: centred, half the shorter side
    std::optional<Size> size;     // default: defaultOutputSize()
    bool exactFormat = false;     // feed the format even where the picture comes out garbled
    bool exactSize = false;       // take the size even where the layout does not compose
    bool upright = true;          // turn over what the library leaves upside down

    std::optional<double> pan;  // degrees; single view only, as the next two
    std::optional<double> tilt; // degrees
    std::optional<double> zoom; // percent
    std::vector<Aim> ptz;       // of views 1, 2, ...; the others keep their default
    std::optional<int> panoOffset;

    std::optional<double> panSweep; // degrees; makes a video of a still
    std::optional<int> frames;      // of that video
    int timeFrames = 0;             // further frames to measure
    bool verbose = false;           // show the library's lines on standard error

    bool separate = false; // a file for each perspective view: see viewsOf()
    bool force = false;    // replace existing files
    bool stats = false;    // print where a video's time went
    FfmpegOptions ffmpeg;
};

// Throws Error, naming the option, for options that contradict one another or are out of range.
void checkOptions(const RenderOptions& options);

// The directions of all views of the layout.
std::vector<Aim> aimsFor(const RenderOptions& options);

// The aim of frame `number`, 0 and up, of a pan sweep. A full turn ends one frame before its
// beginning, so that it can be repeated without a halt.
Aim sweptAim(const RenderOptions& options, int number);

struct RenderPlan {
    DewarperSetup setup;
    std::vector<std::string> notes; // where it departs from what was asked, and what may be missing
};

// The set-up for an input of that size; `video` when the output is one. Throws Error for a circle
// or size that cannot be.
RenderPlan planFor(const RenderOptions& options, Size input, bool video);

} // namespace lumofe

#endif
