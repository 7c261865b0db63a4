// What an input is.
#include "InputKind.h"

#include "OutputKind.h"
#include "media/InputStream.h"
#include "media/Y4m.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>

namespace lumofe {
namespace {

constexpr std::string_view kKnown[] = {"\x89PNG", "\xFF\xD8\xFF", "BM", kY4mMagic};
constexpr std::string_view kPictures[] = {".png", ".jpg", ".jpeg", ".bmp"};

} // namespace

bool needsFfmpeg(const std::string& path, const FfmpegOptions& options)
{
    if (path == "-") return false;
    if (!options.decode.empty() || isAddress(path) || isWebcam(path)) return true;
    std::error_code ignored;
    // A damaged picture is better told of by the reader of pictures.
    if (isPictureName(path)) return false;
    // Of a pipe, the bytes that were looked at would be lost.
    if (!std::filesystem::is_regular_file(path, ignored)) return false;
    if (std::filesystem::file_size(path, ignored) == 0) return false;
    InputStream input(path);
    return std::ranges::none_of(kKnown, [&](std::string_view m) { return input.startsWith(m); });
}

bool isPictureName(const std::string& path)
{
    return std::ranges::find(kPictures, lowerExtension(path)) != std::end(kPictures);
}

} // namespace lumofe
