// A host with functions of its own that are called like the library's: the library's inner calls
// must not end up here.
#include "LumoFESDK.h"

#include <cstdio>
#include <dlfcn.h>

static int hijacked = 0;

// clang-format off
extern "C" __attribute__((visibility("default"))) int Close(int) { return ++hijacked; }
extern "C" __attribute__((visibility("default"))) int Initialize(int, int, int, int, int, FORMAT) { return ++hijacked; }
extern "C" __attribute__((visibility("default"))) int VideoInput(int, unsigned char*, unsigned char*, int, int, FORMAT, bool) { return ++hijacked; }
extern "C" __attribute__((visibility("default"))) int ParamsUpdated(int, FE_EventParams*, FE_ViewParams*) { return ++hijacked; }
// clang-format on

int main()
{
    // The host's functions do take the place of the library's for the dynamic linker...
    if (dlsym(RTLD_DEFAULT, "Close") != reinterpret_cast<void*>(&Close)) return 1;
    // ...but the library's object calls the library's own.
    IFishEye* eye = IFishEye_Create();
    static unsigned char in[320 * 240 * 3 / 2], out[160 * 120 * 3 / 2];
    FE_EventParams event;
    FE_ViewParams view;
    view.nOverlay = 0;
    int status = eye->LmFE_Initialize(0, 320, 240, 160, 120, FORMAT_NV12);
    status |= eye->LmFE_ParamsUpdated(0, &event, &view);
    status |= eye->LmFE_VideoInput(0, in, out, 320, 240, FORMAT_NV12, false);
    status |= eye->LmFE_Close(0);
    status |= IFishEye_Release(eye);
    if (hijacked != 0 || status != 0) {
        std::fprintf(stderr, "%d inner calls were hijacked, status %d\n", hijacked, status);
        return 2;
    }
    return 0;
}
