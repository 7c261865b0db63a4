// The options of `lumofe calibrate`.
#include "cli/Commands.h"

#include "CalibrateCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr int kNotConfident = 3;

constexpr const char* kCalibrateFooter = R"help(
Prints JSON on standard output, in pixels of the pictures as --circle takes them:
  circle        x from the left and y from the top of the centre, and radius; null when there is
                nothing like one
  confidence    0 to 1
  confident     whether that is 0.5 or more, so that the circle can be used without a look at it
  input         width and height of the pictures
  pictures      how many there were
  rim           share of the rim that is in the picture (visible), share where the picture turns
                dark on it (found), how far that is off (residual, pixels), and how much darker it
                is outside (contrast, levels of 255)
  surroundDark  share of the surround that is dark

Exit status:
  0   a confident circle
  2   something was wrong, which the line on standard error tells
  3   no confident circle: a line on standard error tells why

Examples:
  lumofe calibrate hall.jpg -o circle.png
  lumofe calibrate morning.jpg noon.jpg evening.jpg
  lumofe render hall.jpg -o view.png --circle "$(lumofe calibrate --plain hall.jpg)")help";

} // namespace

void addCalibrate(CLI::App& app)
{
    const auto options = std::make_shared<CalibrateOptions>();
    CalibrateOptions& o = *options;
    CLI::App& calibrate =
        *app.add_subcommand("calibrate", "Find the fisheye circle in pictures of a camera");
    calibrate.footer(kCalibrateFooter);
    calibrate
        .add_option("PICTURE", o.inputs,
                    "PNG, JPEG or BMP stills, or Y4M videos, of which the first frame\n"
                    "counts; 320x240 to 4096x4096 pixels. Several of the same camera,\n"
                    "all of one size, are taken together; from three on, what is\n"
                    "bright in one of them only is left out. - is standard input")
        ->required()
        ->type_name("");
    calibrate
        .add_option("-o,--output", o.overlay,
                    "Still to draw the circle on, over the first picture: green when\n"
                    "confident, else red (.png .jpg .jpeg .bmp); e.g. circle.png")
        ->type_name("FILE");
    calibrate.add_flag("--plain", o.plain,
                       "Print x,y,radius in whole pixels for --circle in place of JSON, and\n"
                       "nothing without a confident circle");
    addForce(calibrate, o.force);
    calibrate.callback([options] {
        if (!runCalibrate(*options)) throw CLI::RuntimeError(kNotConfident);
    });
}

} // namespace lumofe
