// Where the frames of a video come from.
#ifndef LUMOFE_TOOLS_VIDEO_SOURCE_H
#define LUMOFE_TOOLS_VIDEO_SOURCE_H

#include "video/Transfers.h"
#include "video/VideoFormat.h"

#include <cstdint>

namespace lumofe {

class VideoSource {
public:
    virtual ~VideoSource() = default;

    const VideoFormat& format() const { return format_; }

    // Asks for the next frame, of VideoFormat::frameBytes(), which must stay where it is until
    // received() was called. What must be carried out before that; null: nothing.
    virtual Transfer* request(std::uint8_t* frame) = 0;

    // Whether the frame came. False at the end of the video. Throws Error for a damaged one.
    virtual bool received() = 0;

    // The program that it comes from; null: none.
    virtual ChildProcess* program() { return nullptr; }

    // Ends reading: early after an interruption, otherwise after received() was false. Throws Error
    // when the video broke off; what was received is good.
    virtual void close(bool /*interrupted*/) {}

protected:
    VideoFormat format_;
};

// Waits for the next frame. False at the end of the video. Throws Error for a damaged one.
bool receive(VideoSource& source, std::uint8_t* frame);

} // namespace lumofe

#endif
