// When the frames of a video are due.
#ifndef LUMOFE_VIEWER_PLAY_CLOCK_H
#define LUMOFE_VIEWER_PLAY_CLOCK_H

#include <optional>

namespace lumofe::viewer {

// Times are seconds on one clock.
class PlayClock {
public:
    // rate: frames a second
    explicit PlayClock(double rate) : period_(1 / rate) {}

    // How many frames have become due since the call before; 1 at the first. After a halt of more
    // than half a second it starts anew instead of catching up.
    int due(double now);

    // When the next one is. Before the first call of due(): at once.
    double next() const { return next_.value_or(0); }

    // Starts anew with the next call of due().
    void restart() { next_.reset(); }

private:
    double period_;
    std::optional<double> next_;
};

} // namespace lumofe::viewer

#endif
