// The options of `lumofe render`.
#include "cli/Commands.h"

#include "Parse.h"
#include "RenderCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kRenderFooter = R"(
Layouts:
  single   one view. Steered with --pan, --tilt, --zoom or one --ptz. Shape 4:3
  quad     four views. Up to four --ptz. Shape 4:3
  360      two views above a panorama strip. Up to two --ptz. Shape 16:9
  180      ceiling and floor: a full turn in two halves, one above the other, turned with
           --pano-offset, shape 16:9; wall: one wide panorama, shape 4:3
Other shapes stretch the picture. The default size is the largest in that shape that fits into the
input (the 360's width into its height too) and leaves no gap between the parts. Other sizes are
changed to the nearest that does so: quad takes multiples of 8; 180 even widths and heights that are
multiples of 4, on the wall of 8; 360 widths of 8 and most even heights.

Directions, in degrees:
  ceiling  the camera looks down. Pan 0 to 360 turns clockwise as seen in the raw picture. In quad
           and 360 pan 0 looks to the picture's top; in the single view 22.5 clockwise of it, and pan
           -22.5 to the top. Tilt 0 looks straight down, 90 furthest from it.
  floor    the camera looks up. Pan as above; tilt 0 looks straight up, -90 furthest from it.
  wall     pan -90 (left) to 90 (right), tilt -90 (up) to 90 (down); 0, 0 looks straight ahead. Pan
           turns the view about 20 degrees at most, further when zoomed in or with a large input.
           Upward tilt leans the view back, downward tilt also moves it.
Without --ptz the views of quad and 360 share a full turn, tilted by 80; on the wall they look left,
right, ahead and down.

With --views separate, view n looks where view n of the layout does, steered by --ptz n in the
layout's directions (pan 0 to the picture's top), but is a single view of its own: it shows somewhat
more, its zoom is percent of the single view's, and --size and the default size are each view's.

Videos by way of ffmpeg keep their rate, pixel shape and colours. The sound of a file or http://
address is copied to a file; of cameras there is none. "-c:a aac" or "-an" in --encode changes that.
Ctrl-C ends a video early; what is written until then is complete, the exit status 130. A second
one stops at once and leaves no file.

Examples:
  lumofe render hall.jpg -o view.png --circle 800,640,610 --pan 90 --tilt 60
  lumofe render desk.png -o up.jpg --mount floor --tilt -50 --zoom 30 --size 1024x768
  lumofe render hall.jpg -o four.png --view quad --ptz 0,70,0 --ptz 180,70,50
  lumofe render hall.jpg -o strip.png --view 360 --ptz 90,60,0 --ptz 270,60,0
  lumofe render hall.jpg -o halves.png --view 180 --pano-offset 45
  lumofe render hall.jpg -o turn.y4m --pan-sweep 360 --frames 200
  lumofe render hall.jpg -o door.png --camera hall.json --preset door
  lumofe render cam.mp4 -o view.mp4 --view quad --encode "-c:v libx264 -crf 18"
  lumofe render rtsp://camera/1 -o views.mkv --view quad --views separate
  lumofe render stills -o views --pan 90
  ffmpeg -i cam.mp4 -pix_fmt yuv420p -f yuv4mpegpipe - |
      lumofe render - -o - --view quad | ffmpeg -i - view.mp4)";

} // namespace

void addRender(CLI::App& app)
{
    const auto options = std::make_shared<RenderOptions>();
    RenderOptions& o = *options;
    CLI::App& render = *app.add_subcommand("render", "Dewarp stills and videos");
    render.footer(kRenderFooter);
    addInputAndOutput(render, o);
    addView(render, o.view, "single, quad, 360 or 180: the layout, see below (default single)");
    addParsed(render, "--views", o.separate, parseViews,
              "together, or separate: each view of quad or 360 in full size, in\n"
              "files of its own named OUT-1.mp4, OUT-2.mp4 ...; see below\n"
              "(default together)",
              "HOW");
    addMount(render, o.mount);
    addCircle(render, o.circle);
    addCameraFile(render, o);
    render.add_flag("--tour", o.tour,
                    "Follow the tour in the --camera file. A still becomes a video of\n"
                    "one round at 25 frames a second, unless --frames says otherwise");
    addParsed(render, "--size", o.size, parseSize,
              "Output size, 16 to 4096 pixels each, even except for RGB stills of\n"
              "the single view; e.g. 800x600 (default: see Layouts)",
              "WxH");
    render.add_flag("--exact-size", o.exactSize,
                    "Take --size as it is, even where it leaves gaps in the layout");
    addSteering(render, o);
    render.add_flag_callback(
        "--no-upright", [&o] { o.upright = false; },
        "Leave the ceiling's 180 upside down, as the library draws it");
    addNumber(render, "--pan-sweep", o.panSweep,
              "Still to video, single view: pan from --pan over DEG degrees,\n"
              "-360 to 360, in --frames frames; the last one is a step short of\n"
              "it, so that a full turn repeats smoothly",
              "DEG");
    addNumber(render, "--frames", o.frames,
              "Frames of --pan-sweep, or of a still's --tour, 2 to 10000, 25 a\n"
              "second; e.g. 100",
              "N");
    addParsed(render, "--format", o.format, parsePixelFormat,
              "nv12, yv12 or rgb: what the library is fed (default nv12). Where\n"
              "a layout garbles it, NV12 is fed instead: rgb in all but single,\n"
              "yv12 in 360 and 180",
              "FORMAT");
    render.add_flag("--exact-format", o.exactFormat, "Feed --format even where it is garbled");
    render
        .add_option("--time", o.timeFrames,
                    "Stills: render N more frames, 1 to 100000, and print the median\n"
                    "milliseconds per frame on standard error; e.g. 50")
        ->type_name("N")
        ->check(CLI::Range(1, 100000).description(""));
    addForce(render, o.force);
    addFfmpeg(render, o.ffmpeg);
    addParsed(render, "--encode", o.ffmpeg.encode, words,
              "ffmpeg's options before the output, in one argument, in place of\n"
              "the usual ones (.mp4 .m4v .mov .mkv: -c:v libx264 -preset\n"
              "veryfast -crf 20 -pix_fmt yuv420p; others: ffmpeg's own); e.g.\n"
              "\"-c:v libx265 -crf 24\", or \"-c:v libx264 -f mpegts\" for -o -",
              "OPTIONS");
    render.add_flag("--stats", o.stats, "Videos: print on standard error where the time went");
    render.add_flag("--verbose", o.verbose, "Show the library's own lines on standard error");
    render.callback([options, &render] {
        options->viewGiven = render.count("--view") > 0;
        options->mountGiven = render.count("--mount") > 0;
        runRender(*options);
    });
}

} // namespace lumofe
