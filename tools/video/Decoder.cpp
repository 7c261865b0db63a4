// Videos that ffmpeg decodes: files, network streams, webcams.
#include "video/Decoder.h"

#include "Error.h"
#include "media/Y4m.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>

namespace lumofe {
namespace {

constexpr const char* kCrop = "crop=trunc(iw/2)*2:trunc(ih/2)*2:0:0";
constexpr std::size_t kMostAhead = std::size_t(1) << 20;
constexpr int kPatience = 2000; // milliseconds for saying goodbye to a camera

std::vector<std::string> inputWords(const FfmpegOptions& options, const std::string& input)
{
    std::vector<std::string> words;
    const bool namesKind = std::ranges::find(options.decode, "-f") != options.decode.end();
    if (isWebcam(input) && !namesKind) words = {"-f", "v4l2"};
    words.insert(words.end(), options.decode.begin(), options.decode.end());
    words.insert(words.end(), {"-i", isWebcam(input) || namesKind ? input : ffmpegPath(input)});
    return words;
}

// The first frame goes to descriptor 3 as Y4M, whose header tells size and rate.
std::vector<std::string> command(const FfmpegOptions& options,
                                 const std::vector<std::string>& input)
{
    std::vector<std::string> words = ffmpegCommand(options);
    words.insert(words.end(), input.begin(), input.end());
    words.insert(words.end(), {"-map", "0:v:0", "-vf", std::string("trim=end_frame=1,") + kCrop,
                               "-pix_fmt", "yuv420p", "-f", "yuv4mpegpipe", "pipe:3"});
    words.insert(words.end(),
                 {"-map", "0:v:0", "-vf", kCrop, "-pix_fmt", "nv12", "-f", "rawvideo", "pipe:1"});
    return words;
}

// A second connection to a camera would not be in step with the first.
bool canBeOpenedTwice(const std::string& input)
{
    return !isWebcam(input) && (!isAddress(input) || input.starts_with("http"));
}

long framesIn(double seconds, const std::string& rate)
{
    double frames = 0, per = 1;
    if (std::sscanf(rate.c_str(), "%lf:%lf", &frames, &per) != 2 || per <= 0) return 0;
    return std::lround(seconds * frames / per);
}

} // namespace

Decoder::Decoder(const FfmpegOptions& options, const std::string& input) : name_(input)
{
    const std::vector<std::string> opening = inputWords(options, input);
    child_.emplace(command(options, opening), ChildPipes{.output = true, .third = true});
    awaitFirstFrame();

    const std::string& head = child_->head();
    const Y4mHeader header = parseY4mHeader(head.substr(0, head.find('\n')), name_);
    format_.size = header.size;
    format_.chroma = Chroma::pairs;
    format_.tags = header.tags;
    format_.colours = coloursOf(child_->log());
    format_.frames = framesIn(durationOf(child_->log()), tagValue(header.tags, "F"));
    if (hasAudio(child_->log()) && canBeOpenedTwice(input)) format_.audio = opening;
}

void Decoder::fail(const std::string& what, const std::string& advice)
{
    const std::string error = lastError(child_->log());
    throw Error(name_ + ": " + what + (error.empty() ? "" : " (" + error + ")") + "; " + advice);
}

void Decoder::awaitFirstFrame()
{
    std::vector<std::uint8_t> block(1 << 16);
    while (child_->head().find('\n') == std::string::npos || ahead_.empty()) {
        // Some of the first frame may come before the header, which it must not hold up.
        pollfd list[] = {{child_->errors(), POLLIN, 0},
                         {child_->third(), POLLIN, 0},
                         {ahead_.size() < kMostAhead ? child_->output() : -1, POLLIN, 0}};
        poll(list, std::size(list), -1);
        child_->takeIn();
        if (list[2].revents == 0) continue;
        const ssize_t got = read(child_->output(), block.data(), block.size());
        if (got > 0)
            ahead_.insert(ahead_.end(), block.begin(), block.begin() + got);
        else if (got == 0)
            break;
    }
    if (!ahead_.empty()) return;
    child_->wait();
    fail("ffmpeg finds no video in it", "check the name, or help ffmpeg with --decode");
}

Transfer* Decoder::request(std::uint8_t* frame)
{
    transfer_ = {child_->output(), Transfer::Direction::read, frame, format_.frameBytes()};
    transfer_.done = std::min(ahead_.size(), transfer_.count);
    std::copy_n(ahead_.begin(), transfer_.done, frame);
    ahead_.erase(ahead_.begin(), ahead_.begin() + std::ptrdiff_t(transfer_.done));
    return &transfer_;
}

bool Decoder::received()
{
    if (transfer_.done < transfer_.count) return false;
    ++frames_;
    return true;
}

void Decoder::close(bool interrupted)
{
    if (interrupted) child_->signal(SIGTERM);
    const int status = child_->wait(interrupted ? kPatience : -1);
    if (interrupted) return;
    if (status != 0 || transfer_.done != 0)
        fail("ffmpeg stopped after " + std::to_string(frames_) + " frames",
             "the output holds what came before");
    const int errors = errorCount(child_->log());
    if (errors > 0)
        std::fprintf(stderr, "lumofe: note: %s: ffmpeg met %d errors, the last: %s\n",
                     name_.c_str(), errors, lastError(child_->log()).c_str());
}

} // namespace lumofe
