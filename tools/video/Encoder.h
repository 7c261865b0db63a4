// Videos that ffmpeg encodes: into files, pipes and network streams.
#ifndef LUMOFE_TOOLS_ENCODER_H
#define LUMOFE_TOOLS_ENCODER_H

#include "video/Ffmpeg.h"
#include "video/VideoSink.h"

#include <optional>

namespace lumofe {

class Encoder : public VideoSink {
public:
    // path: a file, "-" for the descriptor standardOutput, or what ffmpeg can open. Throws Error
    // when ffmpeg does not start or the file cannot be created.
    Encoder(const FfmpegOptions& options, const std::string& path, int standardOutput,
            const VideoFormat& format);

    Transfer* take(const std::uint8_t* frame) override;
    void check() override;
    ChildProcess* program() override { return &*child_; }
    void finish(bool interrupted) override;

private:
    [[noreturn]] void fail();

    std::string name_;
    std::optional<TemporaryFile> temporary_; // none: ffmpeg writes to the output itself
    std::optional<ChildProcess> child_;
    Transfer transfer_;
    std::size_t frameBytes_;
    bool hasAudio_;
};

} // namespace lumofe

#endif
