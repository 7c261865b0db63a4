// What the viewer writes on the screen.
#include "Texts.h"

#include "Interaction.h"
#include "media/Drawing.h"

#include <algorithm>
#include <cstdio>

namespace lumofe::viewer {
namespace {

constexpr Rgb kGround{16, 18, 24}, kInk{240, 240, 240};
constexpr int kMargin = 4;     // font pixels around the text
constexpr int kColumnGap = 12; // likewise, between columns

struct Columns {
    std::string first, second;
};

Columns columnsOf(const std::string& line)
{
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) return {line, {}};
    return {line.substr(0, tab), line.substr(tab + 1)};
}

} // namespace

Lines helpLines()
{
    return {
        "1 2 3 4\tsingle, quad, 360, 180 layout",
        "M\tceiling, wall, floor",
        "drag\tpan and tilt; 180: turn",
        "wheel\tzoom",
        "double click\tback to the usual direction",
        "R\traw picture: click to aim",
        "C\tadjust the circle",
        "P\tpresets",
        "S\tsave the picture as PNG",
        "V\tstart and stop recording",
        "Space\tpause",
        "H\tthese lines",
        "Q, Esc\tquit",
    };
}

Lines presetLines(const std::vector<Preset>& presets, int first, const std::string& cameraPath)
{
    if (cameraPath.empty())
        return {"Presets need a file of the camera: lumofe-view INPUT --camera FILE",
                "lumofe camera init makes one.   Esc: back"};
    Lines lines{"Presets of " + cameraPath};
    if (presets.empty()) lines.push_back("none yet");
    const int end = std::min(int(presets.size()), first + kPresetsOnPage);
    for (int i = first; i < end; ++i) {
        const Preset& preset = presets[std::size_t(i)];
        lines.push_back(std::to_string(i - first + 1) + "\t" + preset.name + " (" +
                        layoutRule(preset.layout).name + ")");
    }
    if (!presets.empty()) lines.push_back("1 to 9\tgo there");
    if (int(presets.size()) > kPresetsOnPage) lines.push_back("Left, Right\tmore presets");
    lines.push_back("P\tsave this position");
    lines.push_back("Esc\tback");
    return lines;
}

Lines circleLines(const Circle& circle)
{
    return {"Circle " + std::to_string(circle.x) + "," + std::to_string(circle.y) + "," +
                std::to_string(circle.radius),
            "arrows\tmove it",
            "+ -\tits radius",
            "Shift\tby ten pixels",
            "Enter\tkeep it",
            "Esc\trestore it"};
}

std::string statusLine(const Status& status)
{
    char text[100];
    std::string line;
    if (status.ended) line += "ENDED  ";
    if (status.paused) line += "PAUSED  ";
    if (status.recordedSeconds) {
        std::snprintf(text, sizeof text, "REC %d:%02d  ", *status.recordedSeconds / 60,
                      *status.recordedSeconds % 60);
        line += text;
    }
    std::snprintf(text, sizeof text, "%s, %s  %.1f fps  %.1f ms", layoutRule(status.view).name,
                  mountRule(status.mount).name, status.measured.rate, status.measured.dewarping);
    line += text;
    if (status.measured.response) {
        std::snprintf(text, sizeof text, "  input %.0f ms", *status.measured.response);
        line += text;
    }
    return line + "  H: keys";
}

std::string withoutPasswords(std::string text)
{
    const std::string scheme = "://";
    for (std::size_t at = 0; (at = text.find(scheme, at)) != std::string::npos;) {
        at += scheme.size();
        const std::string host = text.substr(at, text.find_first_of("/ ", at) - at);
        if (const std::size_t end = host.rfind('@'); end != std::string::npos)
            text.erase(at, end + 1);
    }
    return text;
}

Image textPanel(const Lines& lines, int scale, int width)
{
    int indent = 0, widest = 0;
    for (const std::string& line : lines)
        if (const Columns columns = columnsOf(line); !columns.second.empty())
            indent = std::max(indent, textWidth(columns.first) + kColumnGap);
    for (const std::string& line : lines) {
        const Columns columns = columnsOf(line);
        widest = std::max(widest, columns.second.empty() ? textWidth(columns.first)
                                                         : indent + textWidth(columns.second));
    }
    const Size size{std::min(width, (widest + 2 * kMargin) * scale),
                    (int(lines.size()) * kTextHeight + 2 * kMargin) * scale};
    Image panel = filled(size, kGround);
    int y = kMargin * scale;
    for (const std::string& line : lines) {
        const Columns columns = columnsOf(line);
        drawText(panel, kMargin * scale, y, scale, columns.first, kInk);
        drawText(panel, (kMargin + indent) * scale, y, scale, columns.second, kInk);
        y += kTextHeight * scale;
    }
    return panel;
}

} // namespace lumofe::viewer
