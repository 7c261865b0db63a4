// Aims the single view at a point that was clicked in the raw picture.
//
// To show that it hits, the point is a bright spot, and the view is searched for it.
//
// The pan is right to a few pixels. The scale of the tilt depends on the zoom: at 300, points up to
// half the radius from the centre come out near the middle. At zoom 0 they come out above it on the
// ceiling, below it on the floor: by a fifth of the view's height at half the radius, by two fifths
// near the rim.
#include <LumoFESDK.h>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int slot = 0, inW = 1280, inH = 1280, screenW = 800, screenH = 600;
constexpr short zoom = 300;
constexpr unsigned char groundLuma = 40, spotLuma = 235;

struct Point {
    int x, y;
};

void check(int status, const char* call)
{
    if (status != FE_STATUS_OK)
        throw std::runtime_error(std::string(call) + " failed with status " +
                                 std::to_string(status) + "; LumoFESDK.h explains it");
}

void drawSpot(Bytes& frame, Point at, unsigned char luma)
{
    for (int y = at.y - 5; y <= at.y + 5; ++y)
        for (int x = at.x - 5; x <= at.x + 5; ++x)
            frame[std::size_t(y * inW + x)] = luma;
}

// The middle of the bright pixels.
Point findSpot(const Bytes& picture)
{
    long count = 0, sumX = 0, sumY = 0;
    for (int y = 0; y < screenH; ++y)
        for (int x = 0; x < screenW; ++x)
            if (picture[std::size_t(y * screenW + x)] > (groundLuma + spotLuma) / 2) {
                ++count;
                sumX += x;
                sumY += y;
            }
    if (count == 0) throw std::runtime_error("the spot is not in the view");
    return {int(sumX / count), int(sumY / count)};
}

// On ceiling and floor, where the single view looks 22.5 degrees further round than its pan.
void aim(Point click)
{
    IFishEye eye;
    short pan = 0, tilt = 0;
    check(eye.GetAbsolutePositionFromInputVideoPoint(slot, click.x, click.y, pan, tilt),
          "GetAbsolutePositionFromInputVideoPoint");
    check(eye.SetAbsolutePTZ(slot, short((pan + 3600 - 225) % 3600), tilt, zoom, 1),
          "SetAbsolutePTZ");
}

// True when the view's middle shows the clicked point.
bool hits(Bytes& in, Point click)
{
    Bytes out(screenW * screenH * 3 / 2);
    drawSpot(in, click, spotLuma);
    aim(click);
    check(VideoInput(slot, in.data(), out.data(), inW, inH, FORMAT_NV12, false), "VideoInput");
    drawSpot(in, click, groundLuma);

    const Point found = findSpot(out);
    const int right = found.x - screenW / 2, down = found.y - screenH / 2;
    std::fprintf(stderr, "  clicked %d,%d: found %d right of the view's middle, %d below it\n",
                 click.x, click.y, right, down);
    return std::abs(right) <= screenW / 20 && std::abs(down) <= screenH / 20;
}

} // namespace

int main()
try {
    Bytes in(inW * inH * 3 / 2, 128);
    std::fill(in.begin(), in.begin() + inW * inH, groundLuma);
    check(Initialize(slot, inW, inH, screenW, screenH, FORMAT_NV12), "Initialize");
    bool allHit = true;
    for (const bool floor : {false, true}) {
        FE_ViewParams view;
        view.nViewMode = 8;
        view.nCamPos = floor ? 2 : 0;
        view.nCenterX = inH / 2;
        view.nCenterY = inW / 2;
        view.nOverlay = 0;
        FE_EventParams still;
        check(ParamsUpdated(slot, &still, &view), "ParamsUpdated");
        std::fprintf(stderr, "camera on the %s\n", floor ? "floor" : "ceiling");
        for (const Point click : {Point{640, 320}, Point{900, 700}, Point{500, 780}})
            allHit = hits(in, click) && allHit;
    }
    check(Close(slot), "Close");
    if (!allHit) throw std::runtime_error("a spot is further off than a twentieth of the view");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "aim_at_click: %s\n", error.what());
    return 1;
}
