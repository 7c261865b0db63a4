// Decodes the input on a thread of its own.
#ifndef LUMOFE_VIEWER_PLAYER_H
#define LUMOFE_VIEWER_PLAYER_H

#include "FrameQueue.h"
#include "OpenInput.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace lumofe::viewer {

class Player {
public:
    // Opens what openInput() opens, and a folder of stills, which are shown one after the other;
    // throws Error as openInput() does. A file or folder begins anew at its end; an
    // address and a pipe are played once.
    Player(const std::string& path, const FfmpegOptions& options);
    ~Player() { stop(); }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // Begins to decode. `notify` is called by the other thread when frames of a live source come,
    // and when there will be no more.
    void start(std::function<void()> notify);
    // Ends that, without waiting for the end of the video.
    void stop();

    // Of the frames, which are NV12.
    const VideoFormat& format() const { return format_; }

    bool still() const { return still_; }

    // A camera: the newest frame is what counts, not the rate.
    bool live() const { return live_; }

    // Exchanges the frame for the next one. False, without waiting, when none is there yet.
    bool take(Frame& frame) { return queue_.take(frame); }

    // Why no more frames come; empty while they do. Once they do not, it is said once.
    std::string takeEnding();

private:
    void decode();
    bool decodeFrame();
    void stayWith(const Image& picture);

    const std::string path_;
    const FfmpegOptions options_;
    std::function<void()> notify_;
    OpenedInput input_;
    VideoFormat format_;
    bool still_;
    bool live_;
    bool repeats_;
    FrameQueue queue_;
    Frame frame_, planar_; // of the decoding thread
    Descriptor stop_;      // readable once decoding shall end
    std::atomic<bool> stopping_ = false;
    std::mutex endingMutex_;
    std::string ending_;
    std::thread thread_;
};

} // namespace lumofe::viewer

#endif
