#include "camera/NearestView.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(NearestView, SingleViewLooksFurtherThanItsPan)
{
    for (Mount mount : {Mount::ceiling, Mount::floor}) {
        EXPECT_EQ(convertedAim({350, 40, 5}, View::single, View::quad, mount), (Aim{12.5, 40, 5}));
        EXPECT_EQ(convertedAim({10, 40, 5}, View::ptz360, View::single, mount),
                  (Aim{347.5, 40, 5}));
        EXPECT_EQ(convertedAim({-10, 40, 5}, View::quad, View::ptz360, mount), (Aim{350, 40, 5}));
    }
    EXPECT_EQ(convertedAim({-80, 4, 5}, View::single, View::quad, Mount::wall), (Aim{-80, 4, 5}));
}

TEST(NearestView, AnglesAreThoseOfTheRoom)
{
    EXPECT_NEAR(angleBetween({0, 0, 0}, {123, 0, 0}, Mount::ceiling), 0, 1e-6);
    EXPECT_NEAR(angleBetween({0, 90, 0}, {90, 90, 0}, Mount::ceiling), 90, 1e-6);
    EXPECT_NEAR(angleBetween({350, 60, 0}, {170, 60, 0}, Mount::ceiling), 120, 1e-6);
    EXPECT_NEAR(angleBetween({10, -90, 0}, {40, -90, 0}, Mount::floor), 30, 1e-6);
    EXPECT_NEAR(angleBetween({10, -30, 0}, {10, -50, 0}, Mount::floor), 20, 1e-6);
    EXPECT_NEAR(angleBetween({-90, 0, 0}, {90, 0, 0}, Mount::wall), 180, 1e-6);
    EXPECT_NEAR(angleBetween({0, 0, 0}, {0, -30, 0}, Mount::wall), 30, 1e-6);
    EXPECT_NEAR(angleBetween({90, 0, 0}, {0, 90, 0}, Mount::wall), 90, 1e-6);
}

TEST(NearestView, IsTheNearestOfAllPresets)
{
    CameraFile camera;
    EXPECT_FALSE(nearestView(camera, {0, 0, 0}));
    camera.presets = {{"round", View::half180, {{}, 30}}};
    EXPECT_FALSE(nearestView(camera, {0, 0, 0}));
    camera.presets.push_back({"four", View::ptz360, {{{0, 80, 0}, {180, 60, 0}}, 0}});
    camera.presets.push_back({"one", View::single, {{{80, 70, 0}}, 0}});
    const auto nearest = nearestView(camera, {150, 60, 0});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->preset->name, "four");
    EXPECT_EQ(nearest->number, 2);
    EXPECT_NEAR(nearest->degrees, angleBetween({157.5, 60, 0}, {150, 60, 0}, Mount::ceiling), 1e-9);
    EXPECT_EQ(nearestView(camera, {80, 71, 0})->preset->name, "one");
    EXPECT_EQ(nearestView(camera, {80, 71, 0})->number, 1);
}

} // namespace
} // namespace lumofe
