// Views and whole frames of camera slots.
#include "Case.h"

#include "Camera.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <thread>

namespace bench {

namespace {

constexpr double kScreenPixels = double(area(kScreen));

using Cameras = std::vector<std::unique_ptr<Camera>>;

// Cameras that look in different directions.
std::shared_ptr<Cameras> cameras(int count)
{
    const auto all = std::make_shared<Cameras>();
    for (int i = 0; i < count; ++i)
        all->push_back(std::make_unique<Camera>(Camera::Setup{.pan = i * 3600 / count}));
    return all;
}

Case wholeFrame(const char* name, const Camera::Setup& setup)
{
    return {name, kScreenPixels, [setup]() -> Work {
                const auto camera = std::make_shared<Camera>(setup);
                return [camera] { camera->feed(); };
            }};
}

Case singleView(const char* name, FORMAT format)
{
    return {name, kScreenPixels, [format]() -> Work {
                const auto camera = std::make_shared<Camera>(Camera::Setup{.format = format});
                return [camera] { camera->map(); };
            }};
}

// From setting up the slot to the last frame.
Case clip()
{
    return {"clip/single", kClipFrames * kScreenPixels, []() -> Work {
                return [camera = std::make_shared<Camera>(Camera::Setup{})] {
                    camera->restart();
                    for (int i = Camera::kFirstFrames; i < kClipFrames; ++i)
                        camera->feed();
                };
            }};
}

// Every frame takes a step, so that the table is built anew.
Case steeredFrame()
{
    return {"frame/steered", kScreenPixels, []() -> Work {
                const auto camera = std::make_shared<Camera>(Camera::Setup{.panStep = 1});
                const std::vector<int> before = callersTable(*camera);
                camera->feed();
                if (callersTable(*camera) == before)
                    throw std::runtime_error("a step of the view did not rebuild its table");
                return [camera] { camera->feed(); };
            }};
}

// By the time a camera's turn comes again, the others have emptied the caches.
Case eightViews()
{
    constexpr int kCount = 8;
    return {"view/eight-slots", kCount * kScreenPixels, []() -> Work {
                return [all = cameras(kCount)] {
                    for (const auto& camera : *all)
                        camera->map();
                };
            }};
}

Case sixteenSlots()
{
    return {"frame/sixteen-slots", FE_MAX_CAMERAS * kScreenPixels, []() -> Work {
                return [all = cameras(FE_MAX_CAMERAS)] {
                    std::atomic<std::size_t> next{0};
                    const auto serve = [&] {
                        for (std::size_t i; (i = next++) < all->size();)
                            (*all)[i]->feed();
                    };
                    std::vector<std::thread> threads(
                        std::max(1u, std::thread::hardware_concurrency()));
                    for (std::thread& thread : threads)
                        thread = std::thread(serve);
                    for (std::thread& thread : threads)
                        thread.join();
                };
            }};
}

// What a frame of the quad layout must move at the least: the input into the staging buffer, an
// entry for each pixel, and the output.
Case copyOfQuad()
{
    return {"copy/quad", kScreenPixels, []() -> Work {
                const std::size_t entry = 8;
                Bytes from(frameBytes(kInput, FORMAT_NV12) + area(kScreen) * entry +
                           frameBytes(kScreen, FORMAT_NV12));
                return [from, to = from]() mutable {
                    std::memcpy(to.data(), from.data(), from.size());
                };
            }};
}

} // namespace

Cases frameCases()
{
    return {singleView("view/single", FORMAT_NV12),
            singleView("view/single-rgb", FORMAT_RGB),
            eightViews(),
            wholeFrame("frame/single", {}),
            wholeFrame("frame/single-rgb", {.format = FORMAT_RGB}),
            wholeFrame("frame/quad", {.layout = kQuad}),
            wholeFrame("frame/360", {.layout = k360}),
            wholeFrame("frame/180", {.layout = k180}),
            steeredFrame(),
            clip(),
            sixteenSlots(),
            copyOfQuad()};
}

Cases ourCases()
{
    Cases cases = kernelCases();
    for (Case& c : frameCases())
        cases.push_back(std::move(c));
    return cases;
}

} // namespace bench
