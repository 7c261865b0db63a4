// Videos that ffmpeg encodes: into files, pipes and network streams.
#include "video/Encoder.h"

#include "Error.h"
#include "OutputKind.h"

#include <algorithm>
#include <csignal>

namespace lumofe {
namespace {

using Words = std::vector<std::string>;

void add(Words& words, const Words& more)
{
    words.insert(words.end(), more.begin(), more.end());
}

void addColour(Words& words, const char* option, const std::string& value)
{
    if (!value.empty()) add(words, {option, value});
}

std::string withSlash(std::string ratio)
{
    std::ranges::replace(ratio, ':', '/');
    return ratio;
}

// The size, rate and colours of the raw frames.
Words rawInput(const VideoFormat& format)
{
    const std::string rate = tagValue(format.tags, "F");
    Words words{
        "-f",          "rawvideo",
        "-pix_fmt",    format.chroma == Chroma::pairs ? "nv12" : "yuv420p",
        "-video_size", std::to_string(format.size.width) + "x" + std::to_string(format.size.height),
        "-framerate",  rate.empty() ? "25" : withSlash(rate)};
    const std::string range = tagValue(format.tags, "XCOLORRANGE=");
    addColour(words, "-color_range",
              range == "FULL"      ? "pc"
              : range == "LIMITED" ? "tv"
                                   : format.colours.range);
    addColour(words, "-colorspace", format.colours.space);
    addColour(words, "-color_primaries", format.colours.primaries);
    addColour(words, "-color_trc", format.colours.transfer);
    // One frame ahead is enough: more would be lost by an interruption.
    add(words, {"-thread_queue_size", "1", "-i", "pipe:0"});
    return words;
}

Words usualEncoding(const std::string& path)
{
    const std::string extension = lowerExtension(path);
    for (const char* container : {".mp4", ".m4v", ".mov", ".mkv"})
        if (extension == container)
            return {"-c:v", "libx264", "-preset", "veryfast", "-crf", "20", "-pix_fmt", "yuv420p"};
    return {};
}

Words command(const FfmpegOptions& options, const VideoFormat& format, const std::string& name,
              const std::string& target)
{
    Words words = ffmpegCommand(options);
    add(words, rawInput(format));
    add(words, format.audio);
    if (!format.audio.empty()) add(words, {"-map", "0:v:0", "-map", "1:a", "-c:a", "copy"});
    const std::string aspect = tagValue(format.tags, "A");
    if (!aspect.empty() && aspect != "0:0" && aspect != "1:1")
        add(words, {"-vf", "setsar=" + withSlash(aspect) + ":max=65535"});
    add(words, options.encode.empty() ? usualEncoding(name) : options.encode);
    add(words, {"-y", target});
    return words;
}

} // namespace

Encoder::Encoder(const FfmpegOptions& options, const std::string& path, int standardOutput,
                 const VideoFormat& format)
    : name_(path == "-" ? "standard output" : path), frameBytes_(format.frameBytes()),
      hasAudio_(!format.audio.empty())
{
    const bool direct = path == "-" || isAddress(path) || isSpecialFile(path);
    if (!direct) temporary_.emplace(path);
    const std::string target = path == "-" ? "pipe:1"
                               : direct    ? ffmpegPath(path)
                                           : ffmpegPath(temporary_->path());
    child_.emplace(command(options, format, path, target),
                   ChildPipes{.input = true, .standardOutput = path == "-" ? standardOutput : -1});
}

void Encoder::fail()
{
    child_->wait();
    const std::string error = lastError(child_->log());
    throw Error(name_ + ": ffmpeg cannot encode it (" +
                (error.empty() ? "it stopped without a word" : error) +
                "); choose other options with --encode");
}

Transfer* Encoder::take(const std::uint8_t* frame)
{
    transfer_ = {child_->input(), Transfer::Direction::write, const_cast<std::uint8_t*>(frame),
                 frameBytes_};
    return &transfer_;
}

void Encoder::check()
{
    if (transfer_.ended) fail();
}

void Encoder::finish(bool interrupted)
{
    child_->closeInput();
    if (interrupted && hasAudio_) child_->signal(SIGINT);
    const int status = child_->wait();
    constexpr int kEndedBySignal = 255; // ffmpeg completed the output all the same
    if (status != 0 && !(interrupted && hasAudio_ && status == kEndedBySignal)) fail();
    if (temporary_) temporary_->commit();
}

} // namespace lumofe
