// FFmpeg's v360 filter, which makes a perspective view of a fisheye picture, too.
#ifndef LUMOFE_BENCH_V360_H
#define LUMOFE_BENCH_V360_H

#include <string>

namespace bench {

class V360 {
public:
    V360(); // writes a picture for it into a temporary file
    ~V360();
    V360(const V360&) = delete;
    V360& operator=(const V360&) = delete;

    // Processor time of "clip": kClipFrames frames, "clip frame": one of them, or "steady frame":
    // one without its share of what the filter takes to build its tables.
    double milliseconds(const std::string& what) const;

private:
    // Of a run with the filter, less that of one without: the rest is the same.
    double millisecondsOf(int frames) const;

    std::string picture_;
};

} // namespace bench

#endif
