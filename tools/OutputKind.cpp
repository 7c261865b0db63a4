// What an output name asks for.
#include "OutputKind.h"

#include "Error.h"

#include <cctype>
#include <filesystem>

namespace lumofe {

OutputKind outputKind(const std::string& path)
{
    if (path == "-") return OutputKind::sameAsInput;
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& c : extension)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".png") return OutputKind::png;
    if (extension == ".jpg" || extension == ".jpeg") return OutputKind::jpeg;
    if (extension == ".bmp") return OutputKind::bmp;
    if (extension == ".y4m") return OutputKind::video;
    throw Error(path + ": unknown kind of output; end the name in .png, .jpg, .jpeg, .bmp or .y4m");
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
