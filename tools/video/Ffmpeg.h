// How ffmpeg is called.
#ifndef LUMOFE_TOOLS_FFMPEG_H
#define LUMOFE_TOOLS_FFMPEG_H

#include <string>
#include <vector>

namespace lumofe {

struct FfmpegOptions {
    std::string program = "ffmpeg";
    std::vector<std::string> decode; // before the input
    std::vector<std::string> encode; // before the output; empty: what suits the container
};

// The beginning of every call.
std::vector<std::string> ffmpegCommand(const FfmpegOptions& options);

// Whether ffmpeg must open the path as it is: rtsp://camera/1 and the like.
bool isAddress(const std::string& path);

// Whether it is a Video4Linux device.
bool isWebcam(const std::string& path);

// The path as ffmpeg takes it: a colon in a file name must not look like a protocol.
std::string ffmpegPath(const std::string& path);

} // namespace lumofe

#endif
