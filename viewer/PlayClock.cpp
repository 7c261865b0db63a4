// When the frames of a video are due.
#include "PlayClock.h"

namespace lumofe::viewer {
namespace {

constexpr double kLongestLag = 0.5; // seconds

} // namespace

int PlayClock::due(double now)
{
    if (!next_ || now - *next_ > kLongestLag) {
        next_ = now + period_;
        return 1;
    }
    int frames = 0;
    for (; *next_ <= now; *next_ += period_)
        ++frames;
    return frames;
}

} // namespace lumofe::viewer
