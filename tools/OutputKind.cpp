// What an output name asks for.
#include "OutputKind.h"

#include "Error.h"
#include "video/Ffmpeg.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>

namespace lumofe {
namespace {

constexpr std::string_view kContainers[] = {".mp4", ".m4v",  ".mov", ".mkv", ".webm", ".avi",
                                            ".ts",  ".mpeg", ".mpg", ".flv", ".nut"};

} // namespace

std::string lowerExtension(const std::string& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& c : extension)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

OutputKind outputKind(const std::string& path)
{
    if (path == "-") return OutputKind::sameAsInput;
    if (isAddress(path)) return OutputKind::encoded;
    const std::string extension = lowerExtension(path);
    if (extension == ".png") return OutputKind::png;
    if (extension == ".jpg" || extension == ".jpeg") return OutputKind::jpeg;
    if (extension == ".bmp") return OutputKind::bmp;
    if (extension == ".y4m") return OutputKind::video;
    if (std::ranges::find(kContainers, extension) != std::end(kContainers))
        return OutputKind::encoded;
    throw Error(path + ": unknown kind of output; end the name in .png, .jpg, .jpeg, .bmp, .y4m, "
                       ".mp4, .mkv or another container's");
}

bool isVideo(OutputKind kind)
{
    return kind == OutputKind::video || kind == OutputKind::encoded;
}

ImageKind imageKind(OutputKind kind)
{
    switch (kind) {
    case OutputKind::jpeg:
        return ImageKind::jpeg;
    case OutputKind::bmp:
        return ImageKind::bmp;
    default:
        return ImageKind::png;
    }
}

} // namespace lumofe
