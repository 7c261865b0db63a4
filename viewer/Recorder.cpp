// Records what is shown, through ffmpeg, on a thread of its own.
#include "Recorder.h"

#include "Error.h"
#include "video/Encoder.h"

#include <unistd.h>
#include <utility>

namespace lumofe::viewer {
namespace {

constexpr std::size_t kMostWaiting = 8; // pictures

} // namespace

Recorder::Recorder(const FfmpegOptions& options, const std::string& path, const VideoFormat& format)
    : options_(options), path_(path), format_(format), thread_([this] { run(); })
{
}

void Recorder::finish()
{
    stop();
    if (thread_.joinable()) thread_.join();
}

void Recorder::record(const Frame& picture, int times)
{
    const std::lock_guard lock(mutex_);
    if (waiting_.size() == kMostWaiting) {
        waiting_.back().times += times;
        return;
    }
    Entry entry{{}, times};
    if (!spare_.empty()) {
        entry.picture = std::move(spare_.back());
        spare_.pop_back();
    }
    entry.picture = picture;
    waiting_.push_back(std::move(entry));
    changed_.notify_one();
}

void Recorder::stop()
{
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    changed_.notify_one();
}

bool Recorder::next(Entry& entry)
{
    std::unique_lock lock(mutex_);
    if (!entry.picture.empty()) spare_.push_back(std::move(entry.picture));
    changed_.wait(lock, [this] { return stopped_ || !waiting_.empty(); });
    if (waiting_.empty()) return false;
    entry = std::move(waiting_.front());
    waiting_.pop_front();
    return true;
}

void Recorder::run()
{
    try {
        encode();
    } catch (const Error& e) {
        failure_ = e.what();
        unlink(path_.c_str());
    }
    finished_ = true;
}

void Recorder::encode()
{
    Encoder encoder(options_, path_, -1, format_);
    ChildProcess* program = encoder.program();
    TransferTimes times;
    for (Entry entry; next(entry);) {
        for (; entry.times > 0; --entry.times) {
            Transfer* transfer = encoder.take(entry.picture.data());
            carryOut({&transfer, 1}, {&program, 1}, -1, times);
            encoder.check();
        }
    }
    encoder.finish(false);
}

} // namespace lumofe::viewer
