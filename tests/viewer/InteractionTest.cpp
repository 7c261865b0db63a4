#include "Interaction.h"

#include "CommandLog.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

using Mode = Interaction::Mode;

struct InteractionTest : testing::Test {
    CommandLog log;
    Interaction interaction{log, smallStage()};

    void press(Key key, bool shift = false) { interaction.press({key, 0, shift}); }
    void digit(int number) { interaction.press({Key::digit, number, false}); }
    void show(View view, int presets = 0)
    {
        Stage stage = smallStage();
        stage.view = view;
        stage.presets = presets;
        interaction.setStage(stage);
    }
    void click(Point p)
    {
        interaction.pressButton(p, 1);
        interaction.releaseButton();
    }
    std::string done()
    {
        const std::string text = log.text();
        log.clear();
        return text;
    }
};

} // namespace

TEST_F(InteractionTest, DigitsChooseTheLayout)
{
    for (int number = 0; number <= 9; ++number)
        digit(number);
    EXPECT_EQ(done(), "layout single; layout quad; layout 360; layout 180; ");
}

TEST_F(InteractionTest, LettersDoWhatTheHelpSays)
{
    press(Key::m);
    press(Key::s);
    press(Key::v);
    press(Key::q);
    press(Key::escape);
    press(Key::other);
    EXPECT_EQ(done(), "mount; picture; record; quit; quit; ");
}

TEST_F(InteractionTest, SomeKeysSwitchOnAndOff)
{
    for (bool on : {true, false}) {
        press(Key::h);
        press(Key::r);
        press(Key::space);
        EXPECT_EQ(interaction.showsHelp(), on);
        EXPECT_EQ(interaction.showsRaw(), on);
        EXPECT_EQ(interaction.paused(), on);
    }
    EXPECT_EQ(done(), "");
}

TEST_F(InteractionTest, DragsTheViewThatWasPressed)
{
    show(View::quad);
    interaction.pressButton({300, 50}, 1);
    interaction.movePointer({280, 65});
    interaction.movePointer({20, 65}); // over view 1 by now
    interaction.releaseButton();
    interaction.movePointer({100, 100});
    EXPECT_EQ(done(), "drag 2 by -0.1,0.1; drag 2 by -1.3,0; ");
}

TEST_F(InteractionTest, ADragBesideTheViewsDoesNothing)
{
    show(View::ptz360);
    interaction.pressButton({300, 290}, 1);
    interaction.movePointer({280, 280});
    EXPECT_EQ(done(), "");
}

TEST_F(InteractionTest, TheWheelZoomsTheViewUnderThePointer)
{
    show(View::quad);
    interaction.turnWheel(1); // the pointer was never seen
    interaction.movePointer({10, 290});
    interaction.turnWheel(-2);
    EXPECT_EQ(done(), "zoom 3 by -2; ");
}

TEST_F(InteractionTest, ADoubleClickResetsAndDoesNotDrag)
{
    interaction.pressButton({10, 10}, 1);
    interaction.releaseButton();
    interaction.pressButton({10, 10}, 2);
    interaction.movePointer({50, 50});
    EXPECT_EQ(done(), "reset 1; ");
}

TEST_F(InteractionTest, TwoShortDragsAreNoDoubleClick)
{
    interaction.pressButton({40, 10}, 1);
    interaction.movePointer({0, 10});
    interaction.releaseButton();
    interaction.pressButton({40, 10}, 2);
    interaction.movePointer({0, 10});
    interaction.releaseButton();
    EXPECT_EQ(done(), "drag 1 by -0.1,0; drag 1 by -0.1,0; ");
    // A hand is not all still.
    interaction.pressButton({40, 10}, 1);
    interaction.movePointer({42, 10});
    interaction.releaseButton();
    interaction.pressButton({42, 10}, 2);
    EXPECT_EQ(done(), "drag 1 by 0.005,0; reset 1; ");
}

TEST_F(InteractionTest, SelectsTheViewUnderThePointerLast)
{
    EXPECT_EQ(interaction.selected(), 1);
    show(View::quad);
    interaction.movePointer({390, 290});
    EXPECT_EQ(interaction.selected(), 4);
    interaction.movePointer({390, 310}); // beside the picture
    EXPECT_EQ(interaction.selected(), 4);
    show(View::single);
    EXPECT_EQ(interaction.selected(), 1);
}

TEST_F(InteractionTest, AClickInTheInsetAimsTheSelectedView)
{
    show(View::quad);
    interaction.movePointer({10, 290});
    press(Key::r);
    const Rect inset = interaction.rawArea(); // 120 x 120, over view 4
    EXPECT_EQ(inset.width, 120);
    click({inset.x + 60, inset.y + 30});
    interaction.movePointer({inset.x + 10, inset.y + 10});
    interaction.turnWheel(1);
    EXPECT_EQ(done(), "aim 3 at 500,250; ");
    EXPECT_EQ(interaction.selected(), 3);
    press(Key::r);
    click({inset.x + 60, inset.y + 30});
    EXPECT_EQ(interaction.selected(), 4);
    EXPECT_EQ(done(), "");
}

TEST_F(InteractionTest, KeysMoveTheCircleAndEnterKeepsIt)
{
    press(Key::c);
    EXPECT_EQ(interaction.mode(), Mode::circle);
    press(Key::left);
    press(Key::up, true);
    press(Key::right, true);
    press(Key::down);
    press(Key::plus);
    press(Key::minus, true);
    EXPECT_EQ(done(), "");
    press(Key::enter);
    EXPECT_EQ(done(), "circle 509,491,471; ");
    EXPECT_EQ(interaction.mode(), Mode::views);
}

TEST_F(InteractionTest, EscapeRestoresTheCircle)
{
    press(Key::c);
    press(Key::left);
    press(Key::escape);
    EXPECT_EQ(interaction.mode(), Mode::views);
    press(Key::c);
    EXPECT_EQ(interaction.circle().x, 500);
    press(Key::q);
    EXPECT_EQ(done(), "quit; ");
}

TEST_F(InteractionTest, TheCircleStaysWithinItsLimits)
{
    press(Key::c);
    for (int i = 0; i < 100; ++i) {
        press(Key::left, true);
        press(Key::down, true);
        press(Key::minus, true);
    }
    EXPECT_EQ(interaction.circle().x, 0);
    EXPECT_EQ(interaction.circle().y, 999);
    EXPECT_EQ(interaction.circle().radius, 16);
    for (int i = 0; i < 200; ++i)
        press(Key::plus, true);
    EXPECT_EQ(interaction.circle().radius, 1000);
}

TEST_F(InteractionTest, WhileTheCircleIsAdjustedTheMouseRests)
{
    interaction.movePointer({10, 10});
    press(Key::c);
    EXPECT_EQ(interaction.rawArea().height, 300);
    interaction.pressButton({200, 150}, 1);
    interaction.movePointer({220, 150});
    interaction.turnWheel(1);
    press(Key::m);
    EXPECT_EQ(done(), "");
}

TEST_F(InteractionTest, DigitsRecallPresets)
{
    show(View::single, 2);
    press(Key::p);
    EXPECT_EQ(interaction.mode(), Mode::presets);
    digit(3);
    digit(0);
    EXPECT_EQ(done(), "");
    digit(2);
    EXPECT_EQ(done(), "preset 1; ");
    EXPECT_EQ(interaction.mode(), Mode::views);
}

TEST_F(InteractionTest, PagesReachAllPresets)
{
    show(View::single, 11);
    press(Key::p);
    press(Key::left);
    EXPECT_EQ(interaction.firstPreset(), 0);
    press(Key::right);
    press(Key::right);
    EXPECT_EQ(interaction.firstPreset(), 9);
    digit(3);
    EXPECT_EQ(done(), "");
    digit(2);
    EXPECT_EQ(done(), "preset 10; ");
}

TEST_F(InteractionTest, PTwiceSavesAPreset)
{
    press(Key::p);
    press(Key::p);
    EXPECT_EQ(done(), "save preset; ");
    press(Key::p);
    press(Key::escape);
    EXPECT_EQ(interaction.mode(), Mode::views);
    EXPECT_EQ(done(), "");
}
