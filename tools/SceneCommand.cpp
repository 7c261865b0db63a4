// The command that renders the built-in test scene as a fisheye picture.
#include "SceneCommand.h"

#include "Error.h"
#include "StillFile.h"
#include "TemporaryFile.h"
#include "scene/FisheyeLens.h"
#include "scene/Room.h"

namespace lumofe {

void runScene(const SceneOptions& options)
{
    checkStillName(options.output, "the scene");
    checkAbsent(options.output, options.force);
    if (options.size < 320 || options.size > kLargestInput.width)
        throw Error("--size: " + std::to_string(options.size) +
                    " is out of range; choose 320 to 4096 pixels");

    writeStill(options.output, renderFisheye(Room(), cameraFor(options.mount), options.size));
}

} // namespace lumofe
