// Starts the viewer on a private X server and looks at the screen: keys and mouse.
#include "Viewer.h"

#include "LibraryOutput.h"
#include "ViewerRun.h"
#include "media/Drawing.h"

#include <csignal>
#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;
using Place = Window::Place;

namespace {

struct ViewerTest : testing::Test {
    static void SetUpTestSuite() { desktop = new Desktop; }
    static void TearDownTestSuite() { delete std::exchange(desktop, nullptr); }
    static inline Desktop* desktop = nullptr;

    const LibraryOutput silence{LibraryOutput::Target::discard};
    const ScratchFolder folder;
    const std::string input = folder.file("hall.png"), camera = folder.file("hall.json");

    void SetUp() override
    {
        writePng(input, smallScene());
        CameraFile file;
        file.input = smallScene().size;
        file.circle = centredCircle(file.input);
        writeCameraFile(camera, file);
    }

    ViewerRun start(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(), {input, "--save-to", folder.file("")});
        return ViewerRun(*desktop, arguments);
    }

    // Has the viewer write down where its views look.
    Position savedPosition(const ViewerRun& run)
    {
        const std::vector<Preset> before = readCameraFile(camera).presets;
        desktop->press("p");
        EXPECT_TRUE(run.comesToShow(Place::middle, presetLines(before, 0, camera)));
        desktop->press("p");
        const std::string name = "view " + std::to_string(before.size() + 1);
        EXPECT_TRUE(run.comesToShow(Place::bottomLeft, {"saved preset '" + name + "'"}));
        const std::vector<Preset> presets = readCameraFile(camera).presets;
        return presets.size() > before.size() ? presets.back().position
                                              : Position{std::vector<Aim>(kMaxViews), 0};
    }

    void expectPosition(const ViewerRun& run, const Shown& shown)
    {
        EXPECT_TRUE(run.comesToShow(dewarped(shown)));
    }

    Image inset(const Image& seen)
    {
        const Rect area = insetArea(smallScene().size, seen.size);
        Image part({int(area.width), int(area.height)});
        paste(part, seen, -int(area.x), -int(area.y));
        return part;
    }

    bool comesToShowInset(const ViewerRun& run, const Image& raw)
    {
        return eventually([&] {
            const Image seen = inset(run.desktop().picture());
            return psnr(seen, scaled(raw, seen.size)) > 25;
        });
    }
};

} // namespace

TEST_F(ViewerTest, ShowsAStillUntilItIsClosed)
{
    for (const char* key : {"q", "Escape"}) {
        ViewerRun run = start();
        EXPECT_EQ(desktop->windowSize(), setupOf({}).output);
        EXPECT_TRUE(run.comesToShow(dewarped({})));
        desktop->press(key);
        EXPECT_EQ(run.wait(), 0) << key;
        EXPECT_EQ(run.errors(), "");
    }
}

TEST_F(ViewerTest, ClosesWithItsWindowAndOnSignals)
{
    {
        ViewerRun run = start();
        EXPECT_TRUE(run.comesToShow(dewarped({})));
        desktop->closeWindow();
        EXPECT_EQ(run.wait(), 0);
    }
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ViewerRun run = start();
        run.signal(signal);
        EXPECT_EQ(run.wait(), 0) << signal;
    }
}

TEST_F(ViewerTest, BeginsAsTheOptionsSay)
{
    const Position position{{{45, 50, 30}}, 0};
    const Circle circle{325, 315, 300};
    ViewerRun run =
        start({"--pan", "45", "--tilt", "50", "--zoom", "30", "--circle", "325,315,300"});
    expectPosition(run, {.position = position, .circle = circle});
}

TEST_F(ViewerTest, DigitsChooseTheLayoutAndMTheMounting)
{
    ViewerRun run = start();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    desktop->resizeWindow({640, 480});
    const std::pair<const char*, View> layouts[] = {{"2", View::quad}, {"1", View::single}};
    for (const auto& [key, view] : layouts) {
        desktop->press(key);
        EXPECT_TRUE(run.comesToShow(dewarped({.view = view}))) << key;
    }
    for (Mount mount : {Mount::wall, Mount::floor, Mount::ceiling}) {
        desktop->press("m");
        EXPECT_TRUE(run.comesToShow(dewarped({.mount = mount}))) << mountRule(mount).name;
        EXPECT_TRUE(run.comesToShow(Place::bottomLeft,
                                    {std::string("camera on the ") + mountRule(mount).name}));
    }
    desktop->resizeWindow({640, 360});
    for (const auto& [key, view] : {std::pair{"3", View::ptz360}, {"4", View::half180}}) {
        desktop->press(key);
        EXPECT_TRUE(run.comesToShow(dewarped({.view = view}))) << key;
    }
}

TEST_F(ViewerTest, DraggingMovesTheViewUnderThePointer)
{
    ViewerRun run = start({"--camera", camera, "--view", "quad"});
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::quad})));
    const Position before = savedPosition(run);
    desktop->move(500, 180); // view 2
    desktop->pressButton();
    for (int i = 1; i <= 10; ++i)
        desktop->move(500 - 10 * i, 180 - 6 * i);
    desktop->releaseButton();
    // What was dragged takes several frames; all of it is there when nothing changes any more.
    Position after;
    EXPECT_TRUE(eventually([&] {
        after = savedPosition(run);
        return after == savedPosition(run);
    }));
    EXPECT_GT(after.views[1].pan, before.views[1].pan + 5);
    EXPECT_LT(after.views[1].tilt, before.views[1].tilt - 5);
    for (std::size_t i : {0u, 2u, 3u})
        EXPECT_EQ(after.views[i], before.views[i]);
    expectPosition(run, {.view = View::quad, .position = after});
}

TEST_F(ViewerTest, TheWheelZoomsAndADoubleClickGoesBack)
{
    ViewerRun run = start({"--camera", camera});
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    desktop->move(320, 200);
    desktop->turnWheel(3);
    EXPECT_TRUE(run.comesToShow(dewarped({.step = {0, 0, 6}})));
    EXPECT_NEAR(savedPosition(run).views[0].zoom, 100.0 * 24 / 88, 1e-9);
    desktop->turnWheel(-1);
    EXPECT_TRUE(run.comesToShow(dewarped({.step = {0, 0, 4}})));
    desktop->click();
    desktop->click();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
}

TEST_F(ViewerTest, DraggingTurnsThePanorama)
{
    ViewerRun run = start({"--view", "180"});
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::half180})));
    desktop->move(100, 100);
    desktop->pressButton();
    desktop->move(420, 100); // half the width
    desktop->releaseButton();
    Position turned;
    turned.panoOffset = -90;
    expectPosition(run, {.view = View::half180, .position = turned});
    desktop->click();
    desktop->click();
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::half180})));
}

TEST_F(ViewerTest, AClickInTheRawPictureAimsTheSelectedView)
{
    ViewerRun run = start({"--view", "quad"});
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::quad})));
    desktop->move(100, 100); // view 1
    desktop->press("r");
    EXPECT_TRUE(comesToShowInset(run, smallScene()));
    const Rect area = insetArea(smallScene().size, desktop->windowSize());
    desktop->move(int(area.x + area.width * 0.75), int(area.y + area.height * 0.5));
    desktop->click();

    Dewarper dewarper(setupOf({.view = View::quad}));
    Position position;
    for (int number = 1; number <= 4; ++number)
        position.views.push_back(defaultAim(View::quad, Mount::ceiling, number));
    position.views[0] = dewarper.directionOf(480, 320);
    desktop->press("r");
    expectPosition(run, {.view = View::quad, .position = position});
}

TEST_F(ViewerTest, OutsideOfTheCircleAClickSaysWhy)
{
    ViewerRun run = start();
    desktop->press("r");
    EXPECT_TRUE(comesToShowInset(run, smallScene()));
    const Rect area = insetArea(smallScene().size, desktop->windowSize());
    desktop->move(int(area.x) + 2, int(area.y) + 2);
    desktop->click();
    EXPECT_TRUE(run.comesToShow(Place::bottomLeft,
                                {"that is outside of the fisheye circle; click inside it"}));
}

TEST_F(ViewerTest, MarksTheSelectedView)
{
    ViewerRun run = start({"--view", "quad"});
    EXPECT_TRUE(run.comesToShow(dewarped({.view = View::quad})));
    const Image plain = dewarped({.view = View::quad});
    // Along the edges of the views 1 and 3, one above the other.
    const auto marked = [&](int y) {
        const Image seen = desktop->row(y);
        double difference = 0;
        for (int x = 0; x < 320; ++x)
            for (int c = 0; c < 3; ++c)
                difference += std::abs(seen.pixel(x, 0)[c] - plain.pixel(x, y)[c]);
        return difference / (3 * 320) > 15;
    };
    for (bool upper : {true, false, true}) {
        desktop->move(100, upper ? 100 : 400);
        EXPECT_TRUE(eventually([&] { return marked(239) == upper && marked(240) != upper; }));
    }
}

TEST_F(ViewerTest, KeysAdjustTheCircleOverTheRawPicture)
{
    const Circle before{320, 320, 300}, circle{330, 319, 201};
    CameraFile file = readCameraFile(camera);
    file.circle = before;
    writeCameraFile(camera, file);
    Dewarper dewarper(setupOf({.circle = before}));
    dewarper.aim(defaultAim(View::single, Mount::ceiling, 1));
    ViewerRun run = start({"--camera", camera});
    EXPECT_TRUE(run.comesToShow(dewarper.dewarp(smallScene())));
    dewarper.setCircle(circle);
    const Image moved = dewarper.dewarp(smallScene());
    const auto redAt = [&](int x, int y) { // of the raw picture, which is 480 high
        const Image seen = desktop->picture();
        const std::uint8_t* p = seen.pixel(80 + x * 480 / 640, y * 480 / 640);
        return p[0] > 200 && p[1] < 120 && p[2] < 120;
    };
    desktop->press("c");
    EXPECT_TRUE(eventually([&] { return redAt(320, 320) && redAt(320, 620); }));
    for (int i = 0; i < 10; ++i)
        desktop->press("minus", true);
    desktop->press("Right", true);
    desktop->press("Up");
    desktop->press("plus");
    EXPECT_TRUE(eventually([&] { return redAt(330, 319) && redAt(330, 319 + 201); }));
    EXPECT_FALSE(redAt(320, 620));
    desktop->press("Return");
    EXPECT_TRUE(run.comesToShow(moved));
    EXPECT_EQ(readCameraFile(camera).circle.radius, 201);

    desktop->press("c");
    EXPECT_TRUE(eventually([&] { return redAt(330, 319); }));
    desktop->press("Down", true);
    EXPECT_TRUE(eventually([&] { return redAt(330, 329); }));
    desktop->press("Escape");
    EXPECT_TRUE(run.comesToShow(moved));
    EXPECT_EQ(readCameraFile(camera).circle.y, 319);
    desktop->press("q");
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(ViewerTest, PListsPresetsAndRecallsThem)
{
    CameraFile file = readCameraFile(camera);
    file.presets = {
        {"door", View::single, {{{90, 60, 40}}, 0}},
        {"all", View::quad, {{{10, 70, 0}, {100, 70, 0}, {190, 70, 0}, {280, 70, 0}}, 0}}};
    writeCameraFile(camera, file);
    ViewerRun run = start({"--camera", camera, "--preset", "door"});
    expectPosition(run, {.position = file.presets[0].position});
    desktop->press("p");
    EXPECT_TRUE(run.comesToShow(Place::middle, presetLines(file.presets, 0, camera)));
    desktop->press("2");
    expectPosition(run, {.view = View::quad, .position = file.presets[1].position});
    desktop->press("p");
    desktop->press("1");
    expectPosition(run, {.position = file.presets[0].position});
}

TEST_F(ViewerTest, WithoutACameraFilePSaysHowToGiveOne)
{
    ViewerRun run = start();
    desktop->press("p");
    EXPECT_TRUE(run.comesToShow(Place::middle, presetLines({}, 0, "")));
    desktop->press("Escape");
    EXPECT_TRUE(run.comesToShow(dewarped({})));
}

TEST_F(ViewerTest, HListsTheKeys)
{
    ViewerRun run = start();
    desktop->press("h");
    EXPECT_TRUE(run.comesToShow(Place::middle, helpLines()));
    desktop->press("h");
    EXPECT_TRUE(run.comesToShow(dewarped({})));
}

TEST_F(ViewerTest, ThePictureKeepsItsShapeInAnyWindow)
{
    ViewerRun run = start();
    EXPECT_TRUE(run.comesToShow(dewarped({})));
    desktop->resizeWindow({900, 480});
    Image expected({900, 480});
    paste(expected, dewarped({}), 130, 0);
    EXPECT_TRUE(run.comesToShow(expected));
    // The mouse is where the picture is.
    desktop->move(130 + 320, 200);
    desktop->turnWheel(3);
    paste(expected, dewarped({.step = {0, 0, 6}}), 130, 0);
    EXPECT_TRUE(run.comesToShow(expected));
}
