// Videos that ffmpeg decodes: files, network streams, webcams.
#ifndef LUMOFE_TOOLS_DECODER_H
#define LUMOFE_TOOLS_DECODER_H

#include "video/Ffmpeg.h"
#include "video/VideoSource.h"

#include <optional>
#include <vector>

namespace lumofe {

// NV12 frames at a constant rate, cropped to an even size.
class Decoder : public VideoSource {
public:
    // input: what ffmpeg can open. Waits for the first frame. Throws Error when there is none.
    Decoder(const FfmpegOptions& options, const std::string& input);

    Transfer* request(std::uint8_t* frame) override;
    bool received() override;
    ChildProcess* program() override { return &*child_; }
    void close(bool interrupted) override;

private:
    [[noreturn]] void fail(const std::string& what, const std::string& advice);
    void awaitFirstFrame();

    std::string name_;
    std::optional<ChildProcess> child_;
    std::vector<std::uint8_t> ahead_; // of the first frame
    Transfer transfer_;
    long frames_ = 0;
};

} // namespace lumofe

#endif
