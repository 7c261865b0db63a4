// The options of `lumofe bench`.
#include "cli/Commands.h"

#include "BenchCommand.h"
#include "Parse.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kBenchFooter = R"(
The first frames of the input, up to eight, are decoded into memory. Then each layout, with its
views as they look by default, dewarps them in turn, from NV12 to NV12 on one thread, after three
frames in which tables are built. A line tells the median time of a frame, the mean processor time,
and the frames per second that the median allows. Decoding, encoding and files are not in it.

Examples:
  lumofe bench hall.jpg
  lumofe bench cam.mp4 --mount wall --size 1280x720 --json)";

} // namespace

void addBench(CLI::App& app)
{
    const auto options = std::make_shared<BenchOptions>();
    BenchOptions& o = *options;
    CLI::App& bench = *app.add_subcommand("bench", "Measure how fast this machine dewarps");
    bench.footer(kBenchFooter);
    bench.add_option("INPUT", o.input, "Still or video, as of lumofe render")
        ->required()
        ->type_name("");
    addParsed(bench, "--size", o.size, parseSize,
              "Output size, pixels, or the nearest that a layout composes from\n"
              "this input; e.g. 1280x720 (default 1920x1080)",
              "WxH");
    addMount(bench, o.mount);
    addCircle(bench, o.circle);
    bench
        .add_option("--frames", o.frames,
                    "To measure for each layout, 1 to 100000; e.g. 500 (default 100)")
        ->type_name("N");
    bench.add_flag("--json", o.json, "Print JSON, with the same numbers, instead of a table");
    addFfmpeg(bench, o.ffmpeg);
    bench.callback([options] { runBench(*options); });
}

} // namespace lumofe
