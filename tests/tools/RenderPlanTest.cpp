#include "RenderPlan.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

RenderOptions optionsFor(View view, Mount mount = Mount::ceiling)
{
    RenderOptions options;
    options.view = view;
    options.mount = mount;
    return options;
}

std::string refusal(const RenderOptions& options)
{
    return errorOf([&] { checkOptions(options); });
}

constexpr Size kInput{1280, 1280};

TEST(RenderPlan, AimsAreTheAskedOnesThenTheDefaults)
{
    RenderOptions options = optionsFor(View::quad);
    options.ptz = {{10, 20, 30}, {40, 50, 60}};
    const std::vector<Aim> aims = aimsFor(options);
    ASSERT_EQ(aims.size(), 4u);
    EXPECT_EQ(aims[0].pan, 10);
    EXPECT_EQ(aims[1].tilt, 50);
    EXPECT_EQ(aims[1].zoom, 60);
    for (int number : {3, 4}) {
        EXPECT_EQ(aims[std::size_t(number) - 1].pan,
                  defaultAim(View::quad, Mount::ceiling, number).pan);
        EXPECT_EQ(aims[std::size_t(number) - 1].tilt, 80);
    }
    EXPECT_EQ(aimsFor(optionsFor(View::ptz360)).size(), 2u);
    EXPECT_EQ(aimsFor(optionsFor(View::half180)).size(), 0u);
}

TEST(RenderPlan, SingleViewMixesAskedAnglesWithDefaults)
{
    RenderOptions options = optionsFor(View::single, Mount::floor);
    options.pan = 30;
    ASSERT_EQ(aimsFor(options).size(), 1u);
    EXPECT_EQ(aimsFor(options)[0].pan, 30);
    EXPECT_EQ(aimsFor(options)[0].tilt, -70);
    options.pan.reset();
    options.ptz = {{5, -6, 7}};
    EXPECT_EQ(aimsFor(options)[0].tilt, -6);
    EXPECT_EQ(refusal(options), "");
}

TEST(RenderPlan, TooManyAimsAreRefused)
{
    const auto refusalOf = [](View view, std::size_t count) {
        RenderOptions options = optionsFor(view);
        options.ptz.assign(count, {0, 60, 0});
        return refusal(options);
    };
    EXPECT_EQ(refusalOf(View::quad, 4), "");
    EXPECT_EQ(refusalOf(View::quad, 5), "--ptz: given 5 times, but --view quad steers 4 views");
    EXPECT_EQ(refusalOf(View::ptz360, 2), "");
    EXPECT_EQ(refusalOf(View::ptz360, 3), "--ptz: given 3 times, but --view 360 steers 2 views");
    EXPECT_EQ(refusalOf(View::single, 1), "");
    EXPECT_EQ(refusalOf(View::single, 2),
              "--ptz: given 2 times, but --view single steers one view");
    EXPECT_EQ(refusalOf(View::half180, 1), "--ptz: given 1 times, but --view 180 steers no view");
}

TEST(RenderPlan, PanTiltAndZoomAreForTheSingleViewAlone)
{
    const struct {
        std::optional<double> RenderOptions::*option;
        const char* name;
    } kOptions[] = {{&RenderOptions::pan, "--pan: "},
                    {&RenderOptions::tilt, "--tilt: "},
                    {&RenderOptions::zoom, "--zoom: "}};
    for (const auto& o : kOptions) {
        RenderOptions options = optionsFor(View::single);
        options.*o.option = 10;
        EXPECT_EQ(refusal(options), "");
        options.ptz = {{0, 60, 0}};
        EXPECT_EQ(refusal(options),
                  std::string(o.name) + "cannot be combined with --ptz; give one or the other");
        options.ptz.clear();
        options.view = View::quad;
        EXPECT_EQ(refusal(options), std::string(o.name) +
                                        "steers the single view; --view quad takes --ptz "
                                        "pan,tilt,zoom once per view");
        options.view = View::half180;
        EXPECT_EQ(refusal(options), std::string(o.name) + "steers the single view; --view 180 is "
                                                          "turned with --pano-offset");
    }
}

TEST(RenderPlan, AimsOutOfRangeNameTheirView)
{
    RenderOptions options = optionsFor(View::quad);
    options.ptz = {{0, 60, 0}, {0, 91, 0}};
    EXPECT_EQ(refusal(options),
              "--ptz 2, tilt: 91 is outside 0 to 90 degrees, the range of --mount ceiling");
    options.ptz = {{0, 60, 101}};
    EXPECT_EQ(refusal(options), "--ptz 1, zoom: 101 is outside 0 to 100 percent");
}

TEST(RenderPlan, PanoOffsetIsForUnwrapsOf180)
{
    RenderOptions options = optionsFor(View::half180);
    options.panoOffset = -360;
    EXPECT_EQ(refusal(options), "");
    EXPECT_EQ(planFor(options, kInput, false).setup.panoOffset, -360);
    options.panoOffset = 361;
    EXPECT_EQ(refusal(options), "--pano-offset: 361 is outside -360 to 360 degrees");
    options.panoOffset = 10;
    for (View view : {View::single, View::quad, View::ptz360}) {
        options.view = view;
        EXPECT_EQ(refusal(options).rfind("--pano-offset: turns --view 180", 0), 0u);
    }
    options.view = View::half180;
    options.mount = Mount::wall;
    EXPECT_EQ(refusal(options).rfind("--pano-offset: turns --view 180", 0), 0u);
}

TEST(RenderPlan, SweepStartsAtThePanAndEndsAStepShort)
{
    RenderOptions options = optionsFor(View::single);
    options.pan = 300;
    options.panSweep = 360;
    options.frames = 4;
    EXPECT_EQ(refusal(options), "");
    const double expected[] = {300, 30, 120, 210};
    for (int i = 0; i < 4; ++i) {
        EXPECT_DOUBLE_EQ(sweptAim(options, i).pan, expected[i]);
        EXPECT_EQ(sweptAim(options, i).tilt, 70);
    }
    options.panSweep = -40;
    EXPECT_DOUBLE_EQ(sweptAim(options, 2).pan, 280);
}

TEST(RenderPlan, SweepsThatCannotBeAreRefused)
{
    RenderOptions options = optionsFor(View::single);
    options.panSweep = 90;
    EXPECT_EQ(refusal(options), "--pan-sweep: needs --frames N");
    options.panSweep.reset();
    options.frames = 10;
    EXPECT_EQ(refusal(options), "--frames: needs --pan-sweep DEG or --tour");
    options.panSweep = 361;
    EXPECT_EQ(refusal(options), "--pan-sweep: is outside -360 to 360 degrees");
    options.panSweep = 90;
    for (int frames : {-1, 0, 1, 10001}) {
        options.frames = frames;
        EXPECT_EQ(refusal(options),
                  "--frames: " + std::to_string(frames) + " is outside 2 to 10000");
    }
    options.frames = 10;
    options.timeFrames = 1;
    EXPECT_EQ(refusal(options), "--time: measures a still; leave out --pan-sweep");
    options.timeFrames = 0;
    options.view = View::quad;
    EXPECT_EQ(refusal(options), "--pan-sweep: turns the single view only; leave out --view");
    options = optionsFor(View::single, Mount::wall);
    options.pan = 45;
    options.frames = 2;
    options.panSweep = 90;
    EXPECT_EQ(refusal(options), "");
    options.panSweep = 92;
    EXPECT_EQ(refusal(options),
              "--pan: 91 is outside -90 to 90 degrees, the range of --mount wall");
}

TEST(RenderPlan, SizesThatDoNotComposeAreChangedWithANote)
{
    RenderOptions options = optionsFor(View::quad);
    options.size = Size{643, 481};
    RenderPlan plan = planFor(options, kInput, false);
    EXPECT_EQ(plan.setup.output, (Size{640, 480}));
    ASSERT_EQ(plan.notes.size(), 1u);
    EXPECT_EQ(plan.notes[0], "--size: --view quad leaves gaps at 643x481 from this input; using "
                             "640x480 (--exact-size insists)");
    options.size = Size{640, 480};
    EXPECT_TRUE(planFor(options, kInput, false).notes.empty());
    options.size = Size{646, 482};
    options.exactSize = true;
    plan = planFor(options, kInput, false);
    EXPECT_EQ(plan.setup.output, (Size{646, 482}));
    EXPECT_TRUE(plan.notes.empty());
}

TEST(RenderPlan, GarbledFormatsAreReplacedWithANote)
{
    RenderOptions options = optionsFor(View::ptz360);
    options.format = PixelFormat::yv12;
    RenderPlan plan = planFor(options, kInput, false);
    EXPECT_EQ(plan.setup.format, PixelFormat::nv12);
    ASSERT_EQ(plan.notes.size(), 1u);
    EXPECT_EQ(plan.notes[0],
              "--format: --view 360 garbles YV12; feeding NV12 (--exact-format insists)");
    options.exactFormat = true;
    plan = planFor(options, kInput, false);
    EXPECT_EQ(plan.setup.format, PixelFormat::yv12);
    EXPECT_TRUE(plan.notes.empty());
    options = optionsFor(View::quad);
    options.format = PixelFormat::rgb;
    EXPECT_EQ(planFor(options, kInput, false).setup.format, PixelFormat::nv12);
}

TEST(RenderPlan, CutOffPanoramasAreNoted)
{
    for (View view : {View::ptz360, View::half180}) {
        EXPECT_TRUE(planFor(optionsFor(view), {640, 480}, false).notes.empty());
        const RenderPlan plan = planFor(optionsFor(view), {400, 400}, false);
        ASSERT_EQ(plan.notes.size(), 1u);
        EXPECT_NE(plan.notes[0].find("cuts off the outer part"), std::string::npos);
        EXPECT_TRUE(planFor(optionsFor(view, Mount::wall), {400, 400}, false).notes.empty());
    }
    EXPECT_TRUE(planFor(optionsFor(View::quad), {400, 400}, false).notes.empty());
}

TEST(RenderPlan, CirclesOutsideTheInputAndOddSizesAreRefused)
{
    RenderOptions options = optionsFor(View::single);
    options.circle = Circle{1280, 10, 100};
    EXPECT_EQ(errorOf([&] { planFor(options, kInput, false); }),
              "--circle: the centre is outside the 1280x1280 input; give it in input pixels");
    options.circle.reset();
    options.size = Size{401, 300};
    EXPECT_NE(errorOf([&] { planFor(options, kInput, false); }), "");
    options.format = PixelFormat::rgb;
    EXPECT_EQ(errorOf([&] { planFor(options, kInput, false); }), "");
    EXPECT_NE(errorOf([&] { planFor(options, kInput, true); }), "");
    options.view = View::quad;
    EXPECT_EQ(errorOf([&] { planFor(options, kInput, false); }), "");
    options.exactSize = true;
    EXPECT_NE(errorOf([&] { planFor(options, kInput, false); }), "");
}

} // namespace
} // namespace lumofe
