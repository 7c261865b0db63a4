// Hands decoded frames from the thread that decodes to the one that shows them.
#ifndef LUMOFE_VIEWER_FRAME_QUEUE_H
#define LUMOFE_VIEWER_FRAME_QUEUE_H

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

namespace lumofe::viewer {

using Frame = std::vector<std::uint8_t>;

// Frames are exchanged, not copied: whoever hands one over gets one to write into.
class FrameQueue {
public:
    enum class WhenFull {
        wait,      // until a frame was taken
        keepNewest // the oldest frame is lost
    };

    // frames: how many it holds, 1 and up
    FrameQueue(std::size_t frames, WhenFull whenFull) : most_(frames), whenFull_(whenFull) {}

    // Hands over a frame; in its place comes one that was shown, or an empty one. False, with
    // the frame still there, once the queue was closed.
    bool push(Frame& frame);

    // Exchanges the frame for the oldest one that waits. False, without waiting, when none does.
    bool take(Frame& frame);

    void close();

private:
    const std::size_t most_;
    const WhenFull whenFull_;
    std::mutex mutex_;
    std::condition_variable roomOrClosed_;
    std::deque<Frame> waiting_;
    std::vector<Frame> shown_;
    bool closed_ = false;
};

} // namespace lumofe::viewer

#endif
