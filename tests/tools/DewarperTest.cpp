#include "Dewarper.h"

#include "ToolTestSupport.h"
#include "media/Pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace lumofe {
namespace {

using test::Bytes;

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

std::vector<Aim> aimsOf(View view, Mount mount)
{
    const double tilt = mount == Mount::floor ? -50 : 50;
    std::vector<Aim> aims;
    for (int i = 0; i < layoutRule(view).views; ++i)
        aims.push_back({mount == Mount::wall ? 10.0 * i : 70.0 * i + 20, tilt + 2 * i, 20.0 * i});
    return aims;
}

DewarperSetup setupOf(View view, Mount mount, PixelFormat format = PixelFormat::nv12)
{
    DewarperSetup setup = setupFor(mount, format);
    setup.view = view;
    setup.output = defaultOutputSize(view, mount, {800, 600});
    return setup;
}

TEST(Dewarper, TellsWhereItsViewsLook)
{
    for (View view : {View::single, View::quad, View::ptz360})
        for (Mount mount : kMounts) {
            SCOPED_TRACE(testing::Message()
                         << layoutRule(view).name << " on the " << mountRule(mount).name);
            const Frame420 input = toFrame420(test::scene(mount));
            Dewarper dewarper(setupOf(view, mount));
            const std::vector<Aim> asked = aimsOf(view, mount);
            dewarper.aim(asked);
            const Frame420 first = dewarper.dewarp(input);
            const std::vector<Aim> told = dewarper.aims();
            ASSERT_EQ(told.size(), asked.size());
            const ZoomRange zoom = zoomRange(view, mount);
            for (std::size_t i = 0; i < told.size(); ++i) {
                EXPECT_NEAR(told[i].pan, asked[i].pan, 0.25);
                EXPECT_NEAR(told[i].tilt, asked[i].tilt, 2);
                EXPECT_NEAR(told[i].zoom, asked[i].zoom, 100.0 / (zoom.closest - zoom.widest));
            }
            dewarper.aim(told);
            EXPECT_EQ(dewarper.dewarp(input).bytes, first.bytes);
        }
}

// Steps leave an offset that no aim gives by itself.
TEST(Dewarper, ViewsThatWereSteppedComeBackAsTheyWere)
{
    for (View view : {View::single, View::quad, View::ptz360})
        for (Mount mount : kMounts) {
            SCOPED_TRACE(testing::Message()
                         << layoutRule(view).name << " on the " << mountRule(mount).name);
            const Frame420 input = toFrame420(test::scene(mount));
            Dewarper dewarper(setupOf(view, mount));
            dewarper.aim(aimsOf(view, mount));
            const Frame420 before = dewarper.dewarp(input);
            const int last = layoutRule(view).views;
            for (const Step& step : {Step{0, 0, 4}, Step{3, 0, 0}, Step{0, 4, 0}}) {
                dewarper.step(last, step);
                dewarper.dewarp(input);
            }
            const Frame420 moved = dewarper.dewarp(input);
            EXPECT_NE(moved.bytes, before.bytes);
            EXPECT_EQ(dewarper.dewarp(input).bytes, moved.bytes) << "the step goes on";
            const std::vector<Aim> aims = dewarper.aims();

            dewarper.aim(aimsOf(view, mount));
            EXPECT_NE(dewarper.dewarp(input).bytes, moved.bytes);
            dewarper.aim(aims);
            EXPECT_EQ(dewarper.dewarp(input).bytes, moved.bytes);
        }
}

// Views 2 to 4 of the quad and view 2 of the 360 layout have negative positions there.
TEST(Dewarper, EveryPanThatIsToldComesBack)
{
    for (View view : {View::single, View::quad, View::ptz360})
        for (Mount mount : {Mount::ceiling, Mount::floor}) {
            Dewarper dewarper(setupOf(view, mount));
            std::vector<Aim> aims = aimsOf(view, mount);
            for (double pan = 0; pan < 360; pan += 0.25) {
                for (Aim& aim : aims) {
                    aim.pan = pan;
                    aim.offset = 20;
                }
                dewarper.aim(aims);
                for (const Aim& told : dewarper.aims())
                    ASSERT_EQ(told.pan, pan) << layoutRule(view).name << mountRule(mount).name;
            }
        }
}

TEST(Dewarper, FramesOfTheLibraryGiveTheSamePictures)
{
    for (View view : {View::single, View::quad, View::ptz360, View::half180})
        for (Mount mount : kMounts)
            for (PixelFormat format : {PixelFormat::nv12, PixelFormat::yv12, PixelFormat::rgb}) {
                if (fedFormat(view, format) != format) continue;
                Dewarper dewarper(setupOf(view, mount, format));
                dewarper.aim(aimsOf(view, mount));
                Image input = test::scene(mount);
                const Image picture = dewarper.dewarp(input);

                Bytes in, out(dewarper.outputBytes());
                const Frame420 planar = toFrame420(input);
                if (format == PixelFormat::nv12) {
                    in.resize(planar.bytes.size());
                    interleaveChroma(planar.bytes.data(), in.data(), planar.size);
                } else {
                    in = format == PixelFormat::yv12 ? planar.bytes : input.bytes;
                }
                ASSERT_EQ(in.size(), dewarper.inputBytes());
                dewarper.dewarp(in.data(), out.data());

                Image result(picture.size);
                Frame420 result420(picture.size);
                if (format == PixelFormat::rgb) {
                    result.bytes = out;
                    exchangeRedAndBlue(result);
                } else if (format == PixelFormat::nv12) {
                    separateChroma(out.data(), result420.bytes.data(), picture.size);
                    result = toImage(result420);
                } else {
                    result420.bytes = out;
                    result = toImage(result420);
                }
                EXPECT_EQ(result.bytes, picture.bytes)
                    << layoutRule(view).name << " on the " << mountRule(mount).name << int(format);
            }
}

TEST(Dewarper, CircleMovesLive)
{
    for (View view : {View::single, View::quad, View::ptz360, View::half180}) {
        const Frame420 input = toFrame420(test::scene(Mount::ceiling));
        DewarperSetup setup = setupOf(view, Mount::ceiling);
        setup.circle = {600, 650, 500};
        Dewarper there(setup), moved(setupOf(view, Mount::ceiling));
        for (Dewarper* dewarper : {&there, &moved}) {
            dewarper->aim(aimsOf(view, Mount::ceiling));
            dewarper->dewarp(input);
        }
        moved.setCircle(setup.circle);
        moved.aim(aimsOf(view, Mount::ceiling));
        EXPECT_EQ(moved.dewarp(input).bytes, there.dewarp(input).bytes) << layoutRule(view).name;
    }
}

TEST(Dewarper, TheFirstRowsOfThe180LayoutHaveNoLumaForColour)
{
    for (Mount mount : {Mount::ceiling, Mount::floor})
        for (PixelFormat format : {PixelFormat::nv12, PixelFormat::yv12}) {
            Dewarper dewarper(setupOf(View::half180, mount, format));
            const Frame420 picture = dewarper.dewarp(toFrame420(test::scene(mount)));
            const auto [w, h] = picture.size;
            const std::size_t row = std::size_t(w) / 2, rows = std::size_t(h) / 2;
            // Of a picture that was turned over, the last ones.
            const std::size_t first = mount == Mount::ceiling ? rows - 1 : 0;
            const std::uint8_t* colour = picture.plane(1) + first * row;
            EXPECT_TRUE(std::none_of(colour, colour + row, [](std::uint8_t c) { return c < 32; }))
                << mountRule(mount).name << int(format);
        }
}

// How far from the spot that a view was aimed at its middle shows the raw picture, pixels.
double missed(Dewarper& dewarper, int x, int y, double zoom)
{
    const auto middle = dewarper.middleOf(dewarper.aimAt(x, y, zoom));
    return middle ? std::hypot(double(middle->x) - x, double(middle->y) - y) : HUGE_VAL;
}

TEST(Dewarper, ViewsThatAreZoomedInAreAimedAtTheSpot)
{
    for (View view : {View::single, View::quad, View::ptz360})
        for (Mount mount : {Mount::ceiling, Mount::floor}) {
            Dewarper dewarper(setupOf(view, mount));
            for (const auto& [x, y] : {std::pair{760, 640}, {640, 900}, {300, 500}, {900, 200}})
                EXPECT_LT(missed(dewarper, x, y, 100), 6)
                    << layoutRule(view).name << " " << mountRule(mount).name << " " << x;
        }
    Dewarper wall(setupOf(View::single, Mount::wall));
    for (const auto& [x, y] : {std::pair{760, 640}, {640, 900}, {300, 640}})
        EXPECT_LT(missed(wall, x, y, 100), 6) << "wall " << x;
}

TEST(Dewarper, ViewsKeepTheirAimsWhenTheLibraryRefusesToTellTheirMiddle)
{
    DewarperSetup setup = setupOf(View::ptz360, Mount::ceiling);
    setup.circle.radius = kLargestRadius; // too large for the panorama
    Dewarper dewarper(setup);
    dewarper.aim(Aim{100, 40, 0});
    EXPECT_NE(test::errorOf([&] { dewarper.middleOf(Aim{10, 60, 50}); }), "");
    EXPECT_EQ(dewarper.aims().front().pan, 100);
    EXPECT_EQ(dewarper.aims().front().tilt, 40);
}

TEST(Dewarper, PanoramaTurnsLive)
{
    const Frame420 input = toFrame420(test::scene(Mount::ceiling));
    DewarperSetup setup = setupOf(View::half180, Mount::ceiling);
    Dewarper live(setup);
    live.dewarp(input);
    live.turnPanorama(45);
    setup.panoOffset = 45;
    Dewarper fresh(setup);
    EXPECT_EQ(live.dewarp(input).bytes, fresh.dewarp(input).bytes);
}

TEST(Dewarper, AViewAimedAtADirectionShowsThatSpot)
{
    // Aimed at the top of the picture and at its right, the single view sees the walls N and E.
    for (const auto& [x, y, pan] : {std::array{640, 240, 0}, std::array{1040, 640, 90}}) {
        Dewarper dewarper(setupFor(Mount::ceiling, PixelFormat::nv12));
        const Aim spot = dewarper.directionOf(x, y);
        EXPECT_NEAR(std::remainder(spot.pan + 22.5 - pan, 360), 0, 0.2);
        EXPECT_NEAR(spot.tilt, 90 * 400 / 640.0, 0.2);
        Dewarper quad(setupOf(View::quad, Mount::ceiling));
        EXPECT_NEAR(std::remainder(quad.directionOf(x, y).pan - pan, 360), 0, 0.2);
    }
}

TEST(Dewarper, TellsWhereItsPixelsComeFrom)
{
    const Frame420 input = toFrame420(test::scene(Mount::ceiling));
    for (const Mount mount : kMounts) {
        Dewarper dewarper(setupFor(mount, PixelFormat::nv12));
        dewarper.aim({10, mount == Mount::floor ? -40.0 : 40.0, 30});
        const Frame420 view = dewarper.dewarp(input);
        const std::vector<float> map = dewarper.sourceMap();
        ASSERT_EQ(map.size(), 2u * 800 * 600);
        for (const std::size_t pixel : {80150u, 240400u, 400700u}) {
            const double x = double(map[2 * pixel]), y = double(map[2 * pixel + 1]);
            const auto luma = [&](int dx, int dy) {
                return double(input.bytes[std::size_t((int(y) + dy) * 1280 + int(x) + dx)]);
            };
            const double right = x - std::floor(x), below = y - std::floor(y);
            const double upper = luma(0, 0) * (1 - right) + luma(1, 0) * right;
            const double lower = luma(0, 1) * (1 - right) + luma(1, 1) * right;
            EXPECT_NEAR(view.bytes[pixel], upper * (1 - below) + lower * below, 2);
        }
    }
}

TEST(Dewarper, TellsWhereItsPixelsComeFromOfAFrameOfTheSingleViewOnly)
{
    const Frame420 input = toFrame420(test::scene(Mount::ceiling));
    Dewarper single(setupFor(Mount::ceiling, PixelFormat::nv12));
    const auto error = [](const Dewarper& dewarper) {
        return test::errorOf([&] { (void)dewarper.sourceMap(); });
    };
    EXPECT_EQ(error(single), "no frame was dewarped yet that tells where its pixels come from");
    single.dewarp(input);
    EXPECT_EQ(error(single), "");
    single.setCircle({600, 640, 600});
    EXPECT_EQ(error(single), "no frame was dewarped yet that tells where its pixels come from");
    Dewarper quad(setupOf(View::quad, Mount::ceiling));
    quad.dewarp(input);
    EXPECT_EQ(error(quad), "only the single view tells where its pixels come from");
}

TEST(Dewarper, SixteenWorkSideBySide)
{
    const Frame420 input = toFrame420(test::scene(Mount::ceiling));
    std::vector<std::unique_ptr<Dewarper>> cameras;
    for (int i = 0; i < FE_MAX_CAMERAS; ++i) {
        cameras.push_back(std::make_unique<Dewarper>(setupOf(View::single, Mount::ceiling)));
        cameras.back()->aim({20.0 * i, 50, 0});
    }
    EXPECT_NE(test::errorOf([&] {
                  Dewarper one(setupOf(View::single, Mount::ceiling));
              }).find("all 16 camera slots"),
              std::string::npos);
    const Bytes third = cameras[3]->dewarp(input).bytes;
    EXPECT_NE(cameras[4]->dewarp(input).bytes, third);
    cameras.erase(cameras.begin(), cameras.begin() + 3);
    EXPECT_EQ(cameras[0]->dewarp(input).bytes, third);
    EXPECT_EQ(m_FEDSP[2], nullptr);
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
