// What ffmpeg says on standard error, each line with its level.
#ifndef LUMOFE_TOOLS_FFMPEG_LOG_H
#define LUMOFE_TOOLS_FFMPEG_LOG_H

#include <string>

namespace lumofe {

// The options that make ffmpeg write its log as these functions read it.
inline constexpr const char* kLogLevel = "level+info";

// How the numbers of a stream's pixels mean colours, in ffmpeg's words; empty: unknown.
struct Colours {
    std::string range; // tv or pc
    std::string space;
    std::string primaries;
    std::string transfer;
    bool operator==(const Colours&) const = default;
};

// The colours of the stream that is written as NV12.
Colours coloursOf(const std::string& log);

// Length of the input in seconds; 0 when it is unknown, as of a live stream.
double durationOf(const std::string& log);

bool hasAudio(const std::string& log);

// The last error's text, but for those that only sum up; empty when there is none.
std::string lastError(const std::string& log);

// How many errors there are.
int errorCount(const std::string& log);

} // namespace lumofe

#endif
