#include "Session.h"

#include "LibraryOutput.h"
#include "ViewerRun.h"
#include "camera/NearestView.h"
#include "media/Pixels.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

struct SessionTest : testing::Test {
    const LibraryOutput silence{LibraryOutput::Target::discard};
    const ScratchFolder folder;
    RenderOptions options;
    std::vector<std::uint8_t> output;

    Session open(View view = View::single, Mount mount = Mount::ceiling)
    {
        options.view = view;
        options.mount = mount;
        return Session(options, smallScene().size);
    }

    // As it is written by `lumofe camera init`.
    void useCameraFile()
    {
        CameraFile camera;
        camera.input = smallScene().size;
        camera.circle = centredCircle(camera.input);
        options.cameraPath = folder.file("hall.json");
        writeCameraFile(options.cameraPath, camera);
        options = withCamera(options);
    }

    Image frame(Session& session)
    {
        const Image& input = smallScene(session.setup().mount);
        const Frame420 planar = toFrame420(input);
        std::vector<std::uint8_t> nv12(planar.bytes.size());
        interleaveChroma(planar.bytes.data(), nv12.data(), planar.size);
        output.resize(session.outputBytes());
        session.dewarp(nv12.data(), output.data());
        Frame420 result(session.setup().output);
        separateChroma(output.data(), result.bytes.data(), result.size);
        return toImage(result);
    }

    // Frames until nothing waits any more.
    void settle(Session& session)
    {
        do
            frame(session);
        while (session.changed());
    }
};

} // namespace

TEST_F(SessionTest, ShowsWhatTheDewarperMakes)
{
    for (View view : {View::single, View::quad, View::ptz360, View::half180}) {
        Session session = open(view);
        EXPECT_TRUE(session.changed());
        const Image seen = frame(session);
        EXPECT_EQ(seen.bytes, dewarped({.view = view}).bytes) << layoutRule(view).name;
        EXPECT_FALSE(session.changed());
    }
}

TEST_F(SessionTest, BeginsWhereTheOptionsLook)
{
    options.ptz = {{90, 60, 25}};
    Session session = open(View::quad);
    EXPECT_NEAR(session.position().views[0].pan, 90, 0.25);
    EXPECT_NEAR(session.position().views[0].tilt, 60, 1);
    EXPECT_NEAR(session.position().views[0].zoom, 25, 1);
    EXPECT_NEAR(session.position().views[1].pan, 90, 0.25);
    session.showLayout(View::ptz360); // steers fewer views
    EXPECT_NEAR(session.position().views[0].pan, 0, 0.25);
}

TEST_F(SessionTest, LayoutsAndMountingsComeBackAsTheyWereLeft)
{
    Session session = open(View::quad);
    session.drag(2, 0.3, 0);
    settle(session);
    const Position left = session.position();
    session.showLayout(View::single);
    session.nextMount();
    EXPECT_EQ(session.setup().mount, Mount::wall);
    session.nextMount();
    EXPECT_EQ(session.setup().mount, Mount::floor);
    session.nextMount();
    EXPECT_EQ(session.setup().mount, Mount::ceiling);
    EXPECT_EQ(session.setup().view, View::single);
    session.showLayout(View::quad);
    EXPECT_EQ(session.position(), left);
}

TEST_F(SessionTest, ADragMovesOneViewWithThePointer)
{
    for (Mount mount : {Mount::ceiling, Mount::floor, Mount::wall}) {
        Session session = open(View::quad, mount);
        session.zoom(3, 5);
        settle(session);
        const Position before = session.position();
        session.drag(3, -0.2, 0); // the picture moves to the left
        EXPECT_TRUE(session.changed());
        settle(session);
        Position after = session.position();
        const double turned = after.views[2].pan - before.views[2].pan;
        const double right = mount == Mount::floor ? -turned : turned;
        EXPECT_GT(right > 180    ? right - 360
                  : right < -180 ? right + 360
                                 : right,
                  1)
            << mountRule(mount).name;
        after.views[2] = before.views[2];
        EXPECT_EQ(after, before) << mountRule(mount).name;
    }
}

TEST_F(SessionTest, ADragUpTiltsInwards)
{
    Session session = open();
    settle(session);
    const double before = session.position().views[0].tilt;
    session.drag(1, 0.01, -0.2);
    settle(session);
    EXPECT_LT(session.position().views[0].tilt, before);
}

TEST_F(SessionTest, TheWheelZoomsWithinTheRange)
{
    for (View view : {View::single, View::quad}) {
        Session session = open(view);
        session.zoom(1, 1);
        settle(session);
        EXPECT_NEAR(session.position().views[0].zoom, 100.0 / 11, 1e-9);
        session.zoom(1, 100);
        settle(session);
        EXPECT_EQ(session.position().views[0].zoom, 100);
        session.zoom(1, -100);
        settle(session);
        EXPECT_EQ(session.position().views[0].zoom, 0);
    }
}

TEST_F(SessionTest, ResetPutsOneViewBack)
{
    Session session = open(View::quad);
    settle(session);
    const Position usual = session.position();
    session.drag(1, 0.5, 0.5);
    session.drag(2, 0.5, 0);
    settle(session);
    const Position moved = session.position();
    session.reset(1);
    settle(session);
    EXPECT_NEAR(session.position().views[0].pan, usual.views[0].pan, 1e-9);
    EXPECT_NEAR(session.position().views[0].tilt, usual.views[0].tilt, 1e-9);
    EXPECT_EQ(session.position().views[1], moved.views[1]);
}

TEST_F(SessionTest, ADragTurnsThePanoramaAndResetPutsItBack)
{
    Session session = open(View::half180);
    settle(session);
    session.drag(1, 0.25, 0.5);
    EXPECT_TRUE(session.changed());
    EXPECT_EQ(session.setup().panoOffset, -45);
    session.drag(1, 0.001, 0);
    session.drag(1, 0.002, 0); // fractions of a degree add up
    EXPECT_EQ(session.setup().panoOffset, -46);
    session.reset(1);
    EXPECT_EQ(session.setup().panoOffset, 0);
}

// The panorama moves by as much as the pointer.
TEST_F(SessionTest, ThePanoramaFollowsThePointer)
{
    for (Mount mount : {Mount::ceiling, Mount::floor}) {
        Session session = open(View::half180, mount);
        const Image before = frame(session);
        session.drag(1, 0.1, 0);
        const Image after = frame(session);
        const Size size = before.size;
        const int by = size.width / 10;
        double error[2] = {};
        for (int y = size.height / 8; y < size.height * 3 / 8; ++y)
            for (int x = size.width / 4; x < size.width * 3 / 4; ++x) {
                error[0] += std::abs(*after.pixel(x + by, y) - *before.pixel(x, y));
                error[1] += std::abs(*after.pixel(x - by, y) - *before.pixel(x, y));
            }
        EXPECT_LT(4 * error[0], error[1]) << mountRule(mount).name;
    }
}

TEST_F(SessionTest, TheWalls180HasNothingToSteer)
{
    Session session = open(View::half180, Mount::wall);
    settle(session);
    session.drag(1, 0.5, 0.5);
    session.zoom(1, 1);
    EXPECT_FALSE(session.changed());
}

TEST_F(SessionTest, AimsAViewAtASpotAndKeepsItsZoom)
{
    Session session = open(View::quad);
    session.zoom(3, 2);
    settle(session);
    const double zoom = session.position().views[2].zoom;
    session.aimAt(3, {520, 320}); // right of the middle
    settle(session);
    EXPECT_NEAR(session.position().views[2].pan, 90, 1);
    EXPECT_EQ(session.position().views[2].zoom, zoom);
}

TEST_F(SessionTest, RefusesSpotsThatNoViewShows)
{
    Session session = open(View::quad);
    settle(session);
    EXPECT_NE(errorOf([&] {
                  session.aimAt(1, {5, 5});
              }).find("outside of the fisheye circle"),
              std::string::npos);
    EXPECT_FALSE(session.changed());
    session.showLayout(View::half180);
    EXPECT_NE(errorOf([&] {
                  session.aimAt(1, {320, 320});
              }).find("no view to aim"),
              std::string::npos);
}

TEST_F(SessionTest, MovesTheCircleAndKeepsThePosition)
{
    Session session = open(View::half180);
    session.drag(1, 0.5, 0);
    settle(session);
    const Circle circle{330, 310, 280};
    session.keepCircle(circle);
    EXPECT_TRUE(session.changed());
    Position turned;
    turned.panoOffset = -90;
    const Shown expected{.view = View::half180, .position = turned, .circle = circle};
    EXPECT_GT(psnr(frame(session), dewarped(expected)), 45);
    session.showLayout(View::quad); // holds for all layouts
    EXPECT_EQ(session.setup().circle.radius, 280);
}

TEST_F(SessionTest, WritesTheCircleToTheCamerasFile)
{
    useCameraFile();
    Session session = open();
    session.keepCircle({330, 310, 280});
    EXPECT_EQ(readCameraFile(options.cameraPath).circle.x, 330);
}

TEST_F(SessionTest, PresetsNeedTheCamerasFile)
{
    Session session = open();
    EXPECT_NE(errorOf([&] { session.savePreset(); }).find("--camera FILE"), std::string::npos);
}

TEST_F(SessionTest, SavesPresetsAndGoesBackToThem)
{
    useCameraFile();
    Session session = open(View::quad);
    session.drag(2, 0.3, 0.2);
    settle(session);
    const Image saved = frame(session);
    EXPECT_EQ(session.savePreset(), "view 1");
    EXPECT_EQ(readCameraFile(options.cameraPath).presets.at(0).position, session.position());
    session.drag(2, 0.3, 0.2);
    settle(session);
    EXPECT_EQ(session.savePreset(), "view 2");
    ASSERT_EQ(session.presets().size(), 2u);

    session.recallPreset(0);
    EXPECT_EQ(frame(session).bytes, saved.bytes);
    session.showLayout(View::single);
    session.nextMount();
    EXPECT_NE(errorOf([&] { session.savePreset(); }).find("for the ceiling"), std::string::npos);
    session.recallPreset(0);
    EXPECT_EQ(session.setup().mount, Mount::ceiling);
    EXPECT_EQ(frame(session).bytes, saved.bytes);
}

TEST_F(SessionTest, WhatOthersWroteIntoTheFileStays)
{
    useCameraFile();
    Session session = open();
    CameraFile other = readCameraFile(options.cameraPath);
    other.presets.push_back({"view 1", View::single, {{{10, 50, 0}}, 0}});
    writeCameraFile(options.cameraPath, other);
    EXPECT_EQ(session.savePreset(), "view 2");
    EXPECT_EQ(readCameraFile(options.cameraPath).presets.size(), 2u);
}

TEST_F(SessionTest, TellsWhatMayBeMissing)
{
    options.circle = Circle{320, 320, 400};
    Session session = open();
    EXPECT_TRUE(session.notes().empty());
    session.showLayout(View::half180);
    EXPECT_FALSE(session.notes().empty());
}
