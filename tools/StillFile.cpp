// Writing stills by name.
#include "StillFile.h"

#include "Error.h"
#include "OutputFile.h"
#include "OutputKind.h"

#include <unistd.h>

namespace lumofe {

void checkStillName(const std::string& path, const std::string& what)
{
    if (isVideo(outputKind(path)))
        throw Error(path + ": " + what + " is a still; end the name in .png, .jpg or .bmp");
}

void writeStill(const std::string& path, const Image& image, int jpegQuality)
{
    const std::vector<std::uint8_t> file =
        encodeImage(image, imageKind(outputKind(path)), jpegQuality);
    OutputFile output(path, STDOUT_FILENO);
    output.write(file.data(), file.size());
    output.commit();
}

} // namespace lumofe
