// Steers the single view with a joystick, frame by frame.
//
// A step of pan or tilt is held: the library repeats it on every frame until the next update. A
// zoom step is added once, by the update itself, four times over in the single view. So the host
// calls ParamsUpdated when the stick moves, not on every frame, and with steps of 0 to stop.
#include <LumoFESDK.h>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int slot = 0, inW = 1280, inH = 1280, screenW = 400, screenH = 300;

void check(int status, const char* call)
{
    if (status != FE_STATUS_OK)
        throw std::runtime_error(std::string(call) + " failed with status " +
                                 std::to_string(status) + "; LumoFESDK.h explains it");
}

void expect(bool held, const char* promise)
{
    if (!held) throw std::runtime_error(std::string("not so: ") + promise);
}

struct Stick {
    short pan, tilt, zoom;
    bool operator!=(const Stick& o) const
    {
        return pan != o.pan || tilt != o.tilt || zoom != o.zoom;
    }
};

// What a host would read from the device: to the right, outwards, closer, let go. Of pan and tilt
// only the larger one counts.
Stick readStick(int frame)
{
    const Stick held[] = {{6, 0, 0}, {0, -5, 0}, {0, 0, 3}, {0, 0, 0}};
    return held[frame / 3];
}

FE_ViewPosition position(IFishEye& eye)
{
    FE_CurPosParams all = {};
    check(eye.LmFEGetPosition(slot, &all), "LmFEGetPosition");
    return all.view[0];
}

int sign(int x)
{
    return (x > 0) - (x < 0);
}

} // namespace

int main()
try {
    std::vector<unsigned char> in(inW * inH * 3 / 2, 128), out(screenW * screenH * 3 / 2);
    check(Initialize(slot, inW, inH, screenW, screenH, FORMAT_NV12), "Initialize");

    FE_ViewParams view;
    view.nViewMode = 8;
    view.nSubView = 1; // without it, a zoom step has no view to act on
    view.nCenterX = inH / 2;
    view.nCenterY = inW / 2;
    view.nOverlay = 0;
    IFishEye eye;
    Stick last = {0, 0, 0};
    FE_EventParams still;
    check(ParamsUpdated(slot, &still, &view), "ParamsUpdated");

    for (int frame = 0; frame < 12; ++frame) {
        const Stick stick = readStick(frame);
        const FE_ViewPosition before = position(eye);
        const bool moved = stick != last;
        if (moved) {
            FE_EventParams event;
            event.nPanStep = stick.pan;
            event.nTiltStep = stick.tilt;
            event.nZoomStep = stick.zoom;
            check(ParamsUpdated(slot, &event, &view), "ParamsUpdated");
            last = stick;
        }
        check(VideoInput(slot, in.data(), out.data(), inW, inH, FORMAT_NV12, false), "VideoInput");

        const FE_ViewPosition now = position(eye);
        std::fprintf(stderr, "frame %2d, stick %2d %2d %2d%s: pan %3d, tilt %2d, zoom %2d\n", frame,
                     stick.pan, stick.tilt, stick.zoom, moved ? " moved" : "      ", now.nPan,
                     now.nTilt, now.nZoom);
        expect(sign(now.nPan - before.nPan) == sign(stick.pan), "a held pan step turns each frame");
        expect(now.nTilt == before.nTilt - stick.tilt, "a held tilt step tilts each frame");
        expect(now.nZoom == before.nZoom + (moved ? 4 * stick.zoom : 0), "a zoom step counts once");
    }
    check(Close(slot), "Close");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "steer_by_joystick: %s\n", error.what());
    return 1;
}
