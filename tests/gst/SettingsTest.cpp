#include "Settings.h"

#include "ErrorOf.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

TEST(Settings, ViewsLookWhereTheLayoutHasThemUntilTheyAreSteered)
{
    Settings settings;
    settings.view = View::quad;
    settings.now.views[2].tilt = 40;
    const std::vector<Aim> aims = settings.aims();
    ASSERT_EQ(aims.size(), 4u);
    for (int number = 1; number <= 4; ++number) {
        const Aim usual = defaultAim(View::quad, Mount::ceiling, number);
        const Aim& aim = aims[std::size_t(number) - 1];
        EXPECT_EQ(aim.pan, usual.pan);
        EXPECT_EQ(aim.tilt, number == 3 ? 40 : usual.tilt);
        EXPECT_EQ(aim.zoom, usual.zoom);
    }
    settings.view = View::half180;
    EXPECT_TRUE(settings.aims().empty());
}

TEST(Settings, AimsStayInTheMountingsRange)
{
    Settings settings;
    settings.now.views[0] = {200, 60, 50, {}};
    EXPECT_EQ(settings.aim(1).pan, 200);
    settings.mount = Mount::floor;
    EXPECT_EQ(settings.aim(1).tilt, 0);
    settings.mount = Mount::wall;
    EXPECT_EQ(settings.aim(1).pan, 90);
    EXPECT_EQ(settings.aim(1).tilt, 60);
}

TEST(Settings, TheCircleIsTheLargestCentredOneUnlessItIsGiven)
{
    Settings settings;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{320, 240, 240}));
    settings.circleY = 7;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{320, 7, 240}));
    settings.circleX = 5;
    settings.circleRadius = 9;
    EXPECT_EQ(settings.circle({640, 480}), (Circle{5, 7, 9}));
}

TEST(Settings, TheOffsetIsRoundedToWholeDegrees)
{
    Settings settings;
    settings.now.panoramaOffset = -44.6;
    EXPECT_EQ(settings.panoramaOffset(), -45);
}

std::shared_ptr<const CameraFile> wallCamera()
{
    auto file = std::make_shared<CameraFile>();
    file->input = {640, 480};
    file->mount = Mount::wall;
    file->circle = {300, 200, 190};
    file->layout = View::quad;
    file->presets = {{"desk", View::ptz360, {{{10, 20, 30, 40}, {1, 2, 3, {}}}, 0}}};
    return file;
}

TEST(Settings, ACamerasFileSetsWhatItKnows)
{
    Settings settings;
    settings.now.views[0].pan = 5;
    settings.takeCamera("hall.json", wallCamera());
    EXPECT_EQ(settings.mount, Mount::wall);
    EXPECT_EQ(settings.view, View::quad);
    EXPECT_EQ(settings.circle({640, 480}), (Circle{300, 200, 190}));
    EXPECT_EQ(settings.aim(1).pan, 5) << "no preset was named";
}

TEST(Settings, APresetSetsLayoutMountingAndViews)
{
    Settings settings;
    settings.now.views[3].pan = 5;
    settings.takeCamera("hall.json", wallCamera());
    settings.mount = Mount::floor;
    settings.showPreset("desk");
    EXPECT_EQ(settings.view, View::ptz360);
    EXPECT_EQ(settings.mount, Mount::wall);
    const std::vector<Aim> aims = settings.aims();
    EXPECT_EQ(aims[0].tilt, 20);
    EXPECT_EQ(aims[0].offset, 40);
    EXPECT_EQ(aims[1].pan, 1);
    EXPECT_EQ(settings.set, settings.now);
    EXPECT_EQ(settings.now.views[3], ViewDirection());
}

TEST(Settings, APresetMayBeNamedBeforeItsFile)
{
    Settings settings;
    settings.showPreset("desk");
    EXPECT_EQ(settings.view, View::single);
    settings.takeCamera("hall.json", wallCamera());
    EXPECT_EQ(settings.aim(1).pan, 10);
}

TEST(Settings, APresetThatThereIsNotChangesNothing)
{
    Settings settings;
    settings.takeCamera("hall.json", wallCamera());
    const Settings before = settings;
    EXPECT_EQ(test::errorOf([&] { settings.showPreset("door"); }),
              "hall.json: there is no preset 'door'; choose one of desk");
    EXPECT_EQ(settings, before);

    Settings named;
    named.showPreset("door");
    const Settings without = named;
    EXPECT_NE(test::errorOf([&] { named.takeCamera("hall.json", wallCamera()); }), "");
    EXPECT_EQ(named, without);
}

} // namespace
} // namespace lumofe
