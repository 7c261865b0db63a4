// Times the kernels, the table and whole frames of a 2048x2048 camera on a 1920x1080 screen:
// lumofe_bench [ROUNDS]. Medians; everything runs on one thread.
#include "FEDSP.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr int kIn = 2048, kW = 1920, kH = 1080;
constexpr double kPixels = double(kW) * kH;

template <class F>
double medianMs(int rounds, F f)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        f();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        times.push_back(took.count());
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[std::size_t(rounds / 2)];
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 25;
    if (rounds < 1) {
        std::fprintf(stderr, "usage: lumofe_bench [ROUNDS], at least 1\n");
        return 2;
    }
    // The library prints on standard output while it works.
    std::FILE* out = fdopen(dup(1), "w");
    const int null = open("/dev/null", O_WRONLY);
    if (!out || null < 0 || dup2(null, 1) < 0) return 1;

    if (Initialize(0, kIn, kIn, kW, kH, FORMAT_NV12) != FE_STATUS_OK) return 1;
    FE_ViewParams view;
    view.nViewMode = 8;
    view.nCenterX = view.nCenterY = view.nRadius = kIn / 2;
    view.nOverlay = 0;
    FE_EventParams event;
    ParamsUpdated(0, &event, &view);
    IFishEye eye;
    eye.SetAbsolutePTZ(0, 450, 600, 0, 1);

    std::vector<unsigned char> in(std::size_t(kIn) * kIn * 3);
    for (std::size_t i = 0; i < in.size(); ++i)
        in[i] = static_cast<unsigned char>(i * 2654435761u >> 24);
    std::vector<unsigned char> frame(std::size_t(kW) * kH * 3);

    const auto feed = [&](FORMAT format) {
        VideoInput(0, in.data(), frame.data(), kIn, kIn, format, true);
    };
    for (const auto& kind :
         {std::pair{"nv12", FORMAT_NV12}, {"yv12", FORMAT_YV12}, {"rgb", FORMAT_RGB}}) {
        const char* name = kind.first;
        const FORMAT format = kind.second;
        m_FEDSP[0]->m_bSetup = 1;
        feed(format);
        const double ms = medianMs(rounds, [&] { feed(format); });
        std::fprintf(out,
                     "single view, whole frame, %s   %7.2f ms  %5.2f ns/pixel  %6.1f frames/s\n",
                     name, ms, ms * 1e6 / kPixels, 1000 / ms);
    }

    for (auto [name, mode] : {std::pair{"quad", 1}, {"360", 2}, {"180", 4}}) {
        view.nViewMode = static_cast<unsigned short>(mode);
        ParamsUpdated(0, &event, &view);
        feed(FORMAT_NV12);
        const double ms = medianMs(rounds, [&] { feed(FORMAT_NV12); });
        std::fprintf(out,
                     "%-4s layout, whole frame, nv12   %7.2f ms  %5.2f ns/pixel  %6.1f frames/s\n",
                     name, ms, ms * 1e6 / kPixels, 1000 / ms);
    }

    FEDSP& engine = *m_FEDSP[0];
    const double table = medianMs(rounds, [&] {
        engine.Fisheye_calibration_Init_byArea(kIn / 2, kIn / 2, kIn / 2, kIn / 2,
                                               {kIn / 2 - 400, kIn / 2 - 300, 800, 600}, 90, 0, kW,
                                               kH, engine.m_pMapTable, 20, 0);
    });
    std::fprintf(out, "perspective table                %7.2f ms  %5.2f ns/pixel\n", table,
                 table * 1e6 / kPixels);
    const double luma = medianMs(rounds, [&] {
        engine.Bilinear_NV12_C(in.data(), frame.data(), engine.m_pMapTable, kIn, kIn, kW, kH, kIn);
    });
    std::fprintf(out, "remap kernel, nv12               %7.2f ms  %5.2f ns/pixel\n", luma,
                 luma * 1e6 / kPixels);
    Close(0);
    return 0;
}
