// Hands decoded frames from the thread that decodes to the one that shows them.
#include "FrameQueue.h"

#include <utility>

namespace lumofe::viewer {

bool FrameQueue::push(Frame& frame)
{
    std::unique_lock lock(mutex_);
    if (whenFull_ == WhenFull::wait)
        roomOrClosed_.wait(lock, [this] { return closed_ || waiting_.size() < most_; });
    if (closed_) return false;
    if (waiting_.size() == most_) {
        shown_.push_back(std::move(waiting_.front()));
        waiting_.pop_front();
    }
    waiting_.push_back(std::move(frame));
    frame = {};
    if (!shown_.empty()) {
        frame = std::move(shown_.back());
        shown_.pop_back();
    }
    return true;
}

bool FrameQueue::take(Frame& frame)
{
    const std::lock_guard lock(mutex_);
    if (waiting_.empty()) return false;
    std::swap(frame, waiting_.front());
    if (!waiting_.front().empty()) shown_.push_back(std::move(waiting_.front()));
    waiting_.pop_front();
    roomOrClosed_.notify_one();
    return true;
}

void FrameQueue::close()
{
    const std::lock_guard lock(mutex_);
    closed_ = true;
    roomOrClosed_.notify_one();
}

} // namespace lumofe::viewer
