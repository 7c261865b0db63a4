// A line on standard error that counts frames, if somebody is there to watch.
#ifndef LUMOFE_TOOLS_PROGRESS_H
#define LUMOFE_TOOLS_PROGRESS_H

#include <chrono>
#include <string>

namespace lumofe {

// "123 of 250 frames, 24.6 fps, 5 s left"; without `expected`, which is 0 when it is unknown, just
// "123 frames, 24.6 fps".
std::string progressText(long frames, long expected, double seconds);

class Progress {
public:
    explicit Progress(long expected);
    // Ends the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void frameDone();

private:
    using Clock = std::chrono::steady_clock;

    void show();

    const long expected_;
    const bool shown_;
    const Clock::time_point start_ = Clock::now();
    Clock::time_point lastLine_ = start_;
    long frames_ = 0;
};

} // namespace lumofe

#endif
