// How ffmpeg is called.
#include "video/Ffmpeg.h"

#include "video/FfmpegLog.h"

namespace lumofe {

std::vector<std::string> ffmpegCommand(const FfmpegOptions& options)
{
    return {options.program, "-hide_banner", "-nostdin", "-nostats", "-loglevel", kLogLevel};
}

bool isAddress(const std::string& path)
{
    return path.find("://") != std::string::npos;
}

bool isWebcam(const std::string& path)
{
    return path.starts_with("/dev/video");
}

std::string ffmpegPath(const std::string& path)
{
    return isAddress(path) ? path : "file:" + path;
}

} // namespace lumofe
