// The command that dewarps a still, a folder of stills, or a video.
#include "RenderCommand.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "OpenInput.h"
#include "OutputFile.h"
#include "OutputKind.h"
#include "RenderFolder.h"
#include "RenderVideo.h"
#include "SeparateViews.h"
#include "video/FrameSources.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace lumofe {
namespace {

using Views = std::vector<RenderOptions>;

void printMedianTime(Dewarper& dewarper, int frames)
{
    std::vector<double> times(static_cast<std::size_t>(frames));
    for (double& time : times)
        time = dewarper.renderAgain();
    const auto middle = times.begin() + frames / 2;
    std::nth_element(times.begin(), middle, times.end());
    std::fprintf(stderr, "median of %d frames: %.3f ms\n", frames, *middle);
}

void renderStill(const RenderOptions& options, const Image& picture, int ownOutput)
{
    Dewarper dewarper(plannedSetup(options, picture.size, false));
    dewarper.aim(aimsFor(options));
    const Image result = dewarper.dewarp(picture);

    const std::vector<std::uint8_t> file =
        encodeImage(result, imageKind(outputKind(options.output)));
    OutputFile output(options.output, ownOutput);
    output.write(file.data(), file.size());
    output.commit();
    if (options.timeFrames > 0) printMedianTime(dewarper, options.timeFrames);
}

// A still gives a still, or a video: of a sweep's or tour's frames, or of one.
void renderPicture(const Views& views, const OpenedInput& input, int ownOutput)
{
    const RenderOptions& options = views.front();
    const OutputKind kind = outputKind(options.output);
    if (moves(options) && !isVideo(kind) && kind != OutputKind::sameAsInput)
        throw Error(options.output + ": a " + (options.tour ? "tour" : "pan sweep") +
                    " is a video; give an output that ends in .y4m or .mp4, or -");
    if (moves(options) || isVideo(kind)) {
        if (options.timeFrames > 0) throw Error("--time: measures stills; leave it out");
        const int frames = moves(options) ? movingFrames(options, StillSource::kRate) : 1;
        StillSource source(input.picture, frames);
        renderVideo(views, source, input.name, ownOutput);
        return;
    }
    for (const RenderOptions& view : views)
        renderStill(view, input.picture, ownOutput);
}

void checkVideo(const RenderOptions& options, const std::string& name)
{
    const OutputKind kind = outputKind(options.output);
    if (!isVideo(kind) && kind != OutputKind::sameAsInput)
        throw Error(options.output + ": " + name +
                    " is a video; give an output that ends in .mp4, .mkv or .y4m, or -");
    if (options.timeFrames > 0) throw Error("--time: needs a still picture as input");
    if (options.panSweep) throw Error("--pan-sweep: needs a still picture as input");
}

void renderFile(const RenderOptions& options, int ownOutput)
{
    const Views views = viewsOf(options);
    for (const RenderOptions& view : views)
        checkAbsent(view.output, options.force);
    const OpenedInput input = openInput(options.input, options.ffmpeg);
    if (!input.video) {
        renderPicture(views, input, ownOutput);
        return;
    }
    checkVideo(options, input.name);
    renderVideo(views, *input.video, input.name, ownOutput);
}

} // namespace

void runRender(const RenderOptions& asked)
{
    const RenderOptions options = withCamera(asked);
    const bool folder = std::filesystem::is_directory(options.input);
    if (!folder) outputKind(options.output);
    checkOptions(options);

    // First, so that no file takes the place of a closed standard output.
    const LibraryOutput libraryOutput(options.verbose ? LibraryOutput::Target::standardError
                                                      : LibraryOutput::Target::discard);
    const int ownOutput = libraryOutput.ownOutput();
    if (folder)
        renderFolder(options,
                     [ownOutput](const RenderOptions& file) { renderFile(file, ownOutput); });
    else
        renderFile(options, ownOutput);
}

} // namespace lumofe
