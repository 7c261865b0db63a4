// A C++11 host of the installed library: all four headers, one frame steered two ways.
#include <AffineWarp.h>
#include <CBilinear.h>
#include <FEDSP.h>
#include <LumoFESDK.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kIn = 640, kOutW = 320, kOutH = 240;
constexpr unsigned char kLeft = 60, kRight = 200;

// The luma in the middle of the single view that looks to the side of the ceiling camera's picture.
int middleLuma(IFishEye& eye, std::vector<unsigned char>& frame, short pan)
{
    std::vector<unsigned char> out(kOutW * kOutH * 3 / 2);
    eye.SetAbsolutePTZ(3, pan, 600, 0, 1);
    if (eye.LmFE_VideoInput(3, frame.data(), out.data(), kIn, kIn, FORMAT_NV12, false) != 0)
        return -1;
    return out[kOutH / 2 * kOutW + kOutW / 2];
}

bool looksBothWays()
{
    std::vector<unsigned char> frame(kIn * kIn * 3 / 2, 128);
    for (int i = 0; i < kIn * kIn; ++i)
        frame[std::size_t(i)] = i % kIn < kIn / 2 ? kLeft : kRight;

    IFishEye eye;
    if (eye.LmFE_Initialize(3, kIn, kIn, kOutW, kOutH, FORMAT_NV12) != FE_STATUS_OK) return false;
    FE_ViewParams view;
    view.nViewMode = 8;
    view.nCenterX = view.nCenterY = view.nRadius = view.nRadius2 = kIn / 2;
    view.nOverlay = 0;
    FE_EventParams still;
    eye.LmFE_ParamsUpdated(3, &still, &view);
    // The picture's right is 90 degrees from its top, and pan 0 lies 22.5 degrees after the top.
    const int right = middleLuma(eye, frame, 675), left = middleLuma(eye, frame, 675 + 1800);
    return right == kRight && left == kLeft && eye.LmFE_Close(3) == 0;
}

bool remaps()
{
    unsigned char in[] = {1, 2, 3, 4, 5, 6}, out[3] = {};
    int table[] = {0, 3}; // the second pixel, no fraction
    CBilinear kernels;
    kernels.Bilinear_RGB24_C(in, out, table, 2, 1, 1, 1);
    return out[0] == 6 && out[1] == 5 && out[2] == 4;
}

bool multiplies()
{
    _RTMat scale, shift, product;
    GenScaleMat(2, 3, &scale);
    GenTransMat(5, 7, &shift);
    RTMpy(&scale, &shift, &product);
    return product.m[0] == 2 && product.m[2] == 10 && product.m[5] == 21;
}

bool estimates()
{
    FEDSP engine;
    return engine.MemoryAllocated_DSPBuff_Estimate(kIn, kIn, kOutW, kOutH) > kIn * kIn * 3 / 2;
}

int failures = 0;

void expect(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "host: %s: wrong\n", what);
    ++failures;
}

} // namespace

int main()
{
    const std::string version = std::to_string(LUMOFESDK_VERSION_MAJOR) + "." +
                                std::to_string(LUMOFESDK_VERSION_MINOR) + "." +
                                std::to_string(LUMOFESDK_VERSION_PATCH);
    expect(version == EXPECTED_VERSION, "version of header and package");
    expect(looksBothWays(), "pixels of a steered view");
    expect(remaps(), "pixels of a kernel");
    expect(multiplies(), "product of matrices");
    expect(estimates(), "size of the engine's buffers");
    return failures;
}
