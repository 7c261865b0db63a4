// The object face of the slots.
#include "api/SlotApi.h"

IFishEye::IFishEye() = default;

IFishEye::~IFishEye() = default;

IFishEye* IFishEye_Create()
{
    return new IFishEye;
}

int IFishEye_Release(IFishEye* p)
{
    delete p;
    return 0;
}

int IFishEye::LmFE_Initialize(int nCam, int nInW, int nInH, int nScreenW, int nScreenH,
                              FORMAT format)
{
    return Initialize(nCam, nInW, nInH, nScreenW, nScreenH, format);
}

int IFishEye::LmFE_VideoInput(int nCam, unsigned char* pIn, unsigned char* pOut, int nW, int nH,
                              FORMAT format, bool bFlip)
{
    return VideoInput(nCam, pIn, pOut, nW, nH, format, bFlip);
}

int IFishEye::LmFE_ParamsUpdated(int nCam, FE_EventParams* pEvent, FE_ViewParams* pView)
{
    return ParamsUpdated(nCam, pEvent, pView);
}

int IFishEye::LmFE_Close(int nCam)
{
    return Close(nCam);
}

int IFishEye::LmFESetPosition(int nCam, FE_CurPosParams* pPos)
{
    if (FEDSP* engine = fe::engineOf(nCam)) engine->LmFESetPosition(nCam, pPos);
    return 0;
}

int IFishEye::LmFEGetPosition(int nCam, FE_CurPosParams* pPos)
{
    if (FEDSP* engine = fe::engineOf(nCam)) engine->LmFEGetPosition(nCam, pPos);
    return 0;
}

int IFishEye::GetAbsolutePositionFromInputVideoPoint(int nCam, int nX, int nY, short& nPan,
                                                     short& nTilt)
{
    if (FEDSP* engine = fe::engineOf(nCam))
        engine->GetAbsolutePositionFromInputVideoPointCPU(nX, nY, nPan, nTilt);
    return 0;
}

int IFishEye::SetAbsolutePTZ(int nCam, short nPan, short nTilt, short nZoom, unsigned short nFlags)
{
    if (FEDSP* engine = fe::engineOf(nCam))
        engine->SetAbsolutePTZCPU(nCam, nPan, nTilt, nZoom, nFlags);
    return 0;
}
