// The command that dewarps a still or a video.
#include "RenderCommand.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "OutputFile.h"
#include "OutputKind.h"
#include "camera/Tour.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lumofe {
namespace {

constexpr std::size_t kMaxImageFile = std::size_t(256) << 20;
constexpr const char* kStillTags = " F25:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL";

// A line on standard error that counts frames, if somebody is there to watch.
class Progress {
public:
    void frameDone()
    {
        ++frames_;
        if (shown_ && Clock::now() - lastLine_ > std::chrono::milliseconds(200)) show("");
    }
    void finish()
    {
        if (shown_) show("\n");
    }

private:
    using Clock = std::chrono::steady_clock;

    void show(const char* end)
    {
        lastLine_ = Clock::now();
        const double seconds = std::chrono::duration<double>(lastLine_ - start_).count();
        std::fprintf(stderr, "\r%ld frames, %.1f fps %s", frames_, double(frames_) / seconds, end);
    }

    const bool shown_ = isatty(STDERR_FILENO) != 0;
    const Clock::time_point start_ = Clock::now();
    Clock::time_point lastLine_ = start_;
    long frames_ = 0;
};

// Has the views look where they shall in each frame. What stays is not built anew.
class Steering {
public:
    Steering(Dewarper& dewarper, const RenderOptions& options, double rate)
        : dewarper_(dewarper), options_(options), rate_(rate)
    {
        if (options.tour) options_.camera = withOffsets(*options.camera, dewarper);
    }

    void aim(int frame)
    {
        if (frame > 0 && !moves(options_)) return;
        Position position = positionFor(options_, frame, rate_);
        if (frame > 0 && position == position_) return;
        dewarper_.aim(position.views);
        if (position.panoOffset != dewarper_.setup().panoOffset)
            dewarper_.turnPanorama(position.panoOffset);
        position_ = std::move(position);
    }

private:
    Dewarper& dewarper_;
    RenderOptions options_;
    const double rate_;
    Position position_;
};

// A note for each thing that will not be as asked for.
DewarperSetup setupFor(const RenderOptions& options, Size input, bool video)
{
    const RenderPlan plan = planFor(options, input, video);
    for (const std::string& note : plan.notes)
        std::fprintf(stderr, "lumofe: note: %s\n", note.c_str());
    return plan.setup;
}

void printMedianTime(Dewarper& dewarper, int frames)
{
    std::vector<double> times(static_cast<std::size_t>(frames));
    for (double& time : times)
        time = dewarper.renderAgain();
    const auto middle = times.begin() + frames / 2;
    std::nth_element(times.begin(), middle, times.end());
    std::fprintf(stderr, "median of %d frames: %.3f ms\n", frames, *middle);
}

void renderStill(const RenderOptions& options, InputStream& input, OutputKind kind, int ownOutput)
{
    const Image picture = cropToEven(decodeImage(input.readAll(kMaxImageFile), input.name()));
    const bool video = kind == OutputKind::video;
    Dewarper dewarper(setupFor(options, picture.size, video));
    dewarper.aim(aimsFor(options));
    const Image result = dewarper.dewarp(picture);

    OutputFile output(options.output, ownOutput);
    if (video) {
        Y4mWriter writer(output, {result.size, kStillTags});
        writer.write(toFrame420(result));
    } else {
        const std::vector<std::uint8_t> file = encodeImage(result, imageKind(kind));
        output.write(file.data(), file.size());
    }
    output.commit();
    if (options.timeFrames > 0) printMedianTime(dewarper, options.timeFrames);
}

void renderMotion(const RenderOptions& options, InputStream& input, OutputKind kind, int ownOutput)
{
    if (kind != OutputKind::video && kind != OutputKind::sameAsInput)
        throw Error(options.output + ": a " + (options.tour ? "tour" : "pan sweep") +
                    " is a video; give an output that ends in .y4m, or -");
    const Frame420 frame =
        toFrame420(cropToEven(decodeImage(input.readAll(kMaxImageFile), input.name())));
    const DewarperSetup setup = setupFor(options, frame.size, true);
    Dewarper dewarper(setup);
    const double rate = frameRate(kStillTags);
    Steering steering(dewarper, options, rate);

    OutputFile output(options.output, ownOutput);
    Y4mWriter writer(output, {setup.output, kStillTags});
    Progress progress;
    const int frames = movingFrames(options, rate);
    for (int number = 0; number < frames; ++number) {
        steering.aim(number);
        writer.write(dewarper.dewarp(frame));
        progress.frameDone();
    }
    progress.finish();
    output.commit();
}

void renderVideo(const RenderOptions& options, InputStream& input, OutputKind kind, int ownOutput)
{
    if (kind != OutputKind::video && kind != OutputKind::sameAsInput)
        throw Error(options.output + ": " + input.name() +
                    " is a video; give an output that ends in .y4m, or -");
    if (options.timeFrames > 0) throw Error("--time: needs a still picture as input");
    if (options.panSweep) throw Error("--pan-sweep: needs a still picture as input");

    Y4mReader reader(input);
    Frame420 frame(reader.header().size);
    const DewarperSetup setup = setupFor(options, evenSize(frame.size), true);
    Dewarper dewarper(setup);
    Steering steering(dewarper, options, frameRate(reader.header().tags));

    OutputFile output(options.output, ownOutput);
    Y4mWriter writer(output, {setup.output, reader.header().tags});
    Progress progress;
    int number = 0;
    while (reader.read(frame)) {
        steering.aim(number++);
        writer.write(dewarper.dewarp(cropToEven(frame)));
        output.flush();
        progress.frameDone();
    }
    progress.finish();
    if (number == 0) throw Error(input.name() + ": holds no frames; make the video again");
    output.commit();
}

} // namespace

void runRender(const RenderOptions& asked)
{
    const OutputKind kind = outputKind(asked.output);
    const RenderOptions options = withCamera(asked);
    checkOptions(options);

    // First, so that no file takes the place of a closed standard output.
    const LibraryOutput libraryOutput(options.verbose ? LibraryOutput::Target::standardError
                                                      : LibraryOutput::Target::discard);
    InputStream input(options.input);
    const auto render = input.startsWith(kY4mMagic) ? renderVideo
                        : moves(options)            ? renderMotion
                                                    : renderStill;
    render(options, input, kind, libraryOutput.ownOutput());
}

} // namespace lumofe
