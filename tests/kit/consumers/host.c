/* A C99 host of the installed library: the view straight down shows the middle of the picture. */
#include <LumoFESDK.h>

#include <stdio.h>
#include <string.h>

enum { in = 640, outW = 320, outH = 240, disc = 20, dark = 60, bright = 200 };

static unsigned char frame[in * in * 3 / 2];
static unsigned char view[outW * outH * 3 / 2];

static int failed(const char* what)
{
    fprintf(stderr, "host: %s: wrong\n", what);
    return 1;
}

int main(void)
{
    FE_EventParams still = {0, 0, 0};
    FE_ViewParams params = {8, 0, 0, in / 2, in / 2, in / 2, in / 2, 0};
    char version[40];
    int x, y;

    snprintf(version, sizeof version, "%d.%d.%d", LUMOFESDK_VERSION_MAJOR, LUMOFESDK_VERSION_MINOR,
             LUMOFESDK_VERSION_PATCH);
    if (strcmp(version, EXPECTED_VERSION) != 0) return failed("version of header and package");

    memset(frame, 128, sizeof frame);
    for (y = 0; y < in; ++y)
        for (x = 0; x < in; ++x) {
            const int dx = x - in / 2, dy = y - in / 2;
            frame[y * in + x] = dx * dx + dy * dy < disc * disc ? bright : dark;
        }
    if (Initialize(5, in, in, outW, outH, FORMAT_NV12) != FE_STATUS_OK) return failed("Initialize");
    if (ParamsUpdated(5, &still, &params) != FE_STATUS_OK) return failed("ParamsUpdated");
    if (VideoInput(5, frame, view, in, in, FORMAT_NV12, false) != FE_STATUS_OK)
        return failed("VideoInput");
    if (view[outH / 2 * outW + outW / 2] != bright) return failed("middle of the view");
    if (view[outH / 2 * outW] != dark) return failed("edge of the view");
    return Close(5) == FE_STATUS_OK ? 0 : failed("Close");
}
