// Where the time of a rendered video went.
#ifndef LUMOFE_TOOLS_RENDER_STATS_H
#define LUMOFE_TOOLS_RENDER_STATS_H

#include "video/Stopwatch.h"
#include "video/Transfers.h"

#include <string>

namespace lumofe {

struct RenderStats {
    int frames = 0;
    Elapsed dewarping; // from frame to frame, in the library
    TransferTimes transfers;
    double decoder = 0;  // processor seconds of ffmpeg
    double encoders = 0; // likewise, all of them

    // Takes the time since the object was made.
    void stop();

    // Processor time of this process beside dewarping and pipes, seconds; after stop().
    double overhead() const;

    // A table of several lines; after stop().
    std::string text() const;

private:
    double begin_ = secondsOf(CLOCK_MONOTONIC);
    double processorBegin_ = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    double wall_ = 0;
    double processor_ = 0;
};

} // namespace lumofe

#endif
