#include "SdlInput.h"

#include "CommandLog.h"

#include <gtest/gtest.h>

using namespace lumofe;
using namespace lumofe::viewer;
using namespace lumofe::test;

namespace {

SDL_Event keyDown(SDL_Keycode symbol, SDL_Scancode code, Uint16 modifiers = 0, Uint8 repeat = 0)
{
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = symbol;
    event.key.keysym.scancode = code;
    event.key.keysym.mod = modifiers;
    event.key.repeat = repeat;
    return event;
}

struct SdlInput : testing::Test {
    CommandLog log;
    Interaction interaction{log, smallStage()};
};

} // namespace

TEST_F(SdlInput, DigitsCountByTheirPlaceOnTheKeyboard)
{
    EXPECT_TRUE(forward(keyDown(SDLK_AMPERSAND, SDL_SCANCODE_2), interaction));
    EXPECT_TRUE(forward(keyDown(SDLK_KP_4, SDL_SCANCODE_KP_4), interaction));
    EXPECT_EQ(log.text(), "layout quad; layout 180; ");
}

TEST_F(SdlInput, LettersCountByTheirMeaning)
{
    forward(keyDown(SDLK_m, SDL_SCANCODE_SEMICOLON), interaction);
    EXPECT_EQ(log.text(), "mount; ");
}

TEST_F(SdlInput, HeldKeysRepeatOnlyToMoveTheCircle)
{
    forward(keyDown(SDLK_m, SDL_SCANCODE_M, 0, 1), interaction);
    EXPECT_EQ(log.text(), "");
    forward(keyDown(SDLK_c, SDL_SCANCODE_C), interaction);
    forward(keyDown(SDLK_LEFT, SDL_SCANCODE_LEFT), interaction);
    forward(keyDown(SDLK_LEFT, SDL_SCANCODE_LEFT, 0, 1), interaction);
    forward(keyDown(SDLK_EQUALS, SDL_SCANCODE_EQUALS, KMOD_LSHIFT), interaction);
    EXPECT_EQ(interaction.circle().x, smallStage().circle.x - 2);
    EXPECT_EQ(interaction.circle().radius, smallStage().circle.radius + 10);
}

TEST_F(SdlInput, OnlyTheLeftButtonCounts)
{
    SDL_Event press{};
    press.type = SDL_MOUSEBUTTONDOWN;
    press.button.button = SDL_BUTTON_RIGHT;
    press.button.clicks = 2;
    EXPECT_FALSE(forward(press, interaction));
    press.button.button = SDL_BUTTON_LEFT;
    press.button.x = press.button.y = 10;
    EXPECT_TRUE(forward(press, interaction));
    EXPECT_EQ(log.text(), "reset 1; ");
}

TEST_F(SdlInput, TheWheelCountsUpwards)
{
    SDL_Event motion{};
    motion.type = SDL_MOUSEMOTION;
    motion.motion.x = motion.motion.y = 10;
    forward(motion, interaction);
    SDL_Event wheel{};
    wheel.type = SDL_MOUSEWHEEL;
    wheel.wheel.preciseY = -1;
    EXPECT_TRUE(forward(wheel, interaction));
    wheel.wheel.direction = SDL_MOUSEWHEEL_FLIPPED;
    forward(wheel, interaction);
    EXPECT_EQ(log.text(), "zoom 1 by -1; zoom 1 by 1; ");
}

TEST_F(SdlInput, OtherEventsAreLeft)
{
    SDL_Event other{};
    other.type = SDL_WINDOWEVENT;
    EXPECT_FALSE(forward(other, interaction));
}
