// Renders a list of scenarios and compares the hashes of what comes out with a checked-in file. The
// same file holds for 32 and 64 bit, every compiler and every optimisation level.
//
//     golden_frames FILE            compare
//     golden_frames --write FILE    write the file anew
#include "Frames.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* kMountings[] = {"ceiling", "wall", "floor"};
constexpr const char* kFormats[] = {"yuyv", "rgb", "nv12", "yv12"};

struct Size {
    int inW, inH, screenW, screenH;
};
struct Position {
    short pan, tilt, zoom; // absolute, in the units of IFishEye::SetAbsolutePTZ
};

constexpr Size kSizes[] = {{1280, 1024, 800, 600},  {1280, 1280, 1280, 720}, {1920, 1080, 640, 480},
                           {2560, 1920, 1280, 960}, {640, 480, 320, 240},    {320, 240, 800, 600},
                           {1281, 721, 319, 241}};
constexpr Position kPositions[] = {{0, 0, 0}, {450, 300, 100}, {2700, 900, 0}, {-900, -450, 500}};

// The input frame of a size and format; making one takes longer than rendering it.
Bytes& input(int w, int h, FORMAT format)
{
    static std::map<std::tuple<int, int, FORMAT>, Bytes> frames;
    Bytes& frame = frames[{w, h, format}];
    if (frame.empty()) frame = patternFrame(w, h, format);
    return frame;
}

class Golden {
public:
    // Each scenario's line: the hashes of output frame and mapping table, or of two frames.
    std::ostringstream lines;

    void scenario(const Size& size, FORMAT format, int camPos, const Position& position)
    {
        TestSlot slot(size.inW, size.inH, size.screenW, size.screenH);
        Bytes& in = input(size.inW, size.inH, format);
        OutputFrame out(size.screenW, size.screenH, format, 0);
        slot.update(8, camPos, 1);
        IFishEye eye;
        eye.SetAbsolutePTZ(0, position.pan, position.tilt, position.zoom, 1);
        slot.frame(in, out, format, true);

        char name[128];
        std::snprintf(name, sizeof name, "single %dx%d-%dx%d %s %s pan%d tilt%d zoom%d", size.inW,
                      size.inH, size.screenW, size.screenH, kFormats[format], kMountings[camPos],
                      position.pan, position.tilt, position.zoom);
        const auto* table = reinterpret_cast<const unsigned char*>(slot.engine().m_pMapTable);
        const std::size_t tableBytes = std::size_t(size.screenW) * std::size_t(size.screenH) * 8;
        add(name, hashOf(out.bytes()), hashOf(table, tableBytes));
    }

    // Two frames of a layout of several views, steered a little between them.
    void layout(int mode, const char* modeName, const Size& size, FORMAT format, int camPos)
    {
        TestSlot slot(size.inW, size.inH, size.screenW, size.screenH);
        Bytes& in = input(size.inW, size.inH, format);
        OutputFrame out(size.screenW, size.screenH, format, 0);
        slot.update(mode, camPos, 1, 0, 0, 5);
        slot.frame(in, out, format, true);
        const std::uint64_t first = hashOf(out.bytes());
        slot.update(mode, camPos, 2, 7, -12, 9);
        slot.frame(in, out, format, true);
        char name[128];
        std::snprintf(name, sizeof name, "%s %dx%d-%dx%d %s %s", modeName, size.inW, size.inH,
                      size.screenW, size.screenH, kFormats[format], kMountings[camPos]);
        add(name, first, hashOf(out.bytes()));
    }

    // Relative steps over several frames, as from a joystick.
    void steered(int camPos, short pan, short tilt, short zoom)
    {
        TestSlot slot(1280, 1024, 800, 600);
        Bytes& in = input(1280, 1024, FORMAT_NV12);
        OutputFrame out(800, 600);
        slot.update(8, camPos, 1, pan, tilt, zoom);
        for (int frame = 0; frame < 4; ++frame)
            slot.frame(in, out);
        char name[128];
        std::snprintf(name, sizeof name, "single steered %s pan%d tilt%d zoom%d",
                      kMountings[camPos], pan, tilt, zoom);
        const auto* table = reinterpret_cast<const unsigned char*>(slot.engine().m_pMapTable);
        add(name, hashOf(out.bytes()), hashOf(table, 800 * 600 * 8));
    }

private:
    void add(const char* name, std::uint64_t first, std::uint64_t second)
    {
        char hashes[64];
        std::snprintf(hashes, sizeof hashes, "%016" PRIx64 " %016" PRIx64, first, second);
        lines << hashes << "  " << name << '\n';
    }
};

std::string renderAll()
{
    Golden golden;
    for (const Size& size : kSizes)
        for (int camPos = 0; camPos < 3; ++camPos)
            for (const Position& position : kPositions) {
                // Every format at the first size, the common one at the others.
                for (FORMAT format : {FORMAT_RGB, FORMAT_YV12})
                    if (&size == kSizes) golden.scenario(size, format, camPos, position);
                golden.scenario(size, FORMAT_NV12, camPos, position);
            }
    constexpr std::pair<int, const char*> kLayouts[] = {{1, "quad"}, {2, "360"}, {4, "180"}};
    for (auto [mode, name] : kLayouts)
        for (int camPos = 0; camPos < 3; ++camPos) {
            for (const Size& size : kSizes)
                golden.layout(mode, name, size, FORMAT_NV12, camPos);
            golden.layout(mode, name, kSizes[0], FORMAT_YV12, camPos);
            golden.layout(mode, name, kSizes[0], FORMAT_RGB, camPos);
        }
    for (int camPos = 0; camPos < 3; ++camPos) {
        golden.steered(camPos, 12, 3, 2);
        golden.steered(camPos, -3, -9, 0);
        golden.steered(camPos, 0, 7, 11);
    }
    return golden.lines.str();
}

} // namespace

int main(int argc, char** argv)
{
    const bool write = argc == 3 && std::strcmp(argv[1], "--write") == 0;
    if (argc != 2 && !write) {
        std::cerr << "usage: golden_frames [--write] FILE\n";
        return 2;
    }
    // The library's own lines are of no interest here.
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    const std::string actual = renderAll();

    if (write) {
        std::ofstream file(argv[2]);
        file << actual;
        return file.flush() ? 0 : 1;
    }
    std::ifstream file(argv[1]);
    const std::string expected{std::istreambuf_iterator<char>(file), {}};
    std::istringstream actualLines(actual), expectedLines(expected);
    int scenarios = 0, differences = 0;
    for (std::string a, b; std::getline(actualLines, a); ++scenarios) {
        if (std::getline(expectedLines, b) && a == b) continue;
        std::cerr << "expected " << b << "\n     got " << a << '\n';
        ++differences;
    }
    if (actual.size() != expected.size()) ++differences;
    std::cerr << scenarios << " scenarios, " << differences << " differences\n";
    return differences == 0 ? 0 : 1;
}
