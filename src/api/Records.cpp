// Constructors of the public records.
#include "LumoFESDK.h"

#include <cstddef>

FE_EventParams::FE_EventParams() : nPanStep(0), nTiltStep(0), nZoomStep(0) {}

// Kept: nOverlay is left as the memory held it.
FE_ViewParams::FE_ViewParams()
    : nViewMode(1), nCamPos(0), nSubView(0), nCenterX(640), nCenterY(512), nRadius(640),
      nRadius2(640)
{
}

static_assert(sizeof(FE_EventParams) == 6);
static_assert(sizeof(FE_ViewParams) == 16);
static_assert(sizeof(FE_CurPosParams) == 52);
static_assert(offsetof(FE_CurPosParams, bQuadOption) == 44);
static_assert(offsetof(FE_CurPosParams, n180Pos) == 48);
static_assert(sizeof(FORMAT) == 4);
