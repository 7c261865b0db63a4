// Option values as text.
#include "Parse.h"

#include "Error.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace lumofe {
namespace {

constexpr int kMinSide = 16, kMaxSide = 4096;

template <class Value>
using Choice = std::pair<const char*, Value>;

constexpr Choice<View> kViews[] = {
    {"single", View::single}, {"quad", View::quad}, {"360", View::ptz360}, {"180", View::half180}};
constexpr Choice<Mount> kMounts[] = {
    {"ceiling", Mount::ceiling}, {"wall", Mount::wall}, {"floor", Mount::floor}};
constexpr Choice<bool> kHows[] = {{"together", false}, {"separate", true}};
constexpr Choice<PixelFormat> kFormats[] = {
    {"nv12", PixelFormat::nv12}, {"yv12", PixelFormat::yv12}, {"rgb", PixelFormat::rgb}};

template <class Value, std::size_t count>
Value choose(const char* option, const std::string& text, const Choice<Value> (&choices)[count])
{
    std::string names;
    for (const auto& [name, value] : choices) {
        if (text == name) return value;
        names.append(names.empty() ? "" : ", ").append(name);
    }
    throw Error(std::string(option) + ": '" + text + "' is unknown; choose one of " + names);
}

template <class Value, std::size_t count>
std::vector<std::string> namesOf(const Choice<Value> (&choices)[count])
{
    std::vector<std::string> names;
    for (const auto& [name, value] : choices)
        names.emplace_back(name);
    return names;
}

// Splits text into count numbers. False unless it is exactly that.
bool splitNumbers(std::string_view text, char separator, std::span<double> numbers)
{
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
        if (error != std::errc() || !std::isfinite(numbers[i])) return false;
        text.remove_prefix(std::size_t(end - text.data()));
        if (i + 1 == numbers.size()) break;
        if (text.empty() || text.front() != separator) return false;
        text.remove_prefix(1);
    }
    return text.empty();
}

bool within(double value, int low, int high)
{
    return value >= low && value <= high;
}

} // namespace

Circle parseCircle(const std::string& text)
{
    std::array<double, 3> v{};
    if (!splitNumbers(text, ',', v))
        throw Error("--circle: '" + text + "' is not cx,cy,r; write for example 640,512,500");
    if (!within(v[0], 0, kLargestInput.width) || !within(v[1], 0, kLargestInput.height) ||
        !within(v[2], kSmallestRadius, kLargestRadius))
        throw Error("--circle: '" + text +
                    "' is out of range; the centre must be in the input and "
                    "the radius from 16 to 4096 pixels");
    return {int(std::lround(v[0])), int(std::lround(v[1])), int(std::lround(v[2]))};
}

Size parseSize(const std::string& text)
{
    std::array<double, 2> v{};
    if (!splitNumbers(text, 'x', v) || v[0] != std::floor(v[0]) || v[1] != std::floor(v[1]))
        throw Error("--size: '" + text + "' is not WxH; write for example 800x600");
    if (!within(v[0], kMinSide, kMaxSide) || !within(v[1], kMinSide, kMaxSide))
        throw Error("--size: '" + text + "' is out of range; both sides take 16 to 4096 pixels");
    return {int(v[0]), int(v[1])};
}

Aim parsePtz(const std::string& text)
{
    std::array<double, 3> v{};
    if (!splitNumbers(text, ',', v))
        throw Error("--ptz: '" + text + "' is not pan,tilt,zoom; write for example 90,60,0");
    return {v[0], v[1], v[2]};
}

std::vector<std::string> viewNames()
{
    return namesOf(kViews);
}

std::vector<std::string> mountNames()
{
    return namesOf(kMounts);
}

std::vector<std::string> pixelFormatNames()
{
    return namesOf(kFormats);
}

std::vector<std::string> viewsNames()
{
    return namesOf(kHows);
}

View parseView(const std::string& text)
{
    return choose("--view", text, kViews);
}

bool parseViews(const std::string& text)
{
    return choose("--views", text, kHows);
}

Mount parseMount(const std::string& text)
{
    return choose("--mount", text, kMounts);
}

PixelFormat parsePixelFormat(const std::string& text)
{
    return choose("--format", text, kFormats);
}

} // namespace lumofe
