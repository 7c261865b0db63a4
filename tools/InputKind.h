// What an input is.
#ifndef LUMOFE_TOOLS_INPUT_KIND_H
#define LUMOFE_TOOLS_INPUT_KIND_H

#include "video/Ffmpeg.h"

#include <string>

namespace lumofe {

// Whether ffmpeg must decode it: addresses, webcams, regular files that are neither empty nor, by
// name or content, a PNG, JPEG, BMP or YUV4MPEG2 file, and whatever --decode is given for. Standard
// input never is.
// Throws Error for a file that cannot be opened.
bool needsFfmpeg(const std::string& path, const FfmpegOptions& options);

// Whether the name ends like that of a PNG, JPEG or BMP picture, in either case.
bool isPictureName(const std::string& path);

} // namespace lumofe

#endif
