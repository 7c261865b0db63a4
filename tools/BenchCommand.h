// The command that measures how fast this machine dewarps.
#ifndef LUMOFE_TOOLS_BENCH_COMMAND_H
#define LUMOFE_TOOLS_BENCH_COMMAND_H

#include "RenderPlan.h"

#include <string>
#include <vector>

namespace lumofe {

struct BenchOptions {
    std::string input;
    Size size{1920, 1080}; // of the output; each layout takes the nearest that it composes
    Mount mount = Mount::ceiling;
    std::optional<Circle> circle; // default: as of RenderOptions
    int frames = 100;             // to measure for each layout
    bool json = false;
    FfmpegOptions ffmpeg;
};

// Frames of one layout, from buffer to buffer, on one thread.
struct BenchResult {
    View view = View::single;
    Size output;
    double milliseconds = 0;          // median of the frames
    double processorMilliseconds = 0; // mean
};

// Tables of the results, for people and for programs.
std::string benchTable(const std::vector<BenchResult>& results, Size input);
std::string benchJson(const std::vector<BenchResult>& results, Size input);

// Prints on standard output. Throws Error for whatever cannot be done.
void runBench(const BenchOptions& options);

} // namespace lumofe

#endif
