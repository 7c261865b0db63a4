// The command that dewarps a still or a video.
#include "RenderCommand.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "OutputFile.h"
#include "OutputKind.h"
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

DewarperSetup setupFor(const RenderOptions& options, Size input, bool video)
{
    DewarperSetup setup;
    setup.input = input;
    setup.output = options.size.value_or(defaultOutputSize(input));
    setup.circle = options.circle.value_or(
        Circle{input.width / 2, input.height / 2, std::min(input.width, input.height) / 2});
    setup.view = options.view;
    setup.mount = options.mount;
    setup.format = options.format;
    if (setup.circle.x >= input.width || setup.circle.y >= input.height)
        throw Error("--circle: the centre is outside the " + std::to_string(input.width) + "x" +
                    std::to_string(input.height) + " input; give it in input pixels");
    if (evenSize(setup.output) != setup.output && (video || setup.format != PixelFormat::rgb))
        throw Error("--size: 4:2:0 needs an even width and height; choose even numbers");
    return setup;
}

void printMedianTime(Dewarper& dewarper, int frames)
{
    std::vector<double> times;
    for (int i = 0; i < frames; ++i)
        times.push_back(dewarper.renderAgain());
    const auto middle = times.begin() + frames / 2;
    std::nth_element(times.begin(), middle, times.end());
    std::fprintf(stderr, "median of %d frames: %.3f ms\n", frames, *middle);
}

void renderStill(const RenderOptions& options, const Aim& aim, InputStream& input, OutputKind kind,
                 int ownOutput)
{
    const Image picture = cropToEven(decodeImage(input.readAll(kMaxImageFile), input.name()));
    const bool video = kind == OutputKind::video;
    Dewarper dewarper(setupFor(options, picture.size, video));
    dewarper.aim(aim);
    const Image result = dewarper.dewarp(picture);

    OutputFile output(options.output, ownOutput);
    if (video) {
        Y4mWriter writer(output, {result.size, " F25:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL"});
        writer.write(toFrame420(result));
    } else {
        const std::vector<std::uint8_t> file = encodeImage(result, imageKind(kind));
        output.write(file.data(), file.size());
    }
    output.commit();
    if (options.timeFrames > 0) printMedianTime(dewarper, options.timeFrames);
}

void renderVideo(const RenderOptions& options, const Aim& aim, InputStream& input, OutputKind kind,
                 int ownOutput)
{
    if (kind != OutputKind::video && kind != OutputKind::sameAsInput)
        throw Error(options.output + ": " + input.name() +
                    " is a video; give an output that ends in .y4m, or -");
    if (options.timeFrames > 0) throw Error("--time: needs a still picture as input");

    Y4mReader reader(input);
    Frame420 frame(reader.header().size);
    const DewarperSetup setup = setupFor(options, evenSize(frame.size), true);
    Dewarper dewarper(setup);
    dewarper.aim(aim);

    OutputFile output(options.output, ownOutput);
    Y4mWriter writer(output, {setup.output, reader.header().tags});
    Progress progress;
    bool any = false;
    while (reader.read(frame)) {
        writer.write(dewarper.dewarp(cropToEven(frame)));
        output.flush();
        progress.frameDone();
        any = true;
    }
    progress.finish();
    if (!any) throw Error(input.name() + ": holds no frames; make the video again");
    output.commit();
}

} // namespace

Size defaultOutputSize(Size input)
{
    // Multiples of 4 in the ratio 4:3 are multiples of 16 by 12.
    const int units = std::min(input.width / 16, input.height / 12);
    return {16 * units, 12 * units};
}

void runRender(const RenderOptions& options)
{
    const OutputKind kind = outputKind(options.output);
    const Aim aim{options.pan, options.tilt.value_or(mountRule(options.mount).defaultTilt),
                  options.zoom};
    checkAim(aim, options.mount);

    // First, so that no file takes the place of a closed standard output.
    const LibraryOutput libraryOutput(options.verbose ? LibraryOutput::Target::standardError
                                                      : LibraryOutput::Target::discard);
    InputStream input(options.input);
    if (input.startsWith(kY4mMagic))
        renderVideo(options, aim, input, kind, libraryOutput.ownOutput());
    else
        renderStill(options, aim, input, kind, libraryOutput.ownOutput());
}

} // namespace lumofe
