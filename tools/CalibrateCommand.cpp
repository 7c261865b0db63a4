// The command that finds the fisheye circle in pictures.
#include "CalibrateCommand.h"

#include "Error.h"
#include "OutputFile.h"
#include "StillFile.h"
#include "calibrate/CircleFinder.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr std::size_t kLargestPicture = std::size_t(256) << 20; // bytes of a file
constexpr Rgb kGood{60, 255, 60}, kDoubtful{255, 50, 50};

using Found = std::optional<FoundCircle>;

// A still, or the first frame of a video.
Image readPicture(const std::string& path)
{
    InputStream input(path);
    if (!input.startsWith(kY4mMagic))
        return decodeImage(input.readAll(kLargestPicture), input.name());
    Y4mReader reader(input);
    Frame420 frame(reader.header().size);
    if (!reader.read(frame)) throw Error(input.name() + ": holds no frames; make the video again");
    return toImage(frame);
}

std::string text(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

// As std::printf writes it.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...)
{
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    return line;
}

std::string json(const Found& found, const LumaStack& pictures)
{
    const FoundCircle f = found.value_or(FoundCircle{});
    const FineCircle& c = f.circle;
    std::string result = "{\n  \"circle\": ";
    result += found ? formatted("{\"x\": %.2f, \"y\": %.2f, \"radius\": %.2f}", c.x, c.y, c.radius)
                    : "null";
    result += formatted(",\n  \"confidence\": %.2f,\n  \"confident\": %s,\n", f.confidence,
                        f.confident() ? "true" : "false");
    result += formatted("  \"input\": {\"width\": %d, \"height\": %d},\n  \"pictures\": %d,\n",
                        pictures.size().width, pictures.size().height, pictures.count());
    result += formatted("  \"rim\": {\"visible\": %.2f, \"found\": %.2f, \"residual\": %.2f, "
                        "\"contrast\": %.1f},\n  \"surroundDark\": %.2f\n}\n",
                        f.rimVisible, f.rimFound, f.residual, f.contrast, f.surroundDark);
    return result;
}

// As --circle takes it; it rounds just so.
std::string plainText(const FineCircle& circle)
{
    return formatted("%ld,%ld,%ld\n", std::lround(circle.x), std::lround(circle.y),
                     std::lround(circle.radius));
}

std::string reason(const Found& found)
{
    if (!found) return "nothing round on a dark surround is to be seen";
    const auto percent = [](double share) {
        return std::to_string(std::lround(100 * share)) + " %";
    };
    switch (found->doubt) {
    case Doubt::littleRim:
    case Doubt::brokenRim:
        return "only " + percent(found->rimFound) + " of the best circle's rim shows, of " +
               percent(found->rimVisible) + " in the picture";
    case Doubt::raggedRim:
        return "what shows of the best circle's rim is too short or too uneven";
    case Doubt::brightSurround:
        break;
    }
    return "only " + percent(found->surroundDark) + " outside the best circle is dark";
}

void writeOverlay(const std::string& path, Image picture, const Found& found)
{
    if (found) {
        const FineCircle& c = found->circle;
        const Rgb colour = found->confident() ? kGood : kDoubtful;
        const int line = 1 + std::max(picture.size.width, picture.size.height) / 400;
        const int arm = 6 * line, x = int(std::lround(c.x)), y = int(std::lround(c.y));
        drawCircle(picture, c.x, c.y, c.radius, line, colour);
        paste(picture, filled({2 * arm + line, line}, colour), x - arm - line / 2, y - line / 2);
        paste(picture, filled({line, 2 * arm + line}, colour), x - line / 2, y - arm - line / 2);
    }
    writeStill(path, picture);
}

void checkOverlay(const std::string& path)
{
    if (path == "-")
        throw Error("-o: standard output takes the result; name a file for the overlay");
    checkStillName(path, "an overlay");
}

} // namespace

bool runCalibrate(const CalibrateOptions& options)
{
    const bool draws = !options.overlay.empty();
    if (draws) checkOverlay(options.overlay);

    LumaStack pictures;
    Image first;
    for (const std::string& path : options.inputs) {
        Image picture = readPicture(path);
        if (pictures.count() > 0 && picture.size != pictures.size())
            throw Error(path + ": is " + text(picture.size) + ", but " + options.inputs.front() +
                        " is " + text(pictures.size()) + "; give pictures of one camera and size");
        pictures.add(picture);
        if (draws && pictures.count() == 1) first = std::move(picture);
    }
    const Found found = findCircle(pictures.mean());
    const bool confident = found && found->confident();

    if (draws) writeOverlay(options.overlay, std::move(first), found);
    OutputFile output("-", STDOUT_FILENO);
    if (!options.plain)
        output.write(json(found, pictures));
    else if (confident)
        output.write(plainText(found->circle));
    output.commit();
    if (!confident)
        std::fprintf(stderr,
                     "lumofe: no confident circle: %s; give brighter pictures, or several, "
                     "or measure it by hand\n",
                     reason(found).c_str());
    return confident;
}

} // namespace lumofe
