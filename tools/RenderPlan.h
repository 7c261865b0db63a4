// From what was asked for to what the library is told.
#ifndef LUMOFE_TOOLS_RENDER_PLAN_H
#define LUMOFE_TOOLS_RENDER_PLAN_H

#include "camera/CameraFile.h"
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

    // What is known of the camera, for what is not given. See withCamera().
    std::string cameraPath;           // its file; empty: none
    std::string preset;               // of that file; empty: none
    bool tour = false;                // follow that file's tour
    bool viewGiven = false;           // else the file's
    bool mountGiven = false;          // likewise
    std::optional<CameraFile> camera; // the file's content

    std::optional<double> panSweep; // degrees; makes a video of a still
    std::optional<int> frames;      // of the video that a sweep or a tour makes of a still
    int timeFrames = 0;             // further frames to measure
    bool verbose = false;           // show the library's lines on standard error

    bool separate = false; // a file for each perspective view: see viewsOf()
    bool force = false;    // replace existing files
    bool stats = false;    // print where a video's time went
    FfmpegOptions ffmpeg;
};

// The largest circle in the middle of the input.
Circle centredCircle(Size input);

// The options, with what the camera's file says where they are silent. Throws Error when the file
// cannot be read, or what they ask of it is not in it.
RenderOptions withCamera(RenderOptions options);

// Throws Error, naming the option, for options that contradict one another or are out of range.
void checkOptions(const RenderOptions& options);

// The directions of all views of the layout.
std::vector<Aim> aimsFor(const RenderOptions& options);

// The aim of frame `number`, 0 and up, of a pan sweep. A full turn ends one frame before its
// beginning, so that it can be repeated without a halt.
Aim sweptAim(const RenderOptions& options, int number);

// Whether the views move from frame to frame by themselves.
bool moves(const RenderOptions& options);

// How many frames at that many a second a still's sweep or round of the tour takes.
int movingFrames(const RenderOptions& options, double rate);

// Where the views look in frame `number`, 0 and up, at that many frames a second.
Position positionFor(const RenderOptions& options, int number, double rate);

struct RenderPlan {
    DewarperSetup setup;
    std::vector<std::string> notes; // where it departs from what was asked, and what may be missing
};

// The set-up for an input of that size; `video` when the output is one. Throws Error for a circle
// or size that cannot be.
RenderPlan planFor(const RenderOptions& options, Size input, bool video);

} // namespace lumofe

#endif
