// What the commands' option tables share.
#include "cli/Commands.h"

namespace lumofe {

std::vector<std::string> words(const std::string& text)
{
    return CLI::detail::split_up(text);
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
