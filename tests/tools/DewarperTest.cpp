#include "Dewarper.h"

#include "ToolTestSupport.h"
#include "media/Pixels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

constexpr Mount kMounts[] = {Mount::ceiling, Mount::wall, Mount::floor};

DewarperSetup setupFor(Mount mount, PixelFormat format)
{
    DewarperSetup setup;
    setup.input = {1280, 1280};
    setup.output = {800, 600};
    setup.circle = {640, 640, 640};
    setup.mount = mount;
    setup.format = format;
    return setup;
}

Image render(const DewarperSetup& setup, const Image& input, const Aim& aim)
{
    Dewarper dewarper(setup);
    dewarper.aim(aim);
    return dewarper.dewarp(input);
}

Image render(Mount mount, PixelFormat format, const Aim& aim)
{
    return render(setupFor(mount, format), test::scene(mount), aim);
}

// The input with a border of noise on the left and at the top.
Image padded(const Image& image, int left, int top)
{
    Image out({image.size.width + left, image.size.height + top});
    unsigned state = 1;
    for (std::uint8_t& byte : out.bytes)
        byte = std::uint8_t((state = state * 1664525u + 1013904223u) >> 24);
    for (int y = 0; y < image.size.height; ++y)
        std::copy_n(image.pixel(0, y), 3 * image.size.width, out.pixel(left, y + top));
    return out;
}

FE_ViewPosition positionAt(Mount mount, const Aim& aim)
{
    Dewarper dewarper(setupFor(mount, PixelFormat::nv12));
    dewarper.aim(aim);
    FE_CurPosParams position{};
    IFishEye().LmFEGetPosition(0, &position);
    return position.view[0];
}

TEST(Dewarper, FormatsShowTheSamePicture)
{
    for (Mount mount : kMounts) {
        const Aim aim{30, mount == Mount::floor ? -60.0 : mount == Mount::wall ? 10.0 : 60.0, 20};
        const Image nv12 = render(mount, PixelFormat::nv12, aim);
        EXPECT_EQ(nv12.bytes, render(mount, PixelFormat::yv12, aim).bytes);
        // The chroma is coarser in 4:2:0: measured 37.6, 38.8 and 41.9 dB.
        EXPECT_GT(test::psnr(nv12, render(mount, PixelFormat::rgb, aim)), 35)
            << mountRule(mount).name;
    }
}

TEST(Dewarper, FramesAndPicturesAgree)
{
    const Image& input = test::scene(Mount::ceiling);
    Dewarper dewarper(setupFor(Mount::ceiling, PixelFormat::nv12));
    dewarper.aim({0, 60, 0});
    EXPECT_EQ(toImage(dewarper.dewarp(toFrame420(input))).bytes, dewarper.dewarp(input).bytes);
}

// The same circle at another place in a larger input gives the same view.
TEST(Dewarper, CircleIsGivenAsXThenY)
{
    const Image& scene = test::scene(Mount::ceiling);
    const Aim aim{40, 70, 0};
    for (PixelFormat format : {PixelFormat::nv12, PixelFormat::rgb}) {
        const Image plain = render(setupFor(Mount::ceiling, format), scene, aim);
        for (Size pad : {Size{320, 0}, Size{0, 200}}) {
            DewarperSetup setup = setupFor(Mount::ceiling, format);
            setup.input = {1280 + pad.width, 1280 + pad.height};
            setup.circle = {640 + pad.width, 640 + pad.height, 640};
            const Image moved = render(setup, padded(scene, pad.width, pad.height), aim);
            // Measured: at most 1 apart, in fewer than one byte of 2000.
            std::size_t different = 0;
            for (std::size_t i = 0; i < plain.bytes.size(); ++i) {
                const int by = std::abs(plain.bytes[i] - moved.bytes[i]);
                ASSERT_LE(by, 1);
                different += by != 0;
            }
            EXPECT_LT(different, plain.bytes.size() / 500);
        }
    }
}

TEST(Dewarper, PanTakesNegativeDegreesAsTheirFullTurnComplement)
{
    EXPECT_EQ(positionAt(Mount::ceiling, {-22.5, 45, 0}).nPan,
              positionAt(Mount::ceiling, {337.5, 45, 0}).nPan);
    EXPECT_EQ(positionAt(Mount::floor, {-90, -45, 0}).nPan, 1080);
    EXPECT_EQ(positionAt(Mount::wall, {-45, 0, 0}).nPan, -180);
}

TEST(Dewarper, WallZoomCoversItsWholeRangeEvenly)
{
    EXPECT_EQ(positionAt(Mount::wall, {0, 0, 0}).nZoom, 10);
    EXPECT_EQ(positionAt(Mount::wall, {0, 0, 50}).nZoom, 40);
    EXPECT_EQ(positionAt(Mount::wall, {0, 0, 100}).nZoom, 70);
    EXPECT_EQ(positionAt(Mount::ceiling, {0, 0, 50}).nZoom, 44);
    EXPECT_EQ(positionAt(Mount::floor, {0, 0, 100}).nZoom, 88);
}

TEST(Dewarper, RenderingAgainChangesNothing)
{
    Dewarper dewarper(setupFor(Mount::wall, PixelFormat::rgb));
    dewarper.aim({10, 10, 10});
    const Image first = dewarper.dewarp(test::scene(Mount::wall));
    EXPECT_GT(dewarper.renderAgain(), 0);
    EXPECT_EQ(dewarper.dewarp(test::scene(Mount::wall)).bytes, first.bytes);
}

TEST(Dewarper, AimHoldsForFurtherFramesUntilTheNextAim)
{
    const Image& scene = test::scene(Mount::ceiling);
    const Image at0 = render(Mount::ceiling, PixelFormat::nv12, {0, 30, 0});
    const Image at90 = render(Mount::ceiling, PixelFormat::nv12, {90, 30, 0});
    EXPECT_LT(test::psnr(at0, at90), 20);
    Dewarper dewarper(setupFor(Mount::ceiling, PixelFormat::nv12));
    dewarper.aim({0, 30, 0});
    EXPECT_EQ(dewarper.dewarp(scene).bytes, at0.bytes);
    EXPECT_EQ(dewarper.dewarp(scene).bytes, at0.bytes);
    dewarper.aim({90, 30, 0});
    EXPECT_EQ(dewarper.dewarp(scene).bytes, at90.bytes);
}

TEST(Dewarper, RefusedSizesBecomeErrors)
{
    DewarperSetup setup = setupFor(Mount::ceiling, PixelFormat::nv12);
    setup.input = {4098, 240};
    EXPECT_NE(test::errorOf([&] { Dewarper dewarper(setup); }).find("the library refused"),
              std::string::npos);
    EXPECT_EQ(m_FEDSP[0], nullptr);
}

TEST(Dewarper, ReleasesItsSlot)
{
    {
        Dewarper dewarper(setupFor(Mount::ceiling, PixelFormat::nv12));
        EXPECT_NE(m_FEDSP[0], nullptr);
    }
    EXPECT_EQ(m_FEDSP[0], nullptr);
}

} // namespace
} // namespace lumofe
