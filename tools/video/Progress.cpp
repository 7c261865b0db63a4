// A line on standard error that counts frames, if somebody is there to watch.
#include "video/Progress.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace lumofe {

std::string progressText(long frames, long expected, double seconds)
{
    const double rate = seconds > 0 ? double(frames) / seconds : 0;
    const bool known = expected >= frames && expected > 0;
    char speed[32];
    std::snprintf(speed, sizeof speed, " frames, %.1f fps", rate);
    std::string text = std::to_string(frames);
    if (known) text += " of " + std::to_string(expected);
    text += speed;
    if (known && rate > 0)
        text += ", " + std::to_string(std::lround(std::ceil(double(expected - frames) / rate))) +
                " s left";
    return text;
}

Progress::Progress(long expected) : expected_(expected), shown_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress()
{
    if (!shown_) return;
    show();
    std::fputc('\n', stderr);
}

void Progress::frameDone()
{
    ++frames_;
    if (shown_ && Clock::now() - lastLine_ > std::chrono::milliseconds(200)) show();
}

void Progress::show()
{
    lastLine_ = Clock::now();
    const double seconds = std::chrono::duration<double>(lastLine_ - start_).count();
    // The spaces cover a longer line before.
    std::fprintf(stderr, "\r%s    ", progressText(frames_, expected_, seconds).c_str());
}

} // namespace lumofe
