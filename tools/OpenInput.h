// Opens a still or a video, whichever the input is.
#ifndef LUMOFE_TOOLS_OPEN_INPUT_H
#define LUMOFE_TOOLS_OPEN_INPUT_H

#include "media/Image.h"
#include "video/Ffmpeg.h"
#include "video/VideoSource.h"

#include <memory>
#include <string>

namespace lumofe {

struct OpenedInput {
    std::string name;                   // for messages
    std::unique_ptr<VideoSource> video; // null: a still
    Image picture;                      // of a still, cropped to an even size
};

// path: see needsFfmpeg(); "-" is standard input. Throws Error for whatever cannot be read.
OpenedInput openInput(const std::string& path, const FfmpegOptions& options);

} // namespace lumofe

#endif
