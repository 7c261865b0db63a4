// Where the frames of a video go.
#ifndef LUMOFE_TOOLS_VIDEO_SINK_H
#define LUMOFE_TOOLS_VIDEO_SINK_H

#include "OutputFile.h"
#include "media/Y4m.h"
#include "video/Transfers.h"
#include "video/VideoFormat.h"

#include <cstdint>

namespace lumofe {

class VideoSink {
public:
    virtual ~VideoSink() = default;

    // Takes a frame of VideoFormat::frameBytes(), which must stay as it is until the transfer that
    // is returned was carried out; null: the frame was taken.
    virtual Transfer* take(const std::uint8_t* frame) = 0;

    // Throws Error when the last transfer came to nothing.
    virtual void check() {}

    // The program that it goes to; null: none.
    virtual ChildProcess* program() { return nullptr; }

    // Completes the video; without this, no file is left. After an interruption what else would
    // belong to it, as the rest of the sound, is left out.
    virtual void finish(bool interrupted) = 0;
};

// Writes YUV4MPEG2, in planar order.
class Y4mSink : public VideoSink {
public:
    // path and standardOutput as those of OutputFile.
    Y4mSink(const std::string& path, int standardOutput, const VideoFormat& format);

    Transfer* take(const std::uint8_t* frame) override;
    void finish(bool interrupted) override;

private:
    OutputFile file_;
    Chroma chroma_;
    Frame420 frame_;
    Y4mWriter writer_;
};

} // namespace lumofe

#endif
