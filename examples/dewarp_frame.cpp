#include <LumoFESDK.h>
#include <vector>

int main()
{
    constexpr int inW = 1280, inH = 1280, screenW = 800, screenH = 600;
    std::vector<unsigned char> in(inW * inH * 3 / 2, 128), out(screenW * screenH * 3 / 2);

    if (Initialize(0, inW, inH, screenW, screenH, FORMAT_NV12) != FE_STATUS_OK) return 1;

    FE_ViewParams view;
    view.nViewMode = 8;      // single view
    view.nCamPos = 0;        // camera on the ceiling
    view.nCenterX = inH / 2; // row of the circle's centre, for that is what this field means
    view.nCenterY = inW / 2; // column of the circle's centre
    view.nRadius = 640;
    view.nOverlay = 0;
    FE_EventParams still; // no steering step
    ParamsUpdated(0, &still, &view);

    IFishEye eye;
    eye.SetAbsolutePTZ(0, 900, 600, 0, 1); // pan 90, tilt 60 degrees, zoom 0, view 1

    int status = VideoInput(0, in.data(), out.data(), inW, inH, FORMAT_NV12, false); // each frame
    Close(0);
    return status;
}
