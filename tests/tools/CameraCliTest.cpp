// The commands around a camera's file, run as a person or script does.
#include "ToolTestSupport.h"
#include "camera/CameraFile.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using Names = std::vector<std::string>;

class CameraCli : public testing::Test {
protected:
    std::string file(const std::string& name) const { return folder_.file(name); }
    std::string hall() const { return file("hall.json"); }

    void init(const Names& more = {})
    {
        Names words{"camera", "init", hall(), "--size", "640x480"};
        words.insert(words.end(), more.begin(), more.end());
        EXPECT_EQ(errorOf(words), "");
    }

    // Standard output of a run that succeeds.
    static std::string output(const Names& words, const test::Bytes& input = {})
    {
        const test::ToolRun run = test::runTool(words, input);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        return std::string(run.out.begin(), run.out.end());
    }

    // Standard error of a run, "" of one that succeeds.
    static std::string errorOf(const Names& words, const test::Bytes& input = {})
    {
        const test::ToolRun run = test::runTool(words, input);
        EXPECT_EQ(run.status, run.err.empty() ? 0 : 2);
        return run.err;
    }

    test::ScratchFolder folder_;
};

TEST_F(CameraCli, InitWritesWhatItIsTold)
{
    init({"--mount", "wall", "--circle", "300,200,190", "--view", "quad"});
    const CameraFile camera = readCameraFile(hall());
    EXPECT_EQ(camera.input, (Size{640, 480}));
    EXPECT_EQ(camera.mount, Mount::wall);
    EXPECT_EQ(camera.circle.x, 300);
    EXPECT_EQ(camera.circle.radius, 190);
    EXPECT_EQ(camera.layout, View::quad);
    EXPECT_EQ(output({"camera", "init", "-", "--size", "641x480", "--mount", "wall", "--circle",
                      "300,200,190", "--view", "quad"}),
              cameraFileText(camera, "hall"));
}

TEST_F(CameraCli, InitReplacesOnlyByForce)
{
    init();
    EXPECT_EQ(readCameraFile(hall()).circle.radius, 240);
    EXPECT_EQ(errorOf({"camera", "init", hall(), "--size", "800x600"}),
              "lumofe: " + hall() +
                  ": exists already; give another name, or --force to replace it\n");
    EXPECT_EQ(readCameraFile(hall()).input.width, 640);
    EXPECT_EQ(errorOf({"camera", "init", hall(), "--size", "800x600", "--force"}), "");
    EXPECT_EQ(readCameraFile(hall()).input.width, 800);
    EXPECT_EQ(errorOf({"camera", "init", file("b.json")}),
              "lumofe: --size: is missing; give the input's size, or --calibration\n");
    EXPECT_NE(errorOf({"camera", "init", file("b.json"), "--size", "100x100"}).find("320 to 4096"),
              std::string::npos);
    EXPECT_EQ(folder_.contents(), Names{"hall.json"});
}

TEST_F(CameraCli, InitTakesACalibration)
{
    const auto found = [](const std::string& confident) {
        return test::bytesOf(R"({"circle": {"x": 319.6, "y": 250, "radius": 230.2}, "rim": [1],)"
                             R"( "input": {"width": 641, "height": 480}, "confident": )" +
                             confident + "}");
    };
    const Names words{"camera", "init", hall(), "--calibration", "-"};
    EXPECT_NE(errorOf(words, found("false")).find("not certain; give it with --circle"),
              std::string::npos);
    EXPECT_EQ(errorOf(words, found("true")), "");
    const CameraFile camera = readCameraFile(hall());
    EXPECT_EQ(camera.input, (Size{640, 480}));
    EXPECT_EQ(camera.circle.x, 320);
    EXPECT_EQ(camera.circle.y, 250);
    EXPECT_EQ(camera.circle.radius, 230);

    Names given = words;
    given.insert(given.end(), {"--force", "--circle", "300,200,190"});
    EXPECT_EQ(errorOf(given, found("false")), "");
    EXPECT_EQ(readCameraFile(hall()).circle.x, 300);
    given.insert(given.end(), {"--size", "640x480"});
    EXPECT_NE(errorOf(given, found("true")).find("leave out one"), std::string::npos);
    EXPECT_NE(errorOf(words, test::bytesOf("{}")), "");
}

TEST_F(CameraCli, PresetsAreSavedListedAndRemoved)
{
    init();
    EXPECT_EQ(errorOf({"preset", "save", hall(), "door", "--pan", "67.5", "--tilt", "60"}), "");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "all", "--view", "quad", "--ptz", "0,70,10"}), "");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "round", "--view", "180", "--pano-offset", "45"}),
              "");
    EXPECT_EQ(output({"preset", "list", hall()}),
              "door\tsingle\t67.5,60,0\nall\tquad\t0,70,10 90,80,0 180,80,0 270,80,0\n"
              "round\t180\t45\n");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "door", "--pan", "1"}),
              "lumofe: " + hall() + ": has a preset 'door' already; replace it with --force\n");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "door", "--pan", "1", "--force"}), "");
    EXPECT_TRUE(output({"preset", "list", hall()}).starts_with("door\tsingle\t1,70,0\n"));
    EXPECT_NE(errorOf({"preset", "save", hall(), "bad", "--tilt", "95"}).find("0 to 90"),
              std::string::npos);
    EXPECT_NE(errorOf({"preset", "save", hall(), "", "--tilt", "5"}).find("NAME has 0 bytes"),
              std::string::npos);

    CameraFile camera = readCameraFile(hall());
    camera.tour.stops = {{"door", 1, 0}};
    writeCameraFile(hall(), camera);
    EXPECT_EQ(errorOf({"preset", "remove", hall(), "door"}),
              "lumofe: " + hall() + ": the tour stops at 'door'; take it out of the tour first\n");
    EXPECT_EQ(errorOf({"preset", "remove", hall(), "all"}), "");
    EXPECT_NE(errorOf({"preset", "remove", hall(), "all"}).find("choose one of door, round"),
              std::string::npos);
    EXPECT_EQ(output({"preset", "list", hall()}), "door\tsingle\t1,70,0\nround\t180\t45\n");
}

TEST_F(CameraCli, APresetIsAppliedAsRenderDoes)
{
    init({"--circle", "320,240,200"});
    test::writePng(file("in.png"), test::gradient({640, 480}));
    EXPECT_EQ(errorOf({"preset", "save", hall(), "door", "--pan", "30", "--tilt", "60"}), "");
    EXPECT_EQ(errorOf({"preset", "apply", hall(), "door", file("in.png"), "-o", file("a.png")}),
              "");
    EXPECT_EQ(errorOf({"render", file("in.png"), "-o", file("b.png"), "--camera", hall(),
                       "--preset", "door"}),
              "");
    EXPECT_EQ(errorOf({"render", file("in.png"), "-o", file("c.png"), "--circle", "320,240,200",
                       "--pan", "30", "--tilt", "60"}),
              "");
    const test::Bytes a = test::readFile(file("a.png"));
    EXPECT_FALSE(a.empty());
    EXPECT_EQ(a, test::readFile(file("b.png")));
    EXPECT_EQ(a, test::readFile(file("c.png")));

    test::writePng(file("small.png"), test::gradient({320, 240}));
    EXPECT_EQ(
        errorOf({"preset", "apply", hall(), "door", file("small.png"), "-o", file("d.png")}),
        "lumofe: " + hall() +
            ": is for an input of 640x480, but this one is 320x240; scale the input, or make a "
            "file for its size\n");
}

TEST_F(CameraCli, OptionsWinOverTheFile)
{
    init({"--mount", "floor"});
    test::writePng(file("in.png"), test::gradient({640, 480}));
    EXPECT_EQ(errorOf({"render", file("in.png"), "-o", file("a.png"), "--camera", hall(), "--mount",
                       "ceiling", "--view", "quad"}),
              "");
    EXPECT_EQ(errorOf({"render", file("in.png"), "-o", file("b.png"), "--view", "quad"}), "");
    EXPECT_EQ(test::readFile(file("a.png")), test::readFile(file("b.png")));
    EXPECT_EQ(errorOf({"render", file("in.png"), "-o", file("c.png"), "--camera", hall()}), "");
    EXPECT_NE(test::readFile(file("c.png")), test::readFile(file("b.png")));
}

TEST_F(CameraCli, APointIsToldAsTheLayoutsTakeIt)
{
    init({"--circle", "320,240,200"});
    EXPECT_EQ(output({"point", "420", "240", "--camera", hall()}),
              "single:     pan 67.5, tilt 45.0 degrees\n"
              "quad, 360:  pan 90.0, tilt 45.0 degrees\n");
    EXPECT_EQ(output({"point", "420", "240", "--size", "640x480", "--circle", "320,240,200",
                      "--mount", "wall"}),
              "all views:  pan 44.9, tilt -0.5 degrees\n");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "door", "--pan", "67.5", "--tilt", "60"}), "");
    EXPECT_EQ(errorOf({"preset", "save", hall(), "all", "--view", "quad", "--ptz", "0,70,0"}), "");
    // This one is told the spot's very tilt, but zoomed in it looks further out.
    EXPECT_EQ(
        errorOf({"preset", "save", hall(), "far", "--pan", "67.5", "--tilt", "9", "--zoom", "100"}),
        "");
    const auto nearest = [&](const char* x, const char* y) {
        const std::string text = output({"point", x, y, "--camera", hall()});
        return text.substr(text.find("nearest:"));
    };
    EXPECT_TRUE(nearest("340", "240").starts_with("nearest:    preset door, "));
    EXPECT_TRUE(nearest("320", "140").starts_with("nearest:    preset all, view 1, "));
}

TEST_F(CameraCli, PresetsOfALayoutThatTheLibraryRefusesDoNotDisturbAPoint)
{
    init({"--circle", "320,240,4000"}); // too large for the 360 layout's panorama
    EXPECT_EQ(errorOf({"preset", "save", hall(), "round", "--view", "360", "--ptz", "0,70,0"}), "");
    EXPECT_NE(
        output({"point", "320", "200", "--camera", hall()}).find("nearest:    preset round, view "),
        std::string::npos);
}

TEST_F(CameraCli, PointsOutsideTheCircleAreRefused)
{
    init({"--circle", "320,240,300"});
    EXPECT_EQ(errorOf({"point", "10", "20", "--camera", hall()}),
              "lumofe: 10 20: is outside the picture's circle (640x480 pixels; centre 320,240, "
              "radius 300); choose a spot in it\n");
    EXPECT_NE(errorOf({"point", "320", "490", "--camera", hall()}), "");
    EXPECT_NE(errorOf({"point", "1000000000", "2000000000", "--camera", hall()}), "");
    EXPECT_EQ(errorOf({"point", "320", "240"}),
              "lumofe: --size: is missing; give the input's size, or --camera\n");
    EXPECT_NE(errorOf({"point", "320", "240", "--camera", hall(), "--mount", "wall"}), "");
    EXPECT_NE(errorOf({"point", "320", "240", "--size", "300x100"}), "");
}

} // namespace
} // namespace lumofe
