// What the commands' option tables share.
#include "cli/Commands.h"

#include "Parse.h"

namespace lumofe {

std::vector<std::string> words(const std::string& text)
{
    return CLI::detail::split_up(text);
}

void addMount(CLI::App& app, Mount& mount)
{
    addParsed(app, "--mount", mount, parseMount,
              "ceiling, wall or floor: where the camera hangs\n(default ceiling)", "MOUNT");
}

void addCircle(CLI::App& app, std::optional<Circle>& circle)
{
    addParsed(app, "--circle", circle, parseCircle,
              "Fisheye circle in input pixels, rounded to whole ones: centre\n"
              "from the left, centre from the top, radius; e.g. 640,512,500\n"
              "(default: centred, half the shorter side)",
              "CX,CY,R");
}

void addForce(CLI::App& app, bool& force)
{
    app.add_flag("--force", force, "Replace files that exist already");
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
