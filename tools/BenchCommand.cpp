// The command that measures how fast this machine dewarps.
#include "BenchCommand.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "OpenInput.h"
#include "OutputFile.h"
#include "media/Pixels.h"
#include "video/FrameSources.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lumofe {
namespace {

constexpr std::size_t kMostFrames = 8; // of the input, in memory
constexpr int kWarmUp = 3;             // frames, in which tables are built
constexpr int kMeasuredMost = 100000;
constexpr View kViews[] = {View::single, View::quad, View::ptz360, View::half180};

using Frames = std::vector<std::vector<std::uint8_t>>;

// The first frames as NV12.
Frames firstFrames(VideoSource& source)
{
    const VideoFormat& format = source.format();
    Frames frames;
    std::vector<std::uint8_t> frame(format.frameBytes()), pairs(format.frameBytes());
    while (frames.size() < kMostFrames && receive(source, frame.data())) {
        if (format.chroma == Chroma::planar)
            interleaveChroma(frame.data(), pairs.data(), format.size);
        frames.push_back(format.chroma == Chroma::planar ? pairs : frame);
    }
    return frames;
}

BenchResult measure(const RenderOptions& options, Size input, const Frames& frames, int count)
{
    const DewarperSetup setup = planFor(options, input, true).setup;
    Dewarper dewarper(setup);
    dewarper.aim(aimsFor(options));
    std::vector<std::uint8_t> out(dewarper.outputBytes());
    Elapsed elapsed;
    std::vector<double> times;
    for (int number = -kWarmUp; number < count; ++number) {
        const std::size_t which = std::size_t(number + kWarmUp) % frames.size();
        Elapsed frame;
        {
            const Stopwatch stopwatch(frame);
            dewarper.dewarp(frames[which].data(), out.data());
        }
        if (number < 0) continue;
        times.push_back(frame.wall);
        elapsed.processor += frame.processor;
    }
    const auto middle = times.begin() + count / 2;
    std::nth_element(times.begin(), middle, times.end());
    return {options.view, setup.output, *middle * 1000, elapsed.processor / count * 1000};
}

std::string line(const char* format, auto... values)
{
    std::array<char, 200> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

} // namespace

std::string benchTable(const std::vector<BenchResult>& results, Size input)
{
    std::string text = line("input %dx%d, NV12, one thread\n", input.width, input.height) +
                       "layout     output    ms per frame  processor ms  frames per second\n";
    for (const BenchResult& r : results)
        text +=
            line("%-8s %4dx%-4d %15.3f %13.3f %18.1f\n", layoutRule(r.view).name, r.output.width,
                 r.output.height, r.milliseconds, r.processorMilliseconds, 1000 / r.milliseconds);
    return text;
}

std::string benchJson(const std::vector<BenchResult>& results, Size input)
{
    std::string text = line("{\"input\": {\"width\": %d, \"height\": %d}, \"layouts\": [",
                            input.width, input.height);
    const char* separator = "";
    for (const BenchResult& r : results) {
        text += line("%s\n  {\"layout\": \"%s\", \"width\": %d, \"height\": %d, \"ms\": %.4f, "
                     "\"processor_ms\": %.4f, \"fps\": %.2f}",
                     separator, layoutRule(r.view).name, r.output.width, r.output.height,
                     r.milliseconds, r.processorMilliseconds, 1000 / r.milliseconds);
        separator = ",";
    }
    return text + "\n]}\n";
}

void runBench(const BenchOptions& options)
{
    if (options.frames < 1 || options.frames > kMeasuredMost)
        throw Error("--frames: " + std::to_string(options.frames) + " is outside 1 to " +
                    std::to_string(kMeasuredMost));
    std::string text;
    const LibraryOutput libraryOutput(LibraryOutput::Target::discard);
    {
        OpenedInput opened = openInput(options.input, options.ffmpeg);
        if (!opened.video) opened.video = std::make_unique<StillSource>(opened.picture, 1);
        const Frames frames = firstFrames(*opened.video);
        if (frames.empty()) throw Error(opened.name + ": holds no frames; make the video again");
        const Size input = opened.video->format().size;
        std::vector<BenchResult> results;
        for (View view : kViews) {
            RenderOptions layout;
            layout.view = view;
            layout.mount = options.mount;
            layout.circle = options.circle;
            layout.size = nearestComposing(view, options.mount, options.size, input);
            results.push_back(measure(layout, input, frames, options.frames));
        }
        text = options.json ? benchJson(results, input) : benchTable(results, input);
    }
    OutputFile output("-", libraryOutput.ownOutput());
    output.write(text);
    output.commit();
}

} // namespace lumofe
