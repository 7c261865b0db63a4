// Dewarps every frame of a video.
#include "RenderVideo.h"

#include "Error.h"
#include "Steering.h"
#include "media/Y4m.h"
#include "video/Encoder.h"
#include "video/Interruption.h"
#include "video/Progress.h"
#include "video/RenderStats.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

namespace lumofe {
namespace {

std::unique_ptr<VideoSink> openSink(const RenderOptions& view, const VideoFormat& format,
                                    int ownOutput)
{
    const OutputKind kind = outputKind(view.output);
    const bool encoded = kind == OutputKind::encoded ||
                         (kind == OutputKind::sameAsInput && !view.ffmpeg.encode.empty());
    if (encoded) return std::make_unique<Encoder>(view.ffmpeg, view.output, ownOutput, format);
    return std::make_unique<Y4mSink>(view.output, ownOutput, format);
}

// One output.
class Rendering {
public:
    Rendering(const RenderOptions& view, const VideoFormat& input, int ownOutput)
        : dewarper_(plannedSetup(view, input.size, true)), chroma_(input.chroma),
          result_(dewarper_.setup().output), steering_(dewarper_, view, frameRate(input.tags))
    {
        if (chroma_ == Chroma::pairs && dewarper_.setup().format != PixelFormat::nv12)
            throw Error("--format: what ffmpeg decodes is fed as NV12; leave it out");
        VideoFormat format = input;
        format.size = dewarper_.setup().output;
        sink_ = openSink(view, format, ownOutput);
    }

    // The transfer of the frame before must have been carried out.
    void render(const Frame420& frame, int number, Elapsed& dewarping)
    {
        {
            const Stopwatch stopwatch(dewarping);
            steering_.aim(number);
            if (chroma_ == Chroma::pairs)
                dewarper_.dewarp(frame.bytes.data(), result_.bytes.data());
            else
                result_ = dewarper_.dewarp(frame);
        }
        transfer_ = sink_->take(result_.bytes.data());
    }

    Transfer* transfer() const { return transfer_; }
    VideoSink& sink() { return *sink_; }

private:
    Dewarper dewarper_;
    Chroma chroma_;
    Frame420 result_; // or its bytes in the other order: see Chroma
    Steering steering_;
    std::unique_ptr<VideoSink> sink_;
    Transfer* transfer_ = nullptr;
};

// A read that a signal breaks off ends the video like any other.
bool received(VideoSource& source, const Interruption& interruption)
{
    try {
        return !interruption.requested() && source.received();
    } catch (const Error&) {
        if (interruption.requested()) return false;
        throw;
    }
}

class VideoRun {
public:
    VideoRun(const std::vector<RenderOptions>& views, VideoSource& source, int ownOutput)
        : source_(source)
    {
        if (source.program()) programs_.push_back(source.program());
        for (const RenderOptions& view : views) {
            renderings_.push_back(std::make_unique<Rendering>(view, source.format(), ownOutput));
            if (ChildProcess* program = renderings_.back()->sink().program())
                programs_.push_back(program);
        }
        // After the outputs, whose files a second signal removes.
        interruption_.emplace();
    }

    void frames()
    {
        // While one frame is written, the next is read.
        Frame420 current(source_.format().size), next = current;
        Progress progress(source_.format().frames);
        while (exchange(next)) {
            std::swap(current, next);
            for (const auto& rendering : renderings_)
                rendering->render(current, stats_.frames, stats_.dewarping);
            ++stats_.frames;
            progress.frameDone();
        }
    }

    void finish()
    {
        for (const auto& rendering : renderings_)
            rendering->sink().finish(interruption_->requested());
        source_.close(interruption_->requested());
    }

    const RenderStats& stats()
    {
        stats_.stop();
        if (source_.program()) stats_.decoder = source_.program()->processorSeconds();
        for (const auto& rendering : renderings_)
            if (const ChildProcess* program = rendering->sink().program())
                stats_.encoders += program->processorSeconds();
        return stats_;
    }

    int count() const { return stats_.frames; }
    bool interrupted() const { return interruption_->requested(); }

private:
    // Hands on the frame before and gets the next. False at the end.
    bool exchange(Frame420& next)
    {
        std::vector<Transfer*> transfers;
        if (Transfer* reading = source_.request(next.bytes.data())) transfers.push_back(reading);
        for (const auto& rendering : renderings_)
            if (rendering->transfer()) transfers.push_back(rendering->transfer());
        carryOut(transfers, programs_, interruption_->descriptor(), stats_.transfers);
        for (const auto& rendering : renderings_)
            rendering->sink().check();
        return received(source_, *interruption_);
    }

    VideoSource& source_;
    std::vector<std::unique_ptr<Rendering>> renderings_;
    std::vector<ChildProcess*> programs_;
    RenderStats stats_;
    std::optional<Interruption> interruption_;
};

} // namespace

DewarperSetup plannedSetup(const RenderOptions& options, Size input, bool video)
{
    const RenderPlan plan = planFor(options, input, video);
    for (const std::string& note : plan.notes)
        std::fprintf(stderr, "lumofe: note: %s\n", note.c_str());
    return plan.setup;
}

void renderVideo(const std::vector<RenderOptions>& views, VideoSource& source,
                 const std::string& input, int ownOutput)
{
    VideoRun run(views, source, ownOutput);
    run.frames();
    if (run.count() == 0 && run.interrupted()) throw Interrupted("interrupted; nothing is written");
    if (run.count() == 0) throw Error(input + ": holds no frames; make the video again");
    run.finish();
    if (views.front().stats) std::fprintf(stderr, "%s", run.stats().text().c_str());
    if (run.interrupted())
        throw Interrupted("interrupted after " + std::to_string(run.count()) +
                          " frames; the output can be played");
}

} // namespace lumofe
