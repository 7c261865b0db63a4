// Renders with a camera's file: what it says where the options are silent.
#include "RenderCommand.h"
#include "ToolTestSupport.h"
#include "VideoTestSupport.h"
#include "media/Pixels.h"
#include "media/Y4m.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

constexpr Aim kDoor{90, 60, 10, 40}, kDesk{200, 30, 20};

class RenderCamera : public testing::Test {
protected:
    RenderCamera()
    {
        CameraFile camera;
        camera.input = {320, 320};
        camera.circle = {150, 170, 140};
        camera.layout = View::quad;
        camera.presets = {{"door", View::single, {{kDoor}, 0}},
                          {"desk", View::single, {{kDesk}, 0}},
                          {"round", View::half180, {{}, 30}}};
        camera.tour.stops = {{"door", 0.2, 0.4}, {"desk", 0, 0.6}};
        write(camera);
    }

    void write(const CameraFile& camera) { writeCameraFile(path(), camera); }
    std::string path() const { return folder_.file("hall.json"); }

    RenderOptions options(const std::string& preset = {}) const
    {
        RenderOptions options;
        options.cameraPath = path();
        options.preset = preset;
        return options;
    }

    static std::string refusal(const RenderOptions& options)
    {
        return errorOf([&] { checkOptions(withCamera(options)); });
    }

    test::ScratchFolder folder_;
};

TEST_F(RenderCamera, TheFileHoldsWhereOptionsAreSilent)
{
    const RenderOptions plain = withCamera(options());
    EXPECT_EQ(plain.view, View::quad);
    const RenderPlan plan = planFor(plain, {320, 320}, false);
    EXPECT_EQ(plan.setup.circle.x, 150);
    EXPECT_EQ(plan.setup.circle.y, 170);
    EXPECT_EQ(plan.setup.circle.radius, 140);
    EXPECT_EQ(aimsFor(plain)[1], defaultAim(View::quad, Mount::ceiling, 2));

    RenderOptions given = options();
    given.view = View::single;
    given.mount = Mount::floor;
    given.viewGiven = given.mountGiven = true;
    given.circle = Circle{100, 110, 90};
    given = withCamera(given);
    EXPECT_EQ(given.view, View::single);
    EXPECT_EQ(given.mount, Mount::floor);
    EXPECT_EQ(planFor(given, {320, 320}, false).setup.circle.x, 100);
}

TEST_F(RenderCamera, PresetsAimTheViewsUnlessOptionsDo)
{
    RenderOptions door = withCamera(options("door"));
    EXPECT_EQ(door.view, View::single);
    EXPECT_EQ(aimsFor(door), std::vector<Aim>{kDoor});
    door.pan = 5;
    EXPECT_EQ(aimsFor(door)[0], (Aim{5, 60, 10, 40}));
    door.tilt = 7;
    EXPECT_EQ(aimsFor(door)[0], (Aim{5, 7, 10}));
    door = withCamera(options("door"));
    door.ptz = {{1, 2, 3}};
    EXPECT_EQ(aimsFor(door)[0], (Aim{1, 2, 3}));

    RenderOptions round = withCamera(options("round"));
    EXPECT_EQ(planFor(round, {320, 320}, false).setup.panoOffset, 30);
    round.panoOffset = -10;
    EXPECT_EQ(planFor(round, {320, 320}, false).setup.panoOffset, -10);
}

TEST_F(RenderCamera, WhatDoesNotGoTogetherIsRefused)
{
    RenderOptions bad = options("disk");
    EXPECT_EQ(refusal(bad),
              path() + ": there is no preset 'disk'; choose one of door, desk, round");
    bad = options("door");
    bad.viewGiven = true;
    bad.view = View::quad;
    EXPECT_EQ(refusal(bad), "--view: the preset is for the layout single; leave out --view");
    bad = options("door");
    bad.mountGiven = true;
    bad.mount = Mount::wall;
    EXPECT_EQ(refusal(bad), "--mount: the preset is for the ceiling; leave out --mount");
    bad = options("door");
    bad.tour = true;
    EXPECT_EQ(refusal(bad), "--tour: steers by itself; leave out --preset");
    bad.preset.clear();
    bad.tilt = 3;
    EXPECT_EQ(refusal(bad), "--tour: steers by itself; leave out --tilt");
    bad.tilt.reset();
    bad.timeFrames = 5;
    EXPECT_EQ(refusal(bad), "--time: measures a still; leave out --tour");
    bad.timeFrames = 0;
    bad.cameraPath.clear();
    EXPECT_EQ(refusal(bad), "--tour: needs the camera's file, give it with --camera");
    EXPECT_EQ(errorOf([&] {
                  planFor(withCamera(options()), {640, 480}, false);
              }),
              path() + ": is for an input of 320x320, but this one is 640x480; scale the input, or "
                       "make a file for its size");
    CameraFile camera = readCameraFile(path());
    camera.tour.stops.clear();
    write(camera);
    bad = options();
    bad.tour = true;
    EXPECT_EQ(refusal(bad), path() + ": has no tour; write one, see docs/camera-file.md");
}

TEST_F(RenderCamera, ATourHasTheFramesOfOneRoundUnlessTold)
{
    RenderOptions tour = options();
    tour.tour = true;
    tour = withCamera(tour);
    EXPECT_EQ(tour.view, View::single);
    EXPECT_EQ(movingFrames(tour, 25), 30);
    EXPECT_EQ(movingFrames(tour, 12.5), 15);
    EXPECT_EQ(positionFor(tour, 0, 25).views[0], kDoor);
    EXPECT_EQ(positionFor(tour, 15, 25).views[0], kDesk);
    EXPECT_EQ(positionFor(tour, 30, 25).views[0], kDoor);
    tour.frames = 7;
    EXPECT_EQ(movingFrames(tour, 25), 7);
    EXPECT_TRUE(moves(tour));
    EXPECT_FALSE(moves(withCamera(options("door"))));
    tour.frames.reset();
    tour.camera->tour.stops[0].stay = 86400;
    EXPECT_NE(errorOf([&] { movingFrames(tour, 25); }).find("--frames"), std::string::npos);
}

// The frames of a Y4M file.
std::vector<Frame420> framesOf(const std::string& path)
{
    InputStream input(path);
    Y4mReader reader(input);
    std::vector<Frame420> frames;
    Frame420 frame(reader.header().size);
    while (reader.read(frame))
        frames.push_back(frame);
    return frames;
}

// A video of the picture.
std::string videoOf(const Image& picture, int frames, const std::string& tags,
                    const std::string& path)
{
    OutputFile output(path, -1);
    Y4mWriter writer(output, {picture.size, tags});
    for (int i = 0; i < frames; ++i)
        writer.write(toFrame420(picture));
    output.commit();
    return path;
}

// What a preset or the tour makes of the input.
std::vector<Frame420> rendered(RenderOptions options, const std::string& input,
                               const std::string& output)
{
    options.tour = options.preset.empty();
    options.input = input;
    options.output = output;
    options.force = true;
    runRender(options);
    return framesOf(output);
}

TEST_F(RenderCamera, AStillsTourBeginsAndStaysAtItsPresets)
{
    const Image picture = test::gradient({320, 320});
    const std::string still = folder_.file("still.png"), out = folder_.file("out.y4m"),
                      video = videoOf(picture, 1, "", folder_.file("in.y4m"));
    test::writePng(still, picture);
    const std::vector<Frame420> frames = rendered(options(), still, out);
    ASSERT_EQ(frames.size(), 30u);
    EXPECT_EQ(frames[4].bytes, frames[0].bytes);
    EXPECT_NE(frames[10].bytes, frames[0].bytes);
    EXPECT_NE(frames[12].bytes, frames[10].bytes);
    EXPECT_EQ(rendered(options("door"), video, out).at(0).bytes, frames[0].bytes);
    EXPECT_EQ(rendered(options("desk"), video, out).at(0).bytes, frames[15].bytes);

    const std::string png = folder_.file("tour.png");
    EXPECT_EQ(errorOf([&] { rendered(options(), still, png); }),
              png + ": a tour is a video; give an output that ends in .y4m or .mp4, or -");
}

TEST_F(RenderCamera, AVideosTourFollowsItsFrameRate)
{
    const std::string video =
        videoOf(test::gradient({320, 320}), 4, " F10:2", folder_.file("in.y4m"));
    CameraFile camera = readCameraFile(path());
    camera.tour = {{{"door", 0.4, 0}, {"desk", 0.3, 0}}, false};
    write(camera);
    const std::vector<Frame420> frames = rendered(options(), video, folder_.file("out.y4m"));
    ASSERT_EQ(frames.size(), 4u);
    EXPECT_EQ(frames[1].bytes, frames[0].bytes);
    EXPECT_NE(frames[2].bytes, frames[1].bytes);
    EXPECT_EQ(frames[3].bytes, frames[2].bytes);
}

TEST_F(RenderCamera, AVideoThatFfmpegDecodesTakesTheTourToo)
{
    const std::string clip = folder_.file("in.mkv"), out = folder_.file("out.y4m");
    test::makeClip(clip, 3);
    CameraFile camera = readCameraFile(path());
    camera.tour = {{{"door", 0.05, 0}, {"desk", 1, 0}}, false}; // two frames at 30000/1001
    write(camera);
    const std::vector<Frame420> tour = rendered(options(), clip, out),
                                door = rendered(options("door"), clip, out),
                                desk = rendered(options("desk"), clip, out);
    ASSERT_EQ(tour.size(), 3u);
    ASSERT_EQ(desk.size(), 3u);
    EXPECT_EQ(tour[1].bytes, door[1].bytes);
    EXPECT_EQ(tour[2].bytes, desk[2].bytes);
    EXPECT_NE(door[2].bytes, desk[2].bytes);
}

TEST_F(RenderCamera, EachViewOfATourMayHaveAFile)
{
    const std::string video = videoOf(test::gradient({320, 320}), 2, "", folder_.file("in.y4m"));
    CameraFile camera = readCameraFile(path());
    camera.presets = {{"a", View::ptz360, {{kDoor, {10, 50, 0}}, 0}},
                      {"b", View::ptz360, {{kDoor, {190, 50, 0}}, 0}}};
    camera.tour = {{{"a", 0.04, 0}, {"b", 0.04, 0}}, false};
    write(camera);
    RenderOptions tour = options();
    tour.tour = tour.separate = true;
    tour.input = video;
    tour.output = folder_.file("out.y4m");
    runRender(tour);
    const std::vector<Frame420> first = framesOf(folder_.file("out-1.y4m")),
                                second = framesOf(folder_.file("out-2.y4m"));
    ASSERT_EQ(first.size(), 2u);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(first[0].bytes, first[1].bytes);
    EXPECT_NE(second[0].bytes, second[1].bytes);
}

TEST_F(RenderCamera, TheUnwrapTurnsOnATour)
{
    const std::string out = folder_.file("out.y4m"),
                      video = videoOf(test::gradient({640, 480}), 2, "", folder_.file("in.y4m"));
    CameraFile camera = readCameraFile(path());
    camera.input = {640, 480};
    camera.presets = {{"a", View::half180, {{}, 0}}, {"b", View::half180, {{}, 90}}};
    camera.tour.stops = {{"a", 0.04, 0}, {"b", 0.04, 0}};
    write(camera);
    const std::vector<Frame420> frames = rendered(options(), video, out);
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_NE(frames[1].bytes, frames[0].bytes);
    EXPECT_EQ(rendered(options("b"), video, out).at(0).bytes, frames[1].bytes);
}

} // namespace
} // namespace lumofe
