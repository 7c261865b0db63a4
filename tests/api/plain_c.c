/* The public header from C99: records without constructors, slot functions, an opaque IFishEye. */
#include "LumoFESDK.h"

#include <string.h>

typedef char event_is_6_bytes[sizeof(FE_EventParams) == 6 ? 1 : -1];
typedef char view_is_16_bytes[sizeof(FE_ViewParams) == 16 ? 1 : -1];
typedef char position_is_52_bytes[sizeof(FE_CurPosParams) == 52 ? 1 : -1];

static unsigned char in[320 * 240 * 3 / 2];
static unsigned char out[160 * 120 * 3 / 2];

int main(void)
{
    FE_EventParams event = {0, 0, 0};
    FE_ViewParams view = {8, 0, 0, 120, 160, 120, 120, 0};
    IFishEye* eye = IFishEye_Create();

    memset(in, 90, sizeof in);
    if (Initialize(0, 320, 240, 160, 120, FORMAT_NV12) != FE_STATUS_OK) return 1;
    if (ParamsUpdated(0, &event, &view) != FE_STATUS_OK) return 2;
    if (VideoInput(0, in, out, 320, 240, FORMAT_NV12, false) != FE_STATUS_OK) return 3;
    if (out[160 * 60 + 80] != 90) return 4;
    if (m_FEDSP[0] == 0 || m_FEDSP[1] != 0 || bFirstTimeSetup != 0 || g_count != 0) return 5;
    if (Close(0) != FE_STATUS_OK || m_FEDSP[0] != 0) return 6;
    return eye ? IFishEye_Release(eye) : 7;
}
