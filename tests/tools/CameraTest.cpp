#include "scene/Camera.h"

#include "ToolTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::cross;
using test::dot;

TEST(Camera, PictureTopAndRightAreAsDocumented)
{
    const struct {
        Mount mount;
        Vec3 forward, top, right;
    } kCases[] = {{Mount::ceiling, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}},
                  {Mount::floor, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0}},
                  {Mount::wall, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}}};
    for (const auto& c : kCases) {
        const Camera camera = cameraFor(c.mount);
        EXPECT_EQ(dot(camera.forward, c.forward), 1);
        EXPECT_EQ(dot(camera.down, c.top), -1);
        EXPECT_EQ(dot(camera.right, c.right), 1);
        // Not mirrored: right, down and forward are right-handed, as x, y and z.
        EXPECT_EQ(dot(cross(camera.right, camera.down), camera.forward), 1);
        EXPECT_LT(std::abs(camera.position.x), Room::kHalfWidth);
        EXPECT_LT(std::abs(camera.position.y), Room::kHalfWidth);
        EXPECT_LT(std::abs(camera.position.z - Room::kHeight / 2), Room::kHeight / 2);
    }
}

TEST(Camera, PictureIsTheMeanOfSymmetricSamples)
{
    // A lens that sees the white or the dark half of a step: a pixel centred on it is half lit.
    const Camera camera = cameraFor(Mount::ceiling);
    const Lens step = [](double column, double) -> std::optional<Vec3> {
        if (column < 1) return std::nullopt;
        return Vec3{0.1, 0.1, 1}; // the white disc of the compass rose
    };
    const Image image = renderPicture(Room(), camera, step, {3, 1});
    EXPECT_EQ(image.pixel(0, 0)[0], 0);
    EXPECT_GT(image.pixel(2, 0)[0], 230);
    // Half the light, in the transfer curve of sRGB.
    EXPECT_NEAR(image.pixel(1, 0)[0], image.pixel(2, 0)[0] * 0.735, 3);
}

} // namespace
} // namespace lumofe
