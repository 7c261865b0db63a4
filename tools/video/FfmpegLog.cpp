// What ffmpeg says on standard error, each line with its level.
#include "video/FfmpegLog.h"

#include <array>
#include <cstdio>
#include <functional>
#include <sstream>
#include <string_view>

namespace lumofe {
namespace {

// Calls for each error's text.
void eachError(const std::string& log, const std::function<void(const std::string&)>& take)
{
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
        for (const std::string_view level : {"[error] ", "[fatal] ", "[panic] "})
            if (const std::size_t at = line.find(level); at != std::string::npos)
                take(line.substr(at + level.size()));
}

// What ffmpeg adds to the error that made it give up.
bool onlySumsUp(const std::string& text)
{
    return text.starts_with("Conversion failed!") ||
           text.starts_with("Could not write header for output file") ||
           text.starts_with("Error initializing output stream");
}

std::string known(const std::string& name)
{
    return name == "unknown" || name == "unspecified" ? "" : name;
}

// "bt709" for all three, or "bt470bg/unknown/bt709": matrix, primaries, transfer.
void readNames(const std::string& words, Colours& colours)
{
    std::array<std::string, 3> names;
    std::istringstream parts(words);
    std::size_t count = 0;
    while (count < names.size() && std::getline(parts, names[count], '/'))
        ++count;
    if (count == 1) names[1] = names[2] = names[0];
    if (count == 2) return;
    colours.space = known(names[0]);
    colours.primaries = known(names[1]);
    colours.transfer = known(names[2]);
}

bool tellsOrder(const std::string& word)
{
    return word == "progressive" || word.find("first") != std::string::npos ||
           word.find("coded") != std::string::npos;
}

} // namespace

Colours coloursOf(const std::string& log)
{
    Colours colours;
    constexpr std::string_view kBegin = ", nv12(";
    const std::size_t begin = log.find(kBegin);
    const std::size_t end = log.find(')', begin == std::string::npos ? log.size() : begin);
    if (end == std::string::npos) return colours;
    std::istringstream words(log.substr(begin + kBegin.size(), end - begin - kBegin.size()));
    for (std::string word; std::getline(words >> std::ws, word, ',');) {
        if (word == "tv" || word == "pc")
            colours.range = word;
        else if (!tellsOrder(word))
            readNames(word, colours);
    }
    return colours;
}

double durationOf(const std::string& log)
{
    constexpr std::string_view kName = "  Duration: ";
    const std::size_t at = log.find(kName);
    int hours = 0, minutes = 0;
    double seconds = 0;
    if (at == std::string::npos ||
        std::sscanf(log.c_str() + at + kName.size(), "%d:%d:%lf", &hours, &minutes, &seconds) != 3)
        return 0;
    return 3600 * hours + 60 * minutes + seconds;
}

bool hasAudio(const std::string& log)
{
    return log.find(": Audio: ") != std::string::npos;
}

std::string lastError(const std::string& log)
{
    std::string last;
    eachError(log, [&last](const std::string& text) {
        if (!onlySumsUp(text)) last = text;
    });
    return last;
}

int errorCount(const std::string& log)
{
    int count = 0;
    eachError(log, [&count](const std::string&) { ++count; });
    return count;
}

} // namespace lumofe
