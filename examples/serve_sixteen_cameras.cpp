// Serves all sixteen camera slots from a pool of threads, each camera turning on its own.
//
// The library takes no locks and needs none: calls for different slots may run at once, those for
// one slot must not. That holds for Initialize and Close too, each of its own slot. Here a slot is
// one queue entry at the most, so never in two threads, and the queue's mutex hands it from one to
// the next.
#include <LumoFESDK.h>
#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <deque>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int inW = 640, inH = 640, screenW = 160, screenH = 120, framesEach = 5;

void check(int status, const char* call)
{
    if (status != FE_STATUS_OK)
        throw std::runtime_error(std::string(call) + " failed with status " +
                                 std::to_string(status) + "; LumoFESDK.h explains it");
}

struct Camera {
    int slot;
    int status;
    Bytes in;
    std::vector<Bytes> shown; // its frames
};

// Dewarps every camera's frames from its starting position on, taking turns.
void serve(std::vector<Camera>& cameras, int threadCount)
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Camera*> waiting;
    std::size_t unfinished = cameras.size();
    for (Camera& camera : cameras) {
        camera.shown.clear();
        check(IFishEye().SetAbsolutePTZ(camera.slot, short(camera.slot * 200), 450, 400, 1),
              "SetAbsolutePTZ");
        waiting.push_back(&camera);
    }
    const auto work = [&] {
        std::unique_lock<std::mutex> lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return !waiting.empty() || unfinished == 0; });
            if (waiting.empty()) return;
            Camera* camera = waiting.front();
            waiting.pop_front();
            lock.unlock();
            camera->shown.emplace_back(screenW * screenH * 3 / 2);
            camera->status = VideoInput(camera->slot, camera->in.data(),
                                        camera->shown.back().data(), inW, inH, FORMAT_NV12, false);
            lock.lock();
            if (camera->status == FE_STATUS_OK && camera->shown.size() < std::size_t(framesEach))
                waiting.push_back(camera);
            else
                --unfinished;
            changed.notify_all();
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    for (const Camera& camera : cameras)
        check(camera.status, "VideoInput");
}

Camera open(int slot)
{
    Camera camera = {slot, FE_STATUS_OK, Bytes(inW * inH * 3 / 2), {}};
    for (std::size_t i = 0; i < camera.in.size(); ++i)
        camera.in[i] = (unsigned char)(i % inW / 4 + i / inW / 8 + std::size_t(slot));
    check(Initialize(slot, inW, inH, screenW, screenH, FORMAT_NV12), "Initialize");
    FE_ViewParams view;
    view.nViewMode = 8;
    view.nCenterX = view.nCenterY = view.nRadius = inW / 2;
    view.nOverlay = 0;
    FE_EventParams turning;
    turning.nPanStep = 8;
    check(ParamsUpdated(slot, &turning, &view), "ParamsUpdated");
    return camera;
}

} // namespace

int main()
try {
    std::vector<Camera> cameras;
    for (int slot = 0; slot < FE_MAX_CAMERAS; ++slot)
        cameras.push_back(open(slot));
    serve(cameras, 4);
    const std::vector<Camera> together = cameras;
    serve(cameras, 1);
    for (const Camera& camera : cameras) {
        if (camera.shown != together[std::size_t(camera.slot)].shown)
            throw std::runtime_error("a camera's picture depends on the others");
        if (camera.shown.front() == camera.shown.back())
            throw std::runtime_error("a camera does not turn");
        check(Close(camera.slot), "Close");
    }
    std::fprintf(stderr, "%d cameras, %d frames each: 4 threads show what 1 thread shows\n",
                 FE_MAX_CAMERAS, framesEach);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "serve_sixteen_cameras: %s\n", error.what());
    return 1;
}
