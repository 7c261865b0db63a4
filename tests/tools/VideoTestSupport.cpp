// What the tests of real videos share.
#include "VideoTestSupport.h"

#include "video/ChildProcess.h"

#include <poll.h>
#include <sstream>
#include <stdexcept>

namespace lumofe::test {

Bytes outputOf(const std::string& command)
{
    std::istringstream text(command);
    std::vector<std::string> words;
    for (std::string word; text >> word;)
        words.push_back(word);
    ChildProcess child(words, {.output = true});
    Bytes all, block(1 << 16);
    for (;;) {
        pollfd waiting{child.output(), POLLIN, 0};
        poll(&waiting, 1, -1);
        const ssize_t got = read(child.output(), block.data(), block.size());
        if (got == 0) break;
        if (got > 0) all.insert(all.end(), block.begin(), block.begin() + got);
    }
    if (child.wait() != 0) throw std::runtime_error(command + ": " + child.log());
    return all;
}

void makeClip(const std::string& path, int frames, const std::string& more)
{
    outputOf("ffmpeg -v error -f lavfi -i testsrc2=s=320x320:r=30000/1001 -pix_fmt yuv420p "
             "-frames:v " +
             std::to_string(frames) + " -c:v ffv1 " + more + " " + path);
}

Bytes framesOf(const std::string& path)
{
    return outputOf("ffmpeg -v error -i " + path + " -map 0:v -pix_fmt nv12 -f rawvideo -");
}

std::string streamsOf(const std::string& path, const std::string& entries)
{
    const Bytes text =
        outputOf("ffprobe -v error -of csv=p=0 -show_entries stream=" + entries + " " + path);
    return std::string(text.begin(), text.end());
}

} // namespace lumofe::test
