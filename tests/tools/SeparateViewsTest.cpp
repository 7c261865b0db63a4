#include "SeparateViews.h"

#include "ToolTestSupport.h"
#include "media/Drawing.h"
#include "media/Pixels.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

RenderOptions separate(View view, const std::string& output = "dir.a/out.mp4")
{
    RenderOptions options;
    options.view = view;
    options.output = output;
    options.separate = true;
    return options;
}

Image rendered(const RenderOptions& options, const Image& input)
{
    Dewarper dewarper(planFor(options, input.size, false).setup);
    dewarper.aim(aimsFor(options));
    return dewarper.dewarp(input);
}

Image cut(const Image& image, int x, int y, Size size)
{
    Image part(size);
    paste(part, image, -x, -y);
    return part;
}

TEST(SeparateViews, TogetherNothingChanges)
{
    RenderOptions options = separate(View::quad);
    options.separate = false;
    const auto views = viewsOf(options);
    ASSERT_EQ(views.size(), 1u);
    EXPECT_EQ(views[0].view, View::quad);
    EXPECT_EQ(views[0].output, options.output);
}

TEST(SeparateViews, EachIsASingleViewWithAFileOfItsOwn)
{
    for (View view : {View::quad, View::ptz360}) {
        const auto views = viewsOf(separate(view));
        ASSERT_EQ(int(views.size()), layoutRule(view).views);
        for (std::size_t i = 0; i < views.size(); ++i) {
            EXPECT_EQ(views[i].view, View::single);
            EXPECT_EQ(views[i].output, "dir.a/out-" + std::to_string(i + 1) + ".mp4");
            EXPECT_NO_THROW(checkOptions(views[i]));
        }
    }
    EXPECT_EQ(viewsOf(separate(View::quad, "dir.a/out")).front().output, "dir.a/out-1");
}

TEST(SeparateViews, AimsStayInTheRangeOfTheMount)
{
    for (Mount mount : {Mount::ceiling, Mount::floor, Mount::wall}) {
        RenderOptions options = separate(View::quad);
        options.mount = mount;
        const MountRule& rule = mountRule(mount);
        options.ptz = {{rule.panMin, rule.tiltMin, 0}, {rule.panMax, rule.tiltMax, 100}};
        for (const RenderOptions& view : viewsOf(options))
            EXPECT_NO_THROW(checkOptions(view));
    }
}

TEST(SeparateViews, AimsOfTheWallAreTheSame)
{
    RenderOptions options = separate(View::quad);
    options.mount = Mount::wall;
    options.ptz = {{-30, 20, 15}};
    const auto views = viewsOf(options);
    for (std::size_t i = 0; i < views.size(); ++i) {
        const Aim together = aimsFor(options)[i], single = aimsFor(views[i]).front();
        EXPECT_EQ(single.pan, together.pan);
        EXPECT_EQ(single.tilt, together.tilt);
        EXPECT_EQ(single.zoom, together.zoom);
    }
}

// The four walls have different colours: a view is most like the quadrant that it stands for.
TEST(SeparateViews, ViewNumberNShowsWhatTheLayoutsDoes)
{
    for (Mount mount : {Mount::ceiling, Mount::floor}) {
        const Image& scene = test::scene(mount);
        RenderOptions options = separate(View::quad);
        options.mount = mount;
        options.size = Size{1280, 960};
        const Image quad = rendered(options, scene);
        std::vector<Image> quadrants;
        for (int number = 0; number < 4; ++number)
            quadrants.push_back(
                scaled(cut(quad, number % 2 * 640, number / 2 * 480, {640, 480}), {16, 12}));
        const auto views = viewsOf(options);
        for (std::size_t n = 0; n < 4; ++n) {
            const Image view = scaled(rendered(views[n], scene), {16, 12});
            for (std::size_t other = 0; other < 4; ++other)
                if (other != n) {
                    EXPECT_GT(test::psnr(view, quadrants[n]),
                              test::psnr(view, quadrants[other]) + 1)
                        << mountRule(mount).panMax << " " << n << " " << other;
                }
        }
    }
}

TEST(SeparateViews, ATourLeadsEachViewOnItsOwnWay)
{
    CameraFile camera;
    camera.input = {320, 320};
    camera.presets = {{"a", View::ptz360, {{{30, 60, 5, 7}, {100, 50, 0}}, 0}},
                      {"b", View::ptz360, {{{40, 60, 5}, {10, 50, 0}}, 0}},
                      {"unused", View::half180, {{}, 30}}};
    camera.tour = {{{"a", 1, 0}, {"b", 1, 0}}, false};
    RenderOptions options = separate(View::ptz360);
    options.camera = camera;
    options.tour = true;
    const auto views = viewsOf(options);
    ASSERT_EQ(views.size(), 2u);
    EXPECT_EQ(positionFor(views[0], 0, 1).views, std::vector<Aim>{(Aim{7.5, 60, 5})});
    EXPECT_EQ(positionFor(views[0], 1, 1).views, std::vector<Aim>{(Aim{17.5, 60, 5})});
    EXPECT_EQ(positionFor(views[1], 0, 1).views, std::vector<Aim>{(Aim{77.5, 50, 0})});
    EXPECT_EQ(positionFor(views[1], 1, 1).views, std::vector<Aim>{(Aim{-12.5, 50, 0})});
}

TEST(SeparateViews, NeedSeveralViewsAndFiles)
{
    for (View view : {View::single, View::half180})
        EXPECT_NE(errorOf([&] { viewsOf(separate(view)); }).find("add --view quad or 360"),
                  std::string::npos);
    EXPECT_NE(errorOf([&] { viewsOf(separate(View::quad, "-")); }).find("several files"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
