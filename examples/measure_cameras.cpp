// Opens all sixteen slots, or as many as there is memory for, and measures what they cost:
//
//     measure_cameras [INPUT_W INPUT_H SCREEN_W SCREEN_H FRAMES THREADS]
//
// Each camera shows a still single view. The figures are printed on standard error.
#include <LumoFESDK.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

struct Options {
    int inW, inH, screenW, screenH, frames, threads;
};

struct Camera {
    int slot;
    int status;
    Bytes in, out;
};

Options parse(int argc, char** argv)
{
    int values[] = {640, 480, 320, 240, 3, 2};
    if (argc != 1 && argc != 7)
        throw std::runtime_error("expected no arguments, or INPUT_W INPUT_H SCREEN_W SCREEN_H "
                                 "FRAMES THREADS");
    for (int i = 1; i < argc; ++i) {
        values[i - 1] = std::atoi(argv[i]);
        if (values[i - 1] < 1 || values[i - 1] > 1000000)
            throw std::runtime_error(std::string(argv[i]) + " is no number from 1 to 1000000");
    }
    return {values[0], values[1], values[2], values[3], values[4], values[5]};
}

// FE_STATUS_NO_BUFFERS when there is no memory left for a camera; its slot is closed then.
int open(const Options& o, int slot)
{
    const int status = Initialize(slot, o.inW, o.inH, o.screenW, o.screenH, FORMAT_NV12);
    if (status == FE_STATUS_NO_BUFFERS) Close(slot);
    if (status != FE_STATUS_OK) return status;
    FE_ViewParams view;
    view.nViewMode = 8;
    view.nCenterX = static_cast<unsigned short>(o.inH / 2);
    view.nCenterY = static_cast<unsigned short>(o.inW / 2);
    view.nRadius = view.nCenterX;
    view.nOverlay = 0;
    FE_EventParams still;
    return ParamsUpdated(slot, &still, &view);
}

std::vector<Camera> openAll(const Options& o)
{
    std::vector<Camera> cameras;
    for (int slot = 0; slot < FE_MAX_CAMERAS; ++slot) {
        const int status = open(o, slot);
        if (status == FE_STATUS_NO_BUFFERS) break;
        if (status != FE_STATUS_OK)
            throw std::runtime_error("status " + std::to_string(status) +
                                     "; LumoFESDK.h explains it");
        IFishEye().SetAbsolutePTZ(slot, short(slot * 200), 600, 0, 1);
        try {
            const std::size_t in = std::size_t(o.inW) * std::size_t(o.inH) * 3 / 2;
            const std::size_t out = std::size_t(o.screenW) * std::size_t(o.screenH) * 3 / 2;
            cameras.push_back({slot, FE_STATUS_OK, Bytes(in, 128), Bytes(out)});
        } catch (const std::bad_alloc&) { // the slot fits, its frames do not
            Close(slot);
            break;
        }
    }
    return cameras;
}

// So many frames of every camera, each camera on one of the threads.
void serve(std::vector<Camera>& cameras, const Options& o, int frames)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < o.threads; ++t)
        threads.emplace_back([&cameras, &o, frames, t] {
            for (int frame = 0; frame < frames; ++frame)
                for (std::size_t i = std::size_t(t); i < cameras.size();
                     i += std::size_t(o.threads))
                    cameras[i].status |=
                        VideoInput(cameras[i].slot, cameras[i].in.data(), cameras[i].out.data(),
                                   o.inW, o.inH, FORMAT_NV12, false);
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const Camera& camera : cameras)
        if (camera.status != FE_STATUS_OK) throw std::runtime_error("VideoInput failed");
}

// A line of /proc/self/status, MiB.
double memory(const char* name)
{
    std::FILE* file = std::fopen("/proc/self/status", "r");
    if (!file) return 0;
    char line[256];
    double mebibytes = 0;
    while (std::fgets(line, sizeof line, file))
        if (std::strncmp(line, name, std::strlen(name)) == 0)
            mebibytes = std::atof(line + std::strlen(name)) / 1024;
    std::fclose(file);
    return mebibytes;
}

} // namespace

int main(int argc, char** argv)
try {
    const Options o = parse(argc, argv);
    std::vector<Camera> cameras = openAll(o);
    if (cameras.empty()) throw std::runtime_error("there is no memory for a single camera");
    serve(cameras, o, 30); // builds the tables and their second forms
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const std::clock_t processor = std::clock();
    serve(cameras, o, o.frames);
    const double used = double(std::clock() - processor) / CLOCKS_PER_SEC;
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const double all = double(cameras.size()) * o.frames;
    std::fprintf(stderr, "%d-bit, %d cameras of %d x %d on %d x %d, %d threads\n",
                 int(sizeof(void*)) * 8, int(cameras.size()), o.inW, o.inH, o.screenW, o.screenH,
                 o.threads);
    std::fprintf(stderr, "%.2f ms of processor time a frame, %.0f frames a second\n",
                 used * 1000 / all, all / seconds);
    std::fprintf(stderr, "%.0f MiB resident, %.0f MiB of address space\n", memory("VmHWM:"),
                 memory("VmPeak:"));
    for (const Camera& camera : cameras)
        Close(camera.slot);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "measure_cameras: %s\n", error.what());
    return 1;
}
