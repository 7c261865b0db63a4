#include "Results.h"

#include <cstdio>
#include <ctime>
#include <fstream>

namespace bench {

namespace {

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, value < 10 ? "%.2f" : "%.1f", value);
    return text;
}

// The ratio, and in brackets what is wanted. Bold: less than that.
std::string ratio(const Row& row, const Times& times, double wanted)
{
    if (!times.missing.empty()) return times.missing;
    const double value = row.slower ? times.ours / times.theirs : times.theirs / times.ours;
    std::string text = number(value);
    if (wanted > 0 && (row.slower ? value > wanted : value < wanted)) text = "**" + text + "**";
    if (row.slower) text = "takes " + text;
    char bound[32] = "";
    if (wanted > 0) std::snprintf(bound, sizeof bound, " (%s%g)", row.slower ? "≤ " : "", wanted);
    return text + bound;
}

std::string milliseconds(const Times& times, double Times::*whose)
{
    return times.missing.empty() ? number(times.*whose) : "-";
}

std::string processor()
{
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    return "an unknown processor";
}

std::string compiler()
{
#ifdef __clang__
    return __VERSION__;
#else
    return std::string("GCC ") + __VERSION__;
#endif
}

std::string today()
{
    const std::time_t now = std::time(nullptr);
    char text[32] = "";
    std::strftime(text, sizeof text, "%Y-%m-%d", std::gmtime(&now));
    return text;
}

} // namespace

std::string tableOf(const std::vector<Measured>& measured)
{
    std::string table = "| ours | against | 64-bit | 32-bit | ours, ms | 32-bit | theirs, ms |\n"
                        "|---|---|---|---|---|---|---|\n";
    for (const Measured& m : measured) {
        const Row& row = *m.row;
        const std::string theirs = milliseconds(m.times64, &Times::theirs);
        const std::string theirs32 = milliseconds(m.times32, &Times::theirs);
        table += std::string("| ") + row.what + " | " + row.theirsName + " | " +
                 ratio(row, m.times64, row.wanted64) + " | " + ratio(row, m.times32, row.wanted32) +
                 " | " + milliseconds(m.times64, &Times::ours) + " | " +
                 milliseconds(m.times32, &Times::ours) + " | " + theirs +
                 (row.against == Against::itself ? "; " + theirs32 : "") + " |\n";
    }
    return table;
}

std::string pageOf(const std::vector<Measured>& measured, const std::string& peers)
{
    std::string page = "# Results\n\n"
                       "Written by `make bench`; [README.md](README.md) says how it measures.\n\n";
    for (const std::string& fact : {today(), processor(), compiler(), peers})
        page += "- " + fact + '\n';
    return page + R"(
The ratios say how many times as fast as theirs ours is; in brackets, how many times it shall be at the
least. Bold: it is not. Theirs is a 64-bit program, except where the library is compared with its own
plain code or with `memcpy`: those have the word size of ours.

)" + tableOf(measured);
}

} // namespace bench
