// Records what is shown, through ffmpeg, on a thread of its own.
#ifndef LUMOFE_VIEWER_RECORDER_H
#define LUMOFE_VIEWER_RECORDER_H

#include "FrameQueue.h"
#include "video/Ffmpeg.h"
#include "video/VideoFormat.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace lumofe::viewer {

class Recorder {
public:
    // path: a file that exists and may be replaced; it is removed when recording fails. format: of
    // the pictures, NV12.
    Recorder(const FfmpegOptions& options, const std::string& path, const VideoFormat& format);
    ~Recorder() { finish(); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    const std::string& path() const { return path_; }
    Size size() const { return format_.size; }

    // Has the picture take so many frames of the video. Never waits: while the encoder is late,
    // the picture before takes its place.
    void record(const Frame& picture, int times);

    // Begins to complete the video.
    void stop();
    // Completes it, which takes a while.
    void finish();

    // Whether the file is complete, or failed.
    bool finished() const { return finished_; }

    // Once finished: what went wrong; empty when the file is complete.
    const std::string& failure() const { return failure_; }

private:
    struct Entry {
        Frame picture;
        int times;
    };

    void run();
    void encode();
    bool next(Entry& entry);

    const FfmpegOptions options_;
    const std::string path_;
    const VideoFormat format_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Entry> waiting_;
    std::vector<Frame> spare_;
    bool stopped_ = false;
    std::atomic<bool> finished_ = false;
    std::string failure_;
    std::thread thread_;
};

} // namespace lumofe::viewer

#endif
