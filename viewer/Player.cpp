// Decodes the input on a thread of its own.
#include "Player.h"

#include "Error.h"
#include "PictureFolder.h"
#include "TemporaryFile.h"
#include "media/Pixels.h"
#include "video/FrameSources.h"

#include <cstdint>
#include <filesystem>
#include <sys/eventfd.h>
#include <utility>

namespace lumofe::viewer {
namespace {

constexpr std::size_t kFramesAhead = 4; // hide the start of ffmpeg when a video begins anew

OpenedInput openPlayable(const std::string& path, const FfmpegOptions& options)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return {path, std::make_unique<FolderSource>(path), {}};
    return openInput(path, options);
}

VideoFormat formatOf(const OpenedInput& input)
{
    VideoFormat format =
        input.video ? input.video->format() : StillSource(input.picture, 1).format();
    format.chroma = Chroma::pairs;
    return format;
}

bool isLive(const OpenedInput& input, const std::string& path)
{
    return input.video && input.video->format().frames == 0 && (isAddress(path) || isWebcam(path));
}

} // namespace

Player::Player(const std::string& path, const FfmpegOptions& options)
    : path_(path), options_(options), input_(openPlayable(path, options)),
      format_(formatOf(input_)), still_(!input_.video), live_(isLive(input_, path)),
      repeats_(path != "-" && !isAddress(path) && !isSpecialFile(path)),
      queue_(live_ ? 1 : kFramesAhead,
             live_ ? FrameQueue::WhenFull::keepNewest : FrameQueue::WhenFull::wait),
      stop_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (still_) stayWith(input_.picture);
}

void Player::start(std::function<void()> notify)
{
    notify_ = std::move(notify);
    if (!still_) thread_ = std::thread([this] { decode(); });
}

void Player::stop()
{
    stopping_ = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(stop_.number(), &one, sizeof one);
    queue_.close();
    if (thread_.joinable()) thread_.join();
}

void Player::stayWith(const Image& picture)
{
    const Frame420 planar = toFrame420(picture);
    Frame frame(planar.bytes.size());
    interleaveChroma(planar.bytes.data(), frame.data(), planar.size);
    queue_.push(frame);
}

void Player::decode()
{
    std::string ending = "the video is over";
    try {
        for (;;) {
            long frames = 0;
            while (decodeFrame())
                ++frames;
            input_.video->close(stopping_);
            if (stopping_ || !repeats_) break;
            if (frames == 0) throw Error(input_.name + ": holds no frames");
            input_ = openPlayable(path_, options_);
            if (!input_.video || input_.video->format().size != format_.size)
                throw Error(input_.name + ": is another video now; open it again");
        }
    } catch (const Error& e) {
        ending = e.what();
    }
    {
        const std::lock_guard lock(endingMutex_);
        ending_ = ending;
    }
    notify_();
}

bool Player::decodeFrame()
{
    VideoSource& source = *input_.video;
    const bool planar = source.format().chroma == Chroma::planar;
    frame_.resize(format_.frameBytes());
    planar_.resize(planar ? format_.frameBytes() : 0);
    if (Transfer* transfer = source.request(planar ? planar_.data() : frame_.data())) {
        ChildProcess* program = source.program();
        TransferTimes times;
        carryOut({&transfer, 1}, {&program, 1}, stop_.number(), times);
    }
    if (stopping_ || !source.received()) return false;
    if (planar) interleaveChroma(planar_.data(), frame_.data(), format_.size);
    if (!queue_.push(frame_)) return false;
    if (live_) notify_();
    return true;
}

std::string Player::takeEnding()
{
    const std::lock_guard lock(endingMutex_);
    return std::exchange(ending_, {});
}

} // namespace lumofe::viewer
