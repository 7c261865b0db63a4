// Prints where the corners and the middle of the single view lie in the input. Fails when the
// middle, which looks along the lens axis, lies more than 5 pixels from the circle's centre.
#include <FEDSP.h>
#include <cmath>
#include <cstdio>
#include <vector>

struct Source {
    double column, row;
};

// Where the 4:2:0 single view samples the input for its pixel (x, y). Its table fills the screen.
Source sourceOf(const FEDSP& engine, int x, int y)
{
    const int* entry = engine.m_pMapTable + 2 * (y * engine.m_nScreenW + x);
    const unsigned fractions = static_cast<unsigned>(entry[0]);
    const int row = entry[1] / engine.m_nPitch;
    const int column = entry[1] % engine.m_nPitch;
    return {column + (fractions >> 16) / 256.0, row + (fractions & 0xFFFF) / 256.0};
}

int main()
{
    const int inW = 1280, inH = 960, screenW = 640, screenH = 480;
    std::vector<unsigned char> in(inW * inH * 3 / 2, 128), out(screenW * screenH * 3 / 2);
    if (Initialize(0, inW, inH, screenW, screenH, FORMAT_NV12) != FE_STATUS_OK) return 1;

    FE_ViewParams view;
    view.nViewMode = 8;      // single view
    view.nCenterX = inH / 2; // row
    view.nCenterY = inW / 2; // column
    view.nRadius = 480;
    view.nOverlay = 0;
    FE_EventParams still;
    ParamsUpdated(0, &still, &view);
    // The table is built by the next frame.
    if (VideoInput(0, in.data(), out.data(), inW, inH, FORMAT_NV12, false) != FE_STATUS_OK)
        return 1;

    const int corners[][2] = {{0, 0}, {639, 0}, {320, 240}, {0, 479}, {639, 479}};
    for (const auto& c : corners) {
        const Source s = sourceOf(*m_FEDSP[0], c[0], c[1]);
        std::fprintf(stderr, "(%d, %d) shows column %.2f, row %.2f\n", c[0], c[1], s.column, s.row);
    }
    const Source middle = sourceOf(*m_FEDSP[0], screenW / 2, screenH / 2);
    const double off = std::hypot(middle.column - view.nCenterY, middle.row - view.nCenterX);
    Close(0);
    return off > 5 ? 1 : 0;
}
