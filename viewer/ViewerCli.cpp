// The command line of lumofe-view.
#include "ViewerCli.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "Signals.h"
#include "Viewer.h"
#include "cli/Commands.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <LumoFESDK.h>
#include <cstdio>
#include <new>
#include <string>

namespace lumofe::viewer {
namespace {

constexpr int kBadInput = 2;
constexpr std::size_t kKeyColumn = 14; // of the help: wider than the longest key

constexpr const char* kMore = R"(
Files repeat from their beginning, videos from addresses and pipes are played once, of cameras the
newest frame is shown. Pictures and recordings are named lumofe-view-0001.png, lumofe-view-0001.mp4
and so on; none is ever overwritten. Presets and the circle are kept in the --camera file.

Examples:
  lumofe-view hall.jpg --circle 800,640,610
  lumofe-view cam.mp4 --view quad --camera hall.json
  lumofe-view rtsp://camera/1 --decode "-rtsp_transport tcp -fflags nobuffer"
  lumofe-view /dev/video0 --mount floor

Exit status:
  0  closed
  2  a bad input or option, said in one line on standard error)";

std::string footer()
{
    std::string text = "\nKeys and mouse:";
    for (const std::string& line : helpLines()) {
        const std::size_t tab = line.find('\t');
        const std::string key = line.substr(0, tab);
        text += "\n  " + key + std::string(kKeyColumn - key.size(), ' ') + line.substr(tab + 1);
    }
    return text + "\n" + kMore;
}

void addOptions(CLI::App& app, ViewerOptions& options)
{
    RenderOptions& o = options.render;
    app.set_version_flag("--version", "lumofe-view " + std::to_string(LUMOFESDK_VERSION_MAJOR) +
                                          "." + std::to_string(LUMOFESDK_VERSION_MINOR) + "." +
                                          std::to_string(LUMOFESDK_VERSION_PATCH));
    app.get_formatter()->column_width(28);
    app.footer(footer());
    app.add_option("INPUT", o.input,
                   "PNG, JPEG or BMP still, YUV4MPEG2 video (8-bit 4:2:0), or any\n"
                   "video, address (rtsp://, http://) or webcam (/dev/video0) that\n"
                   "ffmpeg opens; 320x240 to 4096x4096 pixels; a folder, whose stills\n"
                   "follow one another; - is standard input, still or YUV4MPEG2")
        ->required()
        ->type_name("");
    addView(app, o.view, "single, quad, 360 or 180: the first layout (default single)");
    addMount(app, o.mount);
    addCircle(app, o.circle);
    addCameraFile(app, o);
    addParsed(app, "--size", o.size, parseSize,
              "Size of the dewarped picture, even, 16 to 4096 pixels each,\n"
              "changed where the layout leaves gaps; e.g. 1920x1080 (default:\n"
              "the largest that the layout makes of the input)",
              "WxH");
    addSteering(app, o);
    addFfmpeg(app, o.ffmpeg);
    addParsed(app, "--encode", o.ffmpeg.encode, words,
              "ffmpeg's options for recordings, in one argument, in place of\n"
              "\"-c:v libx264 -preset veryfast -crf 20 -pix_fmt yuv420p\"",
              "OPTIONS");
    app.add_option("--save-to", options.folder,
                   "Folder for pictures and recordings; e.g. /tmp (default: the\n"
                   "current one)")
        ->type_name("FOLDER");
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "lumofe-view: %s\n", message.c_str());
    return kBadInput;
}

void view(const CLI::App& app, ViewerOptions& options)
{
    options.render.viewGiven = app.count("--view") > 0;
    options.render.mountGiven = app.count("--mount") > 0;
    options.render = withCamera(options.render);
    checkOptions(options.render);
    const LibraryOutput silence(LibraryOutput::Target::discard);
    // Until the input is open, which may take long, signals end it at once.
    Player player(options.render.input, options.render.ffmpeg);
    holdSignals();
    Viewer(options, player).run();
}

} // namespace

int runViewer(int argc, const char* const* argv)
{
    CLI::App app("Shows the dewarped pictures of a fisheye camera and steers them.", "lumofe-view");
    ViewerOptions options;
    addOptions(app, options);
    try {
        app.parse(argc, argv);
        view(app, options);
        return 0;
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return fail(std::string(e.what()) + "; see lumofe-view --help");
    } catch (const Error& e) {
        return fail(e.what());
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; scale the input or choose a smaller --size");
    }
}

} // namespace lumofe::viewer
