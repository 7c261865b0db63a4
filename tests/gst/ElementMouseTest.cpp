// The element and the mouse.
#include "GstTestSupport.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

namespace lumofe {
namespace {

using test::Bytes;
using test::frameBytes;
using test::kInputBytes;
using test::kMounts;
using test::Pipeline;
using test::propertiesOf;

// Where what was at the middle of the first picture is in the second, pixels to the right and down.
struct Move {
    int right, down;
};

Move moveBetween(const Bytes& before, const Bytes& after, Size size)
{
    constexpr int kReach = 20, kHalf = 40;
    Move best{0, 0};
    double least = std::numeric_limits<double>::infinity();
    for (int down = -kReach; down <= kReach; ++down)
        for (int right = -kReach; right <= kReach; ++right) {
            double sum = 0;
            for (int y = size.height / 2 - kHalf; y < size.height / 2 + kHalf; y += 3)
                for (int x = size.width / 2 - kHalf; x < size.width / 2 + kHalf; x += 3)
                    sum += std::abs(int(before[std::size_t(y * size.width + x)]) -
                                    int(after[std::size_t((y + down) * size.width + x + right)]));
            if (sum < least) {
                least = sum;
                best = {right, down};
            }
        }
    return best;
}

// Small inputs are all rim when zoomed in.
constexpr Size kLarge{1280, 1280};

// Luma with edges in all directions and no repetition that a view shows twice.
Bytes blocks()
{
    Bytes frame(std::size_t(kLarge.width * kLarge.height) * 3 / 2, 128);
    for (int y = 0; y < kLarge.height; ++y)
        for (int x = 0; x < kLarge.width; ++x) {
            const unsigned block = unsigned(x / 16) * 73856093u ^ unsigned(y / 16) * 19349663u;
            frame[std::size_t(y * kLarge.width + x)] = std::uint8_t(block * 2654435761u >> 24);
        }
    return frame;
}

TEST(ElementMouse, WhatIsDraggedFollowsThePointer)
{
    const Bytes input = blocks();
    for (Mount mount : kMounts) {
        SCOPED_TRACE(mountRule(mount).name);
        const char* tilt = mount == Mount::ceiling ? " tilt1=60"
                           : mount == Mount::floor ? " tilt1=-60"
                                                   : " tilt1=30";
        Pipeline pipeline(propertiesOf(View::single, mount) + tilt + " zoom1=60");
        pipeline.acceptOutput("video/x-raw, width=320, height=240");
        pipeline.input("NV12", kLarge);
        const Bytes before = pipeline.dewarp(input);
        const Size size = pipeline.outputSize();
        pipeline.press(1, 150, 120);
        pipeline.moveTo(162, 120);
        const Bytes right = pipeline.dewarp(input);
        pipeline.moveTo(162, 132);
        const Bytes down = pipeline.dewarp(input);
        pipeline.release(1, 162, 132);
        EXPECT_GT(moveBetween(before, right, size).right, 4);
        EXPECT_GT(moveBetween(right, down, size).down, 1);
    }
    for (Mount mount : {Mount::ceiling, Mount::floor}) {
        SCOPED_TRACE(mountRule(mount).name);
        Pipeline pipeline(propertiesOf(View::half180, mount));
        pipeline.acceptOutput("video/x-raw, width=320, height=240");
        pipeline.input("NV12", kLarge);
        const Bytes before = pipeline.dewarp(input);
        Size half = pipeline.outputSize();
        half.height /= 2;
        pipeline.press(1, 150, 20);
        pipeline.moveTo(162, 20);
        EXPECT_NEAR(moveBetween(before, pipeline.dewarp(input), half).right, 12, 2);
    }
}

// Luma of that part of a frame.
Bytes part(const Bytes& frame, Size size, Size at, Size partSize)
{
    Bytes bytes;
    for (int y = at.height; y < at.height + partSize.height; ++y) {
        const auto row = frame.begin() + y * size.width + at.width;
        bytes.insert(bytes.end(), row, row + partSize.width);
    }
    return bytes;
}

TEST(ElementMouse, OfThe360LayoutOneViewIsDraggedAndTheStripStays)
{
    const Bytes input = blocks();
    for (Mount mount : kMounts) {
        SCOPED_TRACE(mountRule(mount).name);
        // On the wall the pan is out of reach.
        Pipeline pipeline(propertiesOf(View::ptz360, mount) + " pan2=60 zoom2=60");
        pipeline.acceptOutput("video/x-raw, width=640");
        pipeline.input("NV12", kLarge);
        const Bytes before = pipeline.dewarp(input);
        const Size size = pipeline.outputSize();
        ASSERT_EQ(size.width, 640);
        const Size view{320, size.height * 6 / 10}, strip{640, size.height / 4};
        const Size second{320, 0}, below{0, size.height - strip.height};

        pipeline.press(1, 100, size.height - 20);
        pipeline.moveTo(120, size.height - 20);
        pipeline.release(1, 120, size.height - 20);
        EXPECT_EQ(pipeline.dewarp(input), before) << "dragged the strip";

        pipeline.press(1, 480, 100);
        pipeline.moveTo(492, 100);
        const Bytes after = pipeline.dewarp(input);
        EXPECT_GT(
            moveBetween(part(before, size, second, view), part(after, size, second, view), view)
                .right,
            4);
        EXPECT_EQ(part(after, size, {0, 0}, view), part(before, size, {0, 0}, view));
        EXPECT_EQ(part(after, size, below, strip), part(before, size, below, strip));
    }
}

// Where view 2 looks, as its properties tell.
Aim secondAim(Pipeline& pipeline)
{
    return {pipeline.number("pan2"), pipeline.number("tilt2"), pipeline.number("zoom2")};
}

TEST(ElementMouse, PropertiesTellWhereTheMouseLedTheView)
{
    const Bytes input = frameBytes(kInputBytes);
    std::vector<Aim> aims = test::usualAims(View::quad, Mount::ceiling);
    aims[1].pan = 30;
    Dewarper dewarper(test::setupOf(View::quad, Mount::ceiling, PixelFormat::nv12));
    dewarper.aim(aims);
    Pipeline pipeline("layout=quad pan2=30");
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(input), test::dewarped(dewarper, input));

    pipeline.scroll(300, 20, 2);
    pipeline.press(1, 300, 20);
    pipeline.moveTo(280, 20);
    pipeline.release(1, 280, 20);
    const Aim led = secondAim(pipeline);
    EXPECT_GT(led.pan, 30);
    EXPECT_EQ(led.zoom, 10);
    aims[1] = led;
    dewarper.aim(aims);
    EXPECT_EQ(pipeline.dewarp(input), test::dewarped(dewarper, input));

    for (int click : {1, 2}) {
        EXPECT_EQ(pipeline.number("zoom2"), 10) << "before click " << click;
        pipeline.press(1, 310, 30);
        pipeline.release(1, 310, 30);
    }
    EXPECT_EQ(pipeline.number("pan2"), 30);
    aims[1] = secondAim(pipeline);
    dewarper.aim(aims);
    EXPECT_EQ(pipeline.dewarp(input), test::dewarped(dewarper, input));
}

TEST(ElementMouse, ListenersHearOfIt)
{
    Pipeline pipeline("layout=quad");
    pipeline.input("NV12");
    int told = 0;
    const auto count =
        +[](GObject*, GParamSpec*, gpointer number) { ++*static_cast<int*>(number); };
    g_signal_connect(pipeline.element(), "notify::zoom2", G_CALLBACK(count), &told);
    pipeline.scroll(300, 20, 2);
    EXPECT_EQ(told, 1);
    pipeline.scroll(10, 20, 2);
    EXPECT_EQ(told, 1) << "of another view";
}

TEST(ElementMouse, ButtonsFourAndFiveAreTheWheel)
{
    Pipeline pipeline;
    pipeline.input("NV12");
    pipeline.press(4, 100, 100);
    EXPECT_EQ(pipeline.number("zoom1"), 5);
    pipeline.press(5, 100, 100);
    EXPECT_EQ(pipeline.number("zoom1"), 0);
}

TEST(ElementMouse, OtherButtonsDoNotSteer)
{
    Pipeline pipeline;
    pipeline.input("NV12");
    pipeline.press(3, 100, 100);
    pipeline.moveTo(50, 50);
    EXPECT_EQ(pipeline.number("pan1"), 0);
    pipeline.press(1, 100, 100);
    pipeline.release(3, 100, 100);
    pipeline.moveTo(50, 100);
    EXPECT_NE(pipeline.number("pan1"), 0) << "another button's release ends no drag";
}

TEST(ElementMouse, NavigationGoesOnUpstream)
{
    Pipeline pipeline;
    pipeline.input("NV12");
    pipeline.press(1, 100, 100);
    EXPECT_TRUE(pipeline.sentUpstream(GST_EVENT_NAVIGATION));
}

TEST(ElementMouse, NavigationBeforeTheFirstCapsIsSafe)
{
    Pipeline pipeline;
    pipeline.press(1, 100, 100);
    pipeline.moveTo(50, 50);
    EXPECT_EQ(pipeline.number("pan1"), 0);
}

} // namespace
} // namespace lumofe
