// The command line: options, their help, and what becomes of errors.
#include "Cli.h"

#include "Error.h"
#include "Parse.h"
#include "RenderCommand.h"
#include "SceneCommand.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdio>
#include <new>
#include <string>

namespace lumofe {
namespace {

constexpr int kBadInput = 2;

constexpr const char* kRenderFooter = R"(
Directions, in degrees:
  ceiling  the camera looks down. Pan 0 to 360 turns clockwise as seen in the raw picture; pan 0
           looks 22.5 clockwise of the picture's top, pan -22.5 at the top itself. Tilt 0 looks
           straight down, 90 furthest from it.
  floor    the camera looks up. Pan as above; tilt 0 looks straight up, -90 furthest from it.
  wall     pan -90 (left) to 90 (right), tilt -90 (up) to 90 (down); 0, 0 looks straight ahead. Pan
           turns the view about 20 degrees at most, further when zoomed in or with a large input.
           Upward tilt leans the view back, downward tilt also moves it.

Examples:
  lumofe render hall.jpg -o view.png --circle 800,640,610 --pan 90 --tilt 60
  lumofe render desk.png -o up.jpg --mount floor --tilt -50 --zoom 30 --size 1024x768
  ffmpeg -i cam.mp4 -pix_fmt yuv420p -f yuv4mpegpipe - |
      lumofe render - -o - --pan 180 | ffmpeg -i - view.mp4)";

constexpr const char* kSceneFooter = R"(
The room is 8 m square; its walls carry the letters N, E, S, W. In the picture of the ceiling camera
north is at the top and east on the right; of the floor camera north at the top and west on the
right; the wall camera hangs on the south wall and looks north. The circle fills the picture.

Example:
  lumofe scene room.png --size 1280 && lumofe render room.png -o view.png --pan 67.5)";

std::string version()
{
    return "lumofe " + std::to_string(LUMOFESDK_VERSION_MAJOR) + "." +
           std::to_string(LUMOFESDK_VERSION_MINOR) + "." + std::to_string(LUMOFESDK_VERSION_PATCH);
}

template <class Target, class Parse>
CLI::Option* addParsed(CLI::App& app, const char* name, Target& target, Parse parse,
                       const char* help, const char* values)
{
    return app
        .add_option_function<std::string>(
            name, [&target, parse](const std::string& text) { target = parse(text); }, help)
        ->type_name(values);
}

void addRender(CLI::App& app, RenderOptions& o)
{
    CLI::App& render = *app.add_subcommand("render", "Dewarp a still or a Y4M video");
    render.footer(kRenderFooter);
    render
        .add_option("INPUT", o.input,
                    "PNG, JPEG or BMP still, or YUV4MPEG2 video (8-bit 4:2:0),\n"
                    "told apart by content; 320x240 to 4096x4096 pixels;\n"
                    "- is standard input")
        ->required()
        ->type_name("");
    render
        .add_option("-o,--output", o.output,
                    "Still (.png .jpg .jpeg .bmp) or video (.y4m); - is standard\n"
                    "output, PNG for a still and Y4M for a video")
        ->required()
        ->type_name("FILE");
    addParsed(render, "--view", o.view, parseView, "Layout (default single)", "single");
    addParsed(render, "--mount", o.mount, parseMount,
              "ceiling, wall or floor: where the camera hangs\n(default ceiling)", "MOUNT");
    addParsed(render, "--circle", o.circle, parseCircle,
              "Fisheye circle in input pixels, rounded to whole ones: centre\n"
              "from the left, centre from the top, radius; e.g. 640,512,500\n"
              "(default: centred, half the shorter side)",
              "CX,CY,R");
    addParsed(render, "--size", o.size, parseSize,
              "Output size, 16 to 4096 pixels each, even except for RGB stills;\n"
              "e.g. 800x600. The single view always covers a 4:3 area: other\n"
              "shapes stretch it (default: the largest 4:3 size inside the\n"
              "input with both sides multiples of 4)",
              "WxH");
    render.add_option("--pan", o.pan, "Degrees, decimals allowed; e.g. 67.5 (default 0)")
        ->type_name("DEG");
    render
        .add_option("--tilt", o.tilt,
                    "Degrees, decimals allowed; e.g. 60 (default: ceiling 70,\n"
                    "floor -70, wall 0)")
        ->type_name("DEG");
    render.add_option("--zoom", o.zoom, "0 (widest) to 100; e.g. 25 (default 0)")
        ->type_name("PERCENT");
    addParsed(render, "--format", o.format, parsePixelFormat,
              "nv12, yv12 or rgb: what the library is fed (default nv12)", "FORMAT");
    render
        .add_option("--time", o.timeFrames,
                    "Stills: render N more frames, 1 to 100000, and print the median\n"
                    "milliseconds per frame on standard error; e.g. 50")
        ->type_name("N")
        ->check(CLI::Range(1, 100000).description(""));
    render.add_flag("--verbose", o.verbose, "Show the library's own lines on standard error");
}

void addScene(CLI::App& app, SceneOptions& o)
{
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
    addParsed(scene, "--mount", o.mount, parseMount,
              "ceiling, wall or floor: where the camera hangs\n(default ceiling)", "MOUNT");
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "lumofe: %s\n", message.c_str());
    return kBadInput;
}

} // namespace

int runTool(int argc, const char* const* argv)
{
    CLI::App app("Dewarps the pictures of fisheye surveillance cameras.", "lumofe");
    app.set_version_flag("--version", version());
    app.require_subcommand(1);
    app.get_formatter()->column_width(28);
    app.footer("\nlumofe render --help and lumofe scene --help tell more.");
    RenderOptions render;
    SceneOptions scene;
    addRender(app, render);
    addScene(app, scene);
    try {
        app.parse(argc, argv);
        if (app.got_subcommand("render"))
            runRender(render);
        else
            runScene(scene);
        return 0;
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return fail(std::string(e.what()) + "; see lumofe --help");
    } catch (const Error& e) {
        return fail(e.what());
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; scale the input or choose a smaller --size");
    }
}

} // namespace lumofe
