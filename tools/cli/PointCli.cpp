// The options of `lumofe point`.
#include "cli/Commands.h"

#include "Parse.h"
#include "PointCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kPointFooter = R"(
Prints pan and tilt of the spot as the layouts take them, and which preset of the camera has it
nearest to the middle of a view. Views of the wall reach only some of what they can be told: see
lumofe render --help.

Examples:
  lumofe point 900 310 --camera hall.json
  lumofe point 900 310 --size 1280x960 --circle 640,480,470)";

} // namespace

void addPoint(CLI::App& app)
{
    const auto options = std::make_shared<PointOptions>();
    PointOptions& o = *options;
    CLI::App& point = *app.add_subcommand("point", "Tell where a spot of the raw picture lies");
    point.footer(kPointFooter);
    point.add_option("X", o.x, "Of the spot: input pixels from the left")
        ->required()
        ->type_name("");
    point.add_option("Y", o.y, "Of the spot: input pixels from the top")->required()->type_name("");
    point
        .add_option("--camera", o.cameraPath,
                    "File of the camera (see lumofe camera init --help), instead of\n"
                    "the other options; e.g. hall.json")
        ->type_name("FILE");
    addParsed(point, "--size", o.size, parseSize,
              "Size of the camera's pictures, 320x240 to 4096x4096 pixels;\ne.g. 1280x960", "WxH");
    addMount(point, o.mount);
    addCircle(point, o.circle);
    point.callback([options] { runPoint(*options); });
}

} // namespace lumofe
