// The options of `lumofe scene`.
#include "cli/Commands.h"

#include "SceneCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kSceneFooter = R"(
The room is 8 m square; its walls carry the letters N, E, S, W. In the picture of the ceiling camera
north is at the top and east on the right; of the floor camera north at the top and west on the
right; the wall camera hangs on the south wall and looks north. The circle fills the picture.

Example:
  lumofe scene room.png --size 1280 && lumofe render room.png -o view.png --pan 67.5)";

} // namespace

void addScene(CLI::App& app)
{
    const auto options = std::make_shared<SceneOptions>();
    SceneOptions& o = *options;
    CLI::App& scene =
        *app.add_subcommand("scene", "Render a test room through an exact equidistant lens");
    scene.footer(kSceneFooter);
    scene
        .add_option("OUT", o.output,
                    "Still to write (.png .jpg .jpeg .bmp); - is standard output, PNG")
        ->required()
        ->type_name("");
    scene
        .add_option("--size", o.size,
                    "Width and height, 320 to 4096 pixels; e.g. 1280 (default 2048).\n"
                    "2048 is the largest size whose lens is exactly the one that\n"
                    "render assumes; for wider inputs it assumes another")
        ->type_name("N");
    addMount(scene, o.mount);
    addForce(scene, o.force);
    scene.callback([options] { runScene(*options); });
}

} // namespace lumofe
