// The options that several commands take.
#include "Parse.h"
#include "cli/Commands.h"

namespace lumofe {

void addView(CLI::App& app, View& view, const char* help)
{
    addParsed(app, "--view", view, parseView, help, "LAYOUT");
}

void addCircle(CLI::App& app, std::optional<Circle>& circle)
{
    addParsed(app, "--circle", circle, parseCircle,
              "Fisheye circle in input pixels, rounded to whole ones: centre\n"
              "from the left, centre from the top, both in the picture, and\n"
              "radius, 16 to 4096; e.g. 640,512,500 (default: centred, half\n"
              "the shorter side)",
              "CX,CY,R");
}

void addSteering(CLI::App& app, RenderOptions& o)
{
    addNumber(app, "--pan", o.pan,
              "Single view: degrees, decimals allowed, -360 to 360, on the\n"
              "wall -90 to 90; e.g. 67.5 (default 0)",
              "DEG");
    addNumber(app, "--tilt", o.tilt,
              "Single view: degrees, decimals allowed; ceiling 0 to 90, floor\n"
              "-90 to 0, wall -90 to 90; e.g. 60 (default: ceiling 70, floor\n"
              "-70, wall 0)",
              "DEG");
    addNumber(app, "--zoom", o.zoom, "Single view: 0 (widest) to 100; e.g. 25 (default 0)",
              "PERCENT");
    app.add_option_function<std::string>(
           "--ptz", [&o](const std::string& text) { o.ptz.push_back(parsePtz(text)); },
           "Pan and tilt in degrees, zoom in percent of the next view, in\n"
           "the ranges of --pan, --tilt and --zoom: the first --ptz is for\n"
           "view 1 and so on, row by row; e.g. 90,60,0")
        ->type_name("P,T,Z")
        ->trigger_on_parse();
    addNumber(app, "--pano-offset", o.panoOffset,
              "180 on ceiling and floor: turns the panorama, whole degrees,\n"
              "-360 to 360, clockwise as seen in the raw picture; e.g. 45",
              "DEG");
}

void addCameraFile(CLI::App& app, RenderOptions& o)
{
    app.add_option("--camera", o.cameraPath,
                   "File of the camera (see lumofe camera --help): its circle,\n"
                   "mounting and layout hold where these options are not given,\n"
                   "and the input must have its size; e.g. hall.json")
        ->type_name("FILE");
    app.add_option("--preset", o.preset,
                   "Position of the views by its name in the --camera file; --pan,\n"
                   "--tilt, --zoom, --ptz and --pano-offset change it; e.g. door")
        ->type_name("NAME");
}

void addInputAndOutput(CLI::App& app, RenderOptions& o)
{
    app.add_option("INPUT", o.input,
                   "PNG, JPEG or BMP still, YUV4MPEG2 video (8-bit 4:2:0), or any\n"
                   "video, address (rtsp://, http://) or webcam (/dev/video0) that\n"
                   "ffmpeg opens, told apart by content; 320x240 to 4096x4096\n"
                   "pixels; - is standard input, still or YUV4MPEG2; of a folder,\n"
                   "every still, in the order of names")
        ->required()
        ->type_name("");
    app.add_option("-o,--output", o.output,
                   "Still (.png .jpg .jpeg .bmp) or video (.y4m; by way of ffmpeg\n"
                   ".mp4 .mkv .mov .webm .avi .ts and others, or an address); - is\n"
                   "standard output, PNG for a still and Y4M for a video, with\n"
                   "--encode what that says; for a folder a folder, made if missing")
        ->required()
        ->type_name("FILE");
}

void addForce(CLI::App& app, bool& force)
{
    app.add_flag("--force", force, "Replace files that exist already");
}

std::vector<std::string> words(const std::string& text)
{
    return CLI::detail::split_up(text);
}

void addFfmpeg(CLI::App& app, FfmpegOptions& ffmpeg)
{
    app.add_option("--ffmpeg", ffmpeg.program,
                   "The program that decodes and encodes; e.g. /opt/ffmpeg/bin/ffmpeg\n"
                   "(default: ffmpeg, as the shell finds it)")
        ->type_name("PROGRAM");
    addParsed(app, "--decode", ffmpeg.decode, words,
              "ffmpeg's options before the input, in one argument; e.g.\n"
              "\"-rtsp_transport tcp\" or \"-f v4l2 -video_size 1920x1080\"",
              "OPTIONS");
}

} // namespace lumofe
