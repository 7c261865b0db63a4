// Draws the test scene as a 4:3 camera delivers it, whose picture cuts the circle at the top and
// the bottom: draw_cut_circle OUT
#include "Error.h"
#include "OutputFile.h"
#include "OutputKind.h"
#include "scene/FisheyeLens.h"

#include <cstdio>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr Size kPicture{440, 330};
constexpr int kCircle = 400;            // diameter, pixels
constexpr int kRight = 28, kDown = -36; // from where the lens draws it to where it shall be
constexpr int kQuality = 80;            // of JPEG files

void draw(const char* path)
{
    const Lens lens = [](double column, double row) {
        return fisheyeLens(kCircle)(column - kRight, row - kDown);
    };
    const Image picture = renderPicture(Room(), cameraFor(Mount::ceiling), lens, kPicture);
    const std::vector<std::uint8_t> file =
        encodeImage(picture, imageKind(outputKind(path)), kQuality);
    OutputFile output(path, STDOUT_FILENO);
    output.write(file.data(), file.size());
    output.commit();
}

} // namespace
} // namespace lumofe

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: draw_cut_circle OUT.jpg\n");
        return 2;
    }
    try {
        lumofe::draw(argv[1]);
        return 0;
    } catch (const lumofe::Error& e) {
        std::fprintf(stderr, "draw_cut_circle: %s\n", e.what());
        return 2;
    }
}
