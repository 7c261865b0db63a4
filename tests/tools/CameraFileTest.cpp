#include "camera/CameraFile.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>
#include <limits>

namespace lumofe {
namespace {

constexpr const char* kDoor = R"({
  "version": 1,
  "input": {"width": 1280, "height": 960},
  "mount": "ceiling",
  "circle": {"x": 640, "y": 480, "radius": 470},
  "layout": "360",
  "presets": {
    "door": {"views": [{"pan": 90, "tilt": 60.5, "zoom": 0, "offset": 12},
                       {"pan": -10, "tilt": 45, "zoom": 25}]},
    "desk": {"layout": "360", "views": [{"pan": 1, "tilt": 2, "zoom": 3},
                                        {"pan": 4, "tilt": 5, "zoom": 6}]},
    "round": {"layout": "180", "turn": -45},
    "Tür 2": {"layout": "single", "views": [{"pan": 0, "tilt": 0, "zoom": 100}]}
  },
  "tour": {"repeat": false, "stops": [{"preset": "door", "stay": 5, "glide": 2.5},
                                      {"preset": "desk", "stay": 0, "glide": 0}]}
})";

// The text with the first `from` replaced, which must be there.
std::string changed(const std::string& from, const std::string& to)
{
    std::string text = kDoor;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

std::string refusalOf(const std::string& text)
{
    return test::errorOf([&] { parseCameraFile(text, "door.json"); });
}

std::string refusal(const std::string& from, const std::string& to)
{
    return refusalOf(changed(from, to));
}

TEST(CameraFile, HoldsWhatWasWritten)
{
    const CameraFile camera = parseCameraFile(kDoor, "door.json");
    EXPECT_EQ(camera.input, (Size{1280, 960}));
    EXPECT_EQ(camera.mount, Mount::ceiling);
    EXPECT_EQ(camera.circle.x, 640);
    EXPECT_EQ(camera.circle.y, 480);
    EXPECT_EQ(camera.circle.radius, 470);
    EXPECT_EQ(camera.layout, View::ptz360);
    ASSERT_EQ(camera.presets.size(), 4u);
    const Preset& door = camera.presets[0];
    EXPECT_EQ(door.name, "door");
    EXPECT_EQ(door.layout, View::ptz360);
    ASSERT_EQ(door.position.views.size(), 2u);
    EXPECT_EQ(door.position.views[0].tilt, 60.5);
    EXPECT_EQ(door.position.views[0].offset, 12);
    EXPECT_EQ(door.position.views[1].pan, -10);
    EXPECT_EQ(door.position.views[1].zoom, 25);
    EXPECT_FALSE(door.position.views[1].offset);
    EXPECT_EQ(camera.presets[2].layout, View::half180);
    EXPECT_EQ(camera.presets[2].position.panoOffset, -45);
    ASSERT_EQ(camera.tour.stops.size(), 2u);
    EXPECT_FALSE(camera.tour.repeat);
    EXPECT_EQ(camera.tour.stops[0].preset, "door");
    EXPECT_EQ(camera.tour.stops[0].stay, 5);
    EXPECT_EQ(camera.tour.stops[0].glide, 2.5);
}

TEST(CameraFile, TheSameCameraIsTheSameText)
{
    const std::string text = cameraFileText(parseCameraFile(kDoor, "door.json"), "door.json");
    EXPECT_EQ(cameraFileText(parseCameraFile(text, "again"), "again"), text);
    EXPECT_TRUE(text.starts_with("{\n  \"version\": 1,\n  \"input\": {\n    \"width\": 1280,\n"))
        << text;
    EXPECT_TRUE(text.ends_with("}\n"));
    EXPECT_NE(text.find("\"tilt\": 60.5,"), std::string::npos);
}

TEST(CameraFile, LeavesOutWhatNeedNotBeThere)
{
    const CameraFile camera =
        parseCameraFile(R"({"version": 1, "input": {"width": 640, "height": 480}, "mount": "wall",
                            "circle": {"x": 1, "y": 2, "radius": 16}})",
                        "wall.json");
    EXPECT_EQ(camera.layout, View::single);
    EXPECT_TRUE(camera.presets.empty());
    EXPECT_TRUE(camera.tour.stops.empty());
    EXPECT_TRUE(camera.tour.repeat);
    const std::string text = cameraFileText(camera, "wall.json");
    EXPECT_EQ(cameraFileText(parseCameraFile(text, "again"), "again"), text);
}

TEST(CameraFile, RefusalsNameTheFieldAndWhatIsAllowed)
{
    const struct {
        const char *from, *to, *message;
    } kCases[] = {
        {"\"tilt\": 45", "\"tilt\": 95",
         "presets.door.views[1].tilt: 95 is outside 0 to 90 degrees"},
        {"\"tilt\": 45", "\"tilt\": \"45\"",
         "presets.door.views[1].tilt: is string; write a number"},
        {"\"tilt\": 45", "\"tilt\": null", "presets.door.views[1].tilt: is null; write a number"},
        {"\"tilt\": 45", "\"tlit\": 45",
         "presets.door.views[1].tlit: is unknown; did you mean tilt?"},
        {"\"tilt\": 45, ", "", "presets.door.views[1].tilt: is missing"},
        {"\"zoom\": 25", "\"zoom\": 101",
         "presets.door.views[1].zoom: 101 is outside 0 to 100 percent"},
        {"\"pan\": -10", "\"pan\": -361",
         "presets.door.views[1].pan: -361 is outside -360 to 360 degrees"},
        {"\"offset\": 12", "\"offset\": 1.5",
         "presets.door.views[0].offset: 1.5 is not whole; write no decimals"},
        {"\"offset\": 12", "\"offset\": 99999999999999999999",
         "presets.door.views[0].offset: 1e+20 is outside -4096 to 4096 pixels"},
        {"\"mount\"", "\"colour\": 3, \"mount\"",
         "colour: is unknown; there can be version, input, mount, circle, layout, presets, tour"},
        {"\"ceiling\"", "\"roof\"", "mount: 'roof' is unknown; choose one of ceiling, wall, floor"},
        {"\"layout\": \"360\"", "\"layout\": \"quads\"",
         "layout: 'quads' is unknown; choose one of single, quad, 360, 180"},
        {"\"version\": 1", "\"version\": 2",
         "version: 2 is newer than 1, the newest that this lumofe reads; update lumofe"},
        {"\"version\": 1,", "", "version: is missing; begin the file with \"version\": 1"},
        {"\"width\": 1280", "\"width\": 1281",
         "input.width: 1281 is odd; only 1280 pixels are used of it, write that"},
        {"\"width\": 1280", "\"width\": 5000", "input.width: 5000 is outside 320 to 4096 pixels"},
        {"\"x\": 640", "\"x\": 1280",
         "circle.x: 1280 is outside 0 to 1279 pixels, the input's width"},
        {"\"radius\": 470", "\"radius\": 15", "circle.radius: 15 is outside 16 to 4096 pixels"},
        {"\"turn\": -45", "\"turn\": -400",
         "presets.round.turn: -400 is outside -360 to 360 degrees"},
        {"\"layout\": \"single\"", "\"turn\": 5",
         "presets.Tür 2.views: has 1 views; the 360 layout steers 2"},
        {"\"layout\": \"single\"", "\"turn\": 5, \"layout\": \"single\"",
         "presets.Tür 2.turn: turns the 180 layout of ceiling and floor only; remove it"},
        {"\"desk\": {", "\"door\": {", "presets.door: appears twice; remove one of them"},
        {"\"desk\": {", "\"-desk\": {",
         "presets.-desk: the name begins with a dash; begin with a letter"},
        {"\"desk\": {", "\"\": {", "presets.: the name has 0 bytes; use 1 to 64"},
        {"\"desk\": {", "\"a\\nb\": {",
         "presets.a?b: the name has a control character; use printable ones"},
        {"\"tilt\": 60.5", "\"tilt\": 60, \"tilt\": 61",
         "presets.door.views[0].tilt: appears twice; remove one of them"},
        {"\"preset\": \"desk\"", "\"preset\": \"disk\"",
         "tour.stops[1].preset: there is no preset 'disk'"},
        {"\"preset\": \"desk\"", "\"preset\": \"round\"",
         "tour.stops[1].preset: 'round' is of the 180 layout, the first stop of the 360; a tour "
         "keeps to one layout"},
        {"\"glide\": 2.5", "\"glide\": -1", "tour.stops[0].glide: -1 is outside 0 to 3600 seconds"},
        {"\"stay\": 5, \"glide\": 2.5", "\"stay\": 0, \"glide\": 0",
         "tour.stops: take no time; give one of them a stay or a glide"},
        {"\"repeat\": false", "\"repeat\": 0", "tour.repeat: is number; write true or false"},
    };
    for (const auto& one : kCases)
        EXPECT_EQ(refusal(one.from, one.to), std::string("door.json: ") + one.message);
}

TEST(CameraFile, WhatIsNotJsonIsToldWithItsPlace)
{
    EXPECT_TRUE(refusalOf("").starts_with("door.json: line 1, column 1: is not JSON: "));
    EXPECT_TRUE(
        refusalOf("{\n  \"version\": 1,\n  mount").starts_with("door.json: line 3, column 3"))
        << refusalOf("{\n  \"version\": 1,\n  mount");
    for (const char* number : {"NaN", "Infinity", "1e999", "-1e999", "0x10", "01"})
        EXPECT_NE(refusal("60.5", number), "") << number;
    EXPECT_EQ(refusalOf("[]"), "door.json: is array; write an object in braces");
    EXPECT_EQ(refusalOf(std::string(100000, '[')),
              "door.json: is nested too deep for a camera's file");
    std::string deep;
    for (int i = 0; i < 20000; ++i)
        deep += "{\"a\":";
    EXPECT_EQ(refusalOf(deep), "door.json: is nested too deep for a camera's file");
    std::string wide = "{";
    for (int i = 0; i < 5000; ++i)
        wide += "\"" + std::to_string(i) + "\":0,";
    EXPECT_NE(refusalOf(wide).find("more than 2000 fields"), std::string::npos);
    EXPECT_NE(refusalOf("{\"\xff\": 1}"), "");
    EXPECT_NE(refusalOf(std::string("{\0}", 3)), "");
}

TEST(CameraFile, MessagesStayOnOneLine)
{
    for (const std::string& text :
         {changed("\"ceiling\"", "\"a\\nb\\u001b[2J" + std::string(5000, 'x') + "\""),
          changed("\"mount\"", "\"\\n" + std::string(5000, 'x') + "\""),
          "{\"" + std::string(5000, 'x') + "\n"}) {
        const std::string message = refusalOf(text);
        EXPECT_NE(message, "");
        EXPECT_LT(message.size(), 300u) << message;
        for (const char c : message)
            EXPECT_GE(static_cast<unsigned char>(c), 0x20) << message;
    }
}

TEST(CameraFile, AWrongCameraIsNotWritten)
{
    const test::ScratchFolder folder;
    const std::string path = folder.file("door.json");
    CameraFile camera = parseCameraFile(kDoor, "door.json");
    writeCameraFile(path, camera);
    const test::Bytes before = test::readFile(path);

    const auto refused = [&](const CameraFile& wrong) {
        const std::string message = test::errorOf([&] { writeCameraFile(path, wrong); });
        EXPECT_EQ(test::readFile(path), before);
        EXPECT_EQ(folder.contents(), std::vector<std::string>{"door.json"});
        return message.starts_with(path + ": ") ? message.substr(path.size() + 2) : message;
    };
    CameraFile wrong = camera;
    wrong.presets[0].position.views[1].tilt = 95;
    EXPECT_EQ(refused(wrong), "presets.door.views[1].tilt: 95 is outside 0 to 90 degrees");
    wrong.presets[0].position.views[1].tilt = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(refused(wrong), "presets.door.views[1].tilt: is null; write a number");
    wrong = camera;
    wrong.presets[1].name = "door";
    EXPECT_EQ(refused(wrong), "presets: a name appears twice; remove one of them");
    wrong.presets[1].name = "\xff";
    EXPECT_EQ(refused(wrong), "presets: a name is not UTF-8; write it in UTF-8");
    wrong = camera;
    wrong.tour.stops[0].preset = "\xff";
    EXPECT_NE(refused(wrong), "");
}

TEST(CameraFile, ComesBackFromAFile)
{
    const test::ScratchFolder folder;
    const std::string path = folder.file("door.json");
    const CameraFile camera = parseCameraFile(kDoor, "door.json");
    writeCameraFile(path, camera);
    EXPECT_EQ(cameraFileText(readCameraFile(path), "a"), cameraFileText(camera, "a"));
    const std::string none = folder.file("none.json");
    EXPECT_NE(test::errorOf([&] { readCameraFile(none); }).find(none), std::string::npos);
    test::writeFile(path, test::Bytes(300000, ' '));
    EXPECT_NE(test::errorOf([&] { readCameraFile(path); }).find(path), std::string::npos);
}

TEST(CameraFile, MissingPresetsAreToldWithTheOthers)
{
    const CameraFile camera = parseCameraFile(kDoor, "door.json");
    EXPECT_EQ(presetNamed(camera, "desk", "door.json").name, "desk");
    EXPECT_EQ(test::errorOf([&] { presetNamed(camera, "disk", "door.json"); }),
              "door.json: there is no preset 'disk'; choose one of door, desk, round, Tür 2");
    EXPECT_EQ(
        test::errorOf([] { presetNamed({}, "disk", "door.json"); }),
        "door.json: there is no preset 'disk'; the file has none, make one with lumofe preset "
        "save");
}

// What steering can leave behind fits into the file.
TEST(CameraFile, TakesEveryPositionThatStepsReach)
{
    for (View view : {View::single, View::quad, View::ptz360})
        for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor})
            for (const Step& step : {Step{0, -10, 0}, Step{0, 10, 0}, Step{-10, 0, 0},
                                     Step{10, 0, 0}, Step{0, 0, 10}, Step{0, 0, -10}}) {
                DewarperSetup setup;
                setup.input = {640, 480};
                setup.output = {320, 240};
                setup.circle = {320, 240, 239};
                setup.view = view;
                setup.mount = mount;
                Dewarper dewarper(setup);
                const Frame420 frame(setup.input);
                for (int number = 1; number <= layoutRule(view).views; ++number) {
                    dewarper.step(number, {0, 0, 20});
                    dewarper.dewarp(frame);
                    for (int i = 0; i < 30; ++i) {
                        dewarper.step(number, step);
                        dewarper.dewarp(frame);
                    }
                }
                CameraFile camera;
                camera.input = setup.input;
                camera.mount = mount;
                camera.circle = setup.circle;
                camera.presets = {{"here", view, positionOf(dewarper)}};
                EXPECT_EQ(test::errorOf([&] { cameraFileText(camera, "door.json"); }), "")
                    << layoutRule(view).name << " on the " << mountRule(mount).name;
            }
}

TEST(CameraFile, TheExampleOfThePageIsRight)
{
    const test::Bytes bytes = test::readFile(LUMOFE_CAMERA_PAGE);
    const std::string page(bytes.begin(), bytes.end());
    const std::string begin = "```json\n";
    const std::size_t at = page.find(begin) + begin.size();
    const CameraFile camera = parseCameraFile(page.substr(at, page.find("```", at) - at), "page");
    EXPECT_EQ(camera.presets.size(), 3u);
    EXPECT_EQ(camera.tour.stops.size(), 2u);
    EXPECT_NE(page.find("`" + test::errorOf([&] {
                            CameraFile wrong = camera;
                            wrong.presets[0].position.views[0].tilt = 95;
                            cameraFileText(wrong, "hall.json");
                        }) +
                        "`"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
