// Pictures of the test scene through any lens.
#include "scene/Camera.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

namespace lumofe {
namespace {

constexpr int kSamples = 4; // a side
constexpr Vec3 kEast{1, 0, 0}, kWest{-1, 0, 0}, kNorth{0, 1, 0}, kSouth{0, -1, 0};
constexpr Vec3 kUp{0, 0, 1}, kDown{0, 0, -1};

// The transfer curve of sRGB.
std::uint8_t encode(double linear)
{
    const double v =
        linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return std::uint8_t(std::clamp(std::lround(255 * v), 0L, 255L));
}

Colour pixelColour(const Room& room, const Camera& camera, const Lens& lens, int column, int row)
{
    Colour sum;
    for (int j = 0; j < kSamples; ++j) {
        for (int i = 0; i < kSamples; ++i) {
            const auto d =
                lens(column + (i + 0.5) / kSamples - 0.5, row + (j + 0.5) / kSamples - 0.5);
            if (d)
                sum = sum + room.trace(camera.position, camera.right * d->x + camera.down * d->y +
                                                            camera.forward * d->z);
        }
    }
    return sum * (1.0 / (kSamples * kSamples));
}

} // namespace

Camera cameraFor(Mount mount)
{
    switch (mount) {
    case Mount::ceiling:
        return {{0, 0, Room::kHeight - 0.05}, kDown, kEast, kSouth};
    case Mount::floor:
        return {{0, 0, 0.75}, kUp, kWest, kSouth};
    case Mount::wall:
        break;
    }
    return {{0, 0.05 - Room::kHalfWidth, Room::kHeight / 2}, kNorth, kEast, kDown};
}

Image renderPicture(const Room& room, const Camera& camera, const Lens& lens, Size size)
{
    Image image(size);
    std::atomic<int> nextRow = 0;
    const auto renderRows = [&] {
        for (int row = nextRow++; row < size.height; row = nextRow++) {
            for (int column = 0; column < size.width; ++column) {
                const Colour c = pixelColour(room, camera, lens, column, row);
                std::uint8_t* p = image.pixel(column, row);
                p[0] = encode(c.r);
                p[1] = encode(c.g);
                p[2] = encode(c.b);
            }
        }
    };
    std::vector<std::jthread> helpers;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i)
        helpers.emplace_back(renderRows);
    renderRows();
    helpers.clear();
    return image;
}

} // namespace lumofe
