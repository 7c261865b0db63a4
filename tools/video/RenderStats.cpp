// Where the time of a rendered video went.
#include "video/RenderStats.h"

#include <cstdio>

namespace lumofe {
namespace {

std::string line(const char* format, auto... values)
{
    char text[160];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

} // namespace

void RenderStats::stop()
{
    wall_ = secondsOf(CLOCK_MONOTONIC) - begin_;
    processor_ = secondsOf(CLOCK_PROCESS_CPUTIME_ID) - processorBegin_;
}

double RenderStats::overhead() const
{
    return processor_ - dewarping.processor - transfers.calls.processor;
}

std::string RenderStats::text() const
{
    const auto share = [this](const char* what, double seconds) {
        return line("  %-26s %9.3f s %5.1f %%\n", what, seconds, 100 * seconds / wall_);
    };
    const auto processor = [](const char* what, double seconds) {
        return line("  %-26s %9.3f s\n", what, seconds);
    };
    const TransferTimes& t = transfers;
    const double waiting = t.waitingToRead + t.waitingToWrite + t.waitingForEither;
    return line("%d frames in %.3f s, %.1f a second\n", frames, wall_, frames / wall_) +
           "time passed\n" + share("dewarping", dewarping.wall) +
           share("waiting for decoding", t.waitingToRead) +
           share("waiting for encoding", t.waitingToWrite) +
           share("waiting for either", t.waitingForEither) +
           share("moving bytes in pipes", t.calls.wall) +
           share("the rest", wall_ - dewarping.wall - waiting - t.calls.wall) + "processor time\n" +
           processor("dewarping", dewarping.processor) + processor("pipes", t.calls.processor) +
           line("  %-26s %9.3f s %5.1f %% of dewarping\n", "the tool itself", overhead(),
                100 * overhead() / dewarping.processor) +
           processor("ffmpeg, decoding", decoder) + processor("ffmpeg, encoding", encoders);
}

} // namespace lumofe
