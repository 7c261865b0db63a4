// Draws the test scene as a 4:3 camera delivers it, whose picture cuts the circle at the top and
// the bottom: draw_cut_circle OUT
#include "Error.h"
#include "StillFile.h"
#include "scene/FisheyeLens.h"

#include <cstdio>

namespace lumofe {
namespace {

constexpr Size kPicture{440, 330};
constexpr int kCircle = 400;            // diameter, pixels
constexpr int kRight = 28, kDown = -36; // from where the lens draws it to where it shall be
constexpr int kQuality = 80;            // of JPEG files

Image drawCutCircle()
{
    const Lens lens = [](double column, double row) {
        return fisheyeLens(kCircle)(column - kRight, row - kDown);
    };
    return renderPicture(Room(), cameraFor(Mount::ceiling), lens, kPicture);
}

} // namespace
} // namespace lumofe

int main(int argc, char** argv)
try {
    if (argc != 2) throw lumofe::Error("give the name of the picture to write");
    lumofe::writeStill(argv[1], lumofe::drawCutCircle(), lumofe::kQuality);
    return 0;
} catch (const lumofe::Error& e) {
    std::fprintf(stderr, "draw_cut_circle: %s\n", e.what());
    return 2;
}
