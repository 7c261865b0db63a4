// Draws the picture of the viewer: draw_viewer INPUT OUT
//
// A screenshot on a private X server: the quad layout, one view turned and zoomed, with the raw
// inset.
#include "StillFile.h"
#include "ViewerRun.h"

#include <cstdio>
#include <utility>

using namespace lumofe::test;

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: draw_viewer INPUT OUT\n");
        return 2;
    }
    constexpr int kJpegQuality = 85;
    Desktop desktop;
    const ViewerRun run(desktop, {argv[1], "--view", "quad", "--size", "960x720"});
    desktop.move(240, 200);
    // A drag takes several frames: until the screen was the same for a while.
    const auto changes = [&](const auto& action) {
        constexpr int kRest = 30;
        auto before = desktop.picture().bytes;
        action();
        if (!eventually([&] { return desktop.picture().bytes != before; })) return false;
        int same = 0;
        return eventually([&] {
            auto now = desktop.picture().bytes;
            same = now == before ? same + 1 : 0;
            before = std::move(now);
            return same == kRest;
        });
    };
    const bool drawn = changes([&] { desktop.turnWheel(4); }) && changes([&] {
                           desktop.pressButton();
                           desktop.move(140, 200);
                           desktop.releaseButton();
                       }) &&
                       changes([&] { desktop.press("r"); });
    if (!drawn) {
        std::fprintf(stderr, "draw_viewer: the viewer does not show %s\n", argv[1]);
        return 2;
    }
    lumofe::writeStill(argv[2], desktop.picture(), kJpegQuality);
    return 0;
}
