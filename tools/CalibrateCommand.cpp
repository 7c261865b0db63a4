// The command that finds the fisheye circle in pictures.
#include "CalibrateCommand.h"

#include "Error.h"
#include "OutputFile.h"
#include "StillFile.h"
#include "TemporaryFile.h"
#include "calibrate/CircleFinder.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr Rgb kGood{60, 255, 60}, kDoubtful{255, 50, 50};

using Found = std::optional<FoundCircle>;

// A still, or the first frame of a video.
Image readPicture(const std::string& path)
{
    InputStream input(path);
    if (!input.startsWith(kY4mMagic))
        return decodeImage(input.readAll(kLargestImageFile), input.name());
    Y4mReader reader(input);
    Frame420 frame(reader.header().size);
    if (!reader.read(frame)) throw Error(input.name() + ": holds no frames; make the video again");
    return toImage(frame);
}

std::string text(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

// In the notation of JSON, whatever the locale.
std::string number(double value, int decimals)
{
    std::array<char, 64> digits{};
    const auto end =
        std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals);
    return {digits.begin(), end.ptr};
}

using Members = std::initializer_list<std::pair<const char*, std::string>>;

std::string object(Members members, const char* open, const char* separator, const char* close)
{
    std::string text = open;
    for (const auto& [name, value] : members) {
        if (name != members.begin()->first) text.append(separator);
        text.append("\"").append(name).append("\": ").append(value);
    }
    return text.append(close);
}

std::string inLine(Members members)
{
    return object(members, "{", ", ", "}");
}

std::string json(const Found& found, const LumaStack& pictures)
{
    const FoundCircle f = found.value_or(FoundCircle{});
    const Size size = pictures.size();
    const std::string circle = inLine({{"x", number(f.circle.x, 2)},
                                       {"y", number(f.circle.y, 2)},
                                       {"radius", number(f.circle.radius, 2)}});
    const std::string input =
        inLine({{"width", std::to_string(size.width)}, {"height", std::to_string(size.height)}});
    const std::string rim = inLine({{"visible", number(f.rimVisible, 2)},
                                    {"found", number(f.rimFound, 2)},
                                    {"residual", number(f.residual, 2)},
                                    {"contrast", number(f.contrast, 1)}});
    return object({{"circle", found ? circle : "null"},
                   {"confidence", number(f.confidence, 2)},
                   {"confident", f.confident() ? "true" : "false"},
                   {"input", input},
                   {"pictures", std::to_string(pictures.count())},
                   {"rim", rim},
                   {"surroundDark", number(f.surroundDark, 2)}},
                  "{\n  ", ",\n  ", "\n}\n");
}

// As --circle takes it; it rounds just so.
std::string plainText(const FineCircle& circle)
{
    return std::to_string(std::lround(circle.x)) + "," + std::to_string(std::lround(circle.y)) +
           "," + std::to_string(std::lround(circle.radius)) + "\n";
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

void checkOverlay(const std::string& path, bool force)
{
    if (path == "-")
        throw Error("-o: standard output takes the result; name a file for the overlay");
    checkStillName(path, "an overlay");
    checkAbsent(path, force);
}

} // namespace

bool runCalibrate(const CalibrateOptions& options)
{
    const bool draws = !options.overlay.empty();
    if (draws) checkOverlay(options.overlay, options.force);

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
