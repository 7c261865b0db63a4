// The options of `lumofe camera`.
#include "cli/Commands.h"

#include "CameraCommand.h"
#include "Parse.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kInitFooter = R"(
The file holds the input's size, the mounting, the circle and the layout of one camera, later also
its presets (lumofe preset) and its tour, written by hand: see docs/camera-file.md.

Examples:
  lumofe camera init hall.json --size 1280x960 --circle 640,480,470
  lumofe calibrate hall.jpg | lumofe camera init hall.json --calibration - --mount wall
  lumofe render hall.jpg -o view.png --camera hall.json)";

void addInit(CLI::App& camera)
{
    const auto options = std::make_shared<CameraOptions>();
    CameraOptions& o = *options;
    CLI::App& init = *camera.add_subcommand("init", "Make the file of a camera");
    init.footer(kInitFooter);
    init.add_option("CAMERA", o.path, "File to make, e.g. hall.json; - is standard output")
        ->required()
        ->type_name("");
    addParsed(init, "--size", o.size, parseSize,
              "Size of the camera's pictures, 320x240 to 4096x4096 pixels; of an\n"
              "odd side one pixel less is used; e.g. 1280x960",
              "WxH");
    init.add_option("--calibration", o.calibration,
                    "What lumofe calibrate printed, for size and circle; - is standard\n"
                    "input; e.g. found.json")
        ->type_name("FILE");
    addMount(init, o.mount);
    addCircle(init, o.circle);
    addView(init, o.view,
            "single, quad, 360 or 180: the layout that is shown unless a preset\n"
            "or an option tells another (default single)");
    addForce(init, o.force);
    init.callback([options] { initCamera(*options); });
}

} // namespace

void addCamera(CLI::App& app)
{
    CLI::App& camera = *app.add_subcommand("camera", "Make the file of a camera");
    camera.require_subcommand(1);
    camera.footer(
        "\nExample:\n  lumofe camera init hall.json --size 1280x960 --circle 640,480,470");
    addInit(camera);
}

} // namespace lumofe
