// What is known of a video beside its frames.
#ifndef LUMOFE_TOOLS_VIDEO_FORMAT_H
#define LUMOFE_TOOLS_VIDEO_FORMAT_H

#include "media/Image.h"
#include "video/FfmpegLog.h"

#include <string>
#include <vector>

namespace lumofe {

// How 4:2:0 frames lie in memory: Frame420, or U and V in pairs after the luma plane.
enum class Chroma { planar, pairs };

struct VideoFormat {
    Size size; // even
    Chroma chroma = Chroma::planar;
    std::string tags;               // of the Y4M header: Y4mHeader::tags
    Colours colours;                // empty where the tags say it
    long frames = 0;                // how many there will be, roughly; 0: unknown
    std::vector<std::string> audio; // ffmpeg's words that open the sound; empty: none

    std::size_t frameBytes() const { return Frame420::lumaBytes(size) / 2 * 3; }
};

} // namespace lumofe

#endif
