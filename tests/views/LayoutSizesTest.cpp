#include "views/LayoutSizes.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

void expectSize(const Size& size, int w, int h)
{
    EXPECT_EQ(size.w, w);
    EXPECT_EQ(size.h, h);
}

void expectStrip(const Strip& strip, int w, int h, int top)
{
    EXPECT_EQ(strip.w, w);
    EXPECT_EQ(strip.h, h);
    EXPECT_EQ(strip.top, top);
}

} // namespace

TEST(LayoutSizes, QuadViews)
{
    expectSize(quadViewSize({2560, 1920, 1920, 1080}, kQuad12Fraction), 960, 540);
    expectSize(quadViewSize({2560, 1920, 1280, 720}, kQuad34Fraction), 640, 360);
    expectSize(quadViewSize({2560, 1920, 1366, 767}, kQuad12Fraction), 680, 384);
    // Screens larger than the input, in one direction only too.
    expectSize(quadViewSize({1920, 1080, 2560, 1440}, kQuad12Fraction), 960, 540);
    expectSize(quadViewSize({1920, 1080, 2560, 1440}, kQuad34Fraction), 480, 270);
    expectSize(quadViewSize({1280, 960, 800, 961}, kQuad34Fraction), 320, 240);
}

TEST(LayoutSizes, ViewsOfThe360Layout)
{
    expectSize(ptz360ViewSize({2560, 1920, 1280, 720}), 640, 468);
    expectSize(ptz360ViewSize({1280, 1024, 800, 600}), 400, 388);
    expectSize(ptz360ViewSize({2560, 1920, 1920, 1080}), 960, 700);
    expectSize(ptz360ViewSize({2560, 1920, 1364, 768}), 684, 496);  // to the nearest multiple of 4
    expectSize(ptz360ViewSize({1920, 1080, 2560, 1440}), 960, 702); // not rounded to one
}

TEST(LayoutSizes, Strip)
{
    expectStrip(stripSize({1920, 1920, 1280, 720}), 1280, 252, 468);
    expectStrip(stripSize({1280, 1024, 800, 600}), 800, 212, 388);
    expectStrip(stripSize({1280, 1024, 2048, 1024}), 1280, 358, 666);
    // Kept: a screen that is wider than the input is high counts as larger than the input.
    expectStrip(stripSize({1920, 1080, 1280, 720}), 1920, 720 - 702, 702);
    expectStrip(stripSize({1280, 1280, 1366, 768}), 1280, 768 - 832, 832);
    EXPECT_EQ(stripTop(720), 468);
    EXPECT_EQ(stripTop(600), 388);
    EXPECT_EQ(stripTop(1080), 700);
}

TEST(LayoutSizes, HalvesOfThe180Layout)
{
    expectSize(half180Size({1920, 1920, 1280, 720}), 1280, 360);
    expectSize(half180Size({1920, 1920, 1280, 721}), 1280, 360);
    expectSize(half180Size({1280, 960, 1366, 768}), 1280, 480);
    expectSize(half180Size({1280, 961, 800, 962}), 1280, 480);
}
