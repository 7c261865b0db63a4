// The command that renders the built-in test scene as a fisheye picture.
#include "SceneCommand.h"

#include "Error.h"
#include "OutputFile.h"
#include "OutputKind.h"
#include "scene/FisheyeLens.h"
#include "scene/Room.h"

#include <unistd.h>

namespace lumofe {

void runScene(const SceneOptions& options)
{
    checkAbsent(options.output, options.force);
    const OutputKind kind = outputKind(options.output);
    if (isVideo(kind))
        throw Error(options.output + ": the scene is a still; end the name in .png, .jpg or .bmp");
    if (options.size < 320 || options.size > kLargestInput.width)
        throw Error("--size: " + std::to_string(options.size) +
                    " is out of range; choose 320 to 4096 pixels");

    const Image picture = renderFisheye(Room(), cameraFor(options.mount), options.size);
    const std::vector<std::uint8_t> file = encodeImage(picture, imageKind(kind));
    OutputFile output(options.output, STDOUT_FILENO);
    output.write(file.data(), file.size());
    output.commit();
}

} // namespace lumofe
