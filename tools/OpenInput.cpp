// Opens a still or a video, whichever the input is.
#include "OpenInput.h"

#include "InputKind.h"
#include "media/ImageFile.h"
#include "media/Pixels.h"
#include "video/Decoder.h"
#include "video/FrameSources.h"

#include <utility>

namespace lumofe {
OpenedInput openInput(const std::string& path, const FfmpegOptions& options)
{
    if (needsFfmpeg(path, options)) return {path, std::make_unique<Decoder>(options, path), {}};
    InputStream input(path);
    const std::string name = input.name();
    if (input.startsWith(kY4mMagic))
        return {name, std::make_unique<Y4mSource>(std::move(input)), {}};
    return {name, nullptr, cropToEven(decodeImage(input.readAll(kLargestImageFile), name))};
}

} // namespace lumofe
