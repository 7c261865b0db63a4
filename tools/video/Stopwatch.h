// Wall and processor time.
#ifndef LUMOFE_TOOLS_STOPWATCH_H
#define LUMOFE_TOOLS_STOPWATCH_H

#include <ctime>

namespace lumofe {

inline double secondsOf(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

// Seconds.
struct Elapsed {
    double wall = 0;
    double processor = 0; // of the calling thread
};

// Adds the time of its life to a sum.
class Stopwatch {
public:
    explicit Stopwatch(Elapsed& sum) : sum_(sum) {}
    ~Stopwatch()
    {
        sum_.wall += secondsOf(CLOCK_MONOTONIC) - wall_;
        sum_.processor += secondsOf(CLOCK_THREAD_CPUTIME_ID) - processor_;
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

private:
    Elapsed& sum_;
    const double wall_ = secondsOf(CLOCK_MONOTONIC);
    const double processor_ = secondsOf(CLOCK_THREAD_CPUTIME_ID);
};

} // namespace lumofe

#endif
