// Serves four slots for a long time with random steering and watches the process's memory:
// soak FRAMES. Fails when a frame is refused, or when memory grows in the second half.
#include "LumoFESDK.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kSlots = 4;
constexpr long kAllowedGrowth = 8L << 20; // bytes: parts of buffers that no frame touched before

struct Camera {
    int inW, inH, screenW, screenH;
    FORMAT format;
};
// Screens within and beyond the input, upright and odd ones.
constexpr std::array<Camera, kSlots> kCameras{{{640, 640, 400, 300, FORMAT_NV12},
                                               {640, 480, 720, 405, FORMAT_YV12},
                                               {480, 640, 240, 320, FORMAT_RGB},
                                               {400, 400, 333, 251, FORMAT_NV12}}};

long residentBytes()
{
    long total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

class Soak {
public:
    bool run(long frames)
    {
        for (int slot = 0; slot < kSlots; ++slot)
            if (!open(slot)) return false;
        long settled = 0;
        for (long frame = 0; frame < frames; ++frame) {
            const int slot = int(frame % kSlots);
            if (draw(100) == 0) {
                Close(slot);
                if (!open(slot)) return false;
            }
            if (draw(8) == 0) steer(slot);
            if (!show(slot)) return false;
            if (frame == frames / 2) settled = residentBytes();
        }
        const long grown = residentBytes() - settled;
        std::fprintf(stderr, "%ld frames, memory grew by %ld KiB\n", frames, grown / 1024);
        for (int slot = 0; slot < kSlots; ++slot)
            Close(slot);
        return grown <= kAllowedGrowth;
    }

private:
    int draw(int count) { return int(random_() % unsigned(count)); }

    static bool succeeded(int status, const char* call, int slot)
    {
        if (status != FE_STATUS_OK)
            std::fprintf(stderr, "%s of slot %d gave status %d\n", call, slot, status);
        return status == FE_STATUS_OK;
    }

    bool open(int slot)
    {
        const Camera& c = kCameras[std::size_t(slot)];
        const int status = Initialize(slot, c.inW, c.inH, c.screenW, c.screenH, c.format);
        if (!succeeded(status, "Initialize", slot)) return false;
        layout(slot);
        return true;
    }

    void layout(int slot)
    {
        const Camera& c = kCameras[std::size_t(slot)];
        const int modes[] = {1, 2, 4, 8};
        FE_EventParams event;
        event.nPanStep = static_cast<short>(draw(20) - 10);
        event.nTiltStep = static_cast<short>(draw(20) - 10);
        event.nZoomStep = static_cast<short>(draw(5) - 2);
        FE_ViewParams view;
        view.nViewMode = static_cast<unsigned short>(modes[draw(4)]);
        view.nCamPos = static_cast<unsigned short>(draw(3));
        view.nSubView = static_cast<unsigned short>(draw(5));
        view.nCenterX = static_cast<unsigned short>(c.inH / 2);
        view.nCenterY = static_cast<unsigned short>(c.inW / 2);
        view.nRadius = static_cast<unsigned short>(c.inW / 2);
        view.nOverlay = 0;
        ParamsUpdated(slot, &event, &view);
    }

    void steer(int slot)
    {
        FE_CurPosParams position = {};
        switch (draw(4)) {
        case 0:
            layout(slot);
            break;
        case 1:
            eye_.SetAbsolutePTZ(slot, static_cast<short>(draw(3600)),
                                static_cast<short>(draw(1800) - 900), static_cast<short>(draw(800)),
                                static_cast<unsigned short>(draw(5)));
            break;
        case 2:
            eye_.LmFEGetPosition(slot, &position);
            position.view[draw(4)].nPan = static_cast<short>(draw(1440));
            eye_.LmFESetPosition(slot, &position);
            break;
        default: {
            short pan = 0, tilt = 0;
            eye_.GetAbsolutePositionFromInputVideoPoint(slot, draw(640), draw(640), pan, tilt);
            eye_.SetAbsolutePTZ(slot, pan, tilt, 300, 1);
            break;
        }
        }
    }

    bool show(int slot)
    {
        const Camera& c = kCameras[std::size_t(slot)];
        in_.resize(std::size_t(c.inW) * std::size_t(c.inH) * 3, 99);
        out_.resize(std::size_t(c.screenW) * std::size_t(c.screenH) * 3);
        const int status =
            VideoInput(slot, in_.data(), out_.data(), c.inW, c.inH, c.format, draw(2) == 0);
        return succeeded(status, "VideoInput", slot);
    }

    std::minstd_rand random_{1};
    IFishEye eye_;
    std::vector<unsigned char> in_, out_;
};

} // namespace

int main(int argc, char** argv)
{
    const long frames = argc == 2 ? std::atol(argv[1]) : 0;
    if (frames < 10) {
        std::fprintf(stderr, "usage: %s FRAMES, at least 10\n", argv[0]);
        return 2;
    }
    return Soak().run(frames) ? 0 : 1;
}
