// From SDL's events to what they mean.
#include "SdlInput.h"

#include <utility>

namespace lumofe::viewer {
namespace {

// By place, as some keyboards have digits with Shift only. -1: none.
int digitOf(SDL_Scancode code)
{
    if (code >= SDL_SCANCODE_1 && code <= SDL_SCANCODE_9) return code - SDL_SCANCODE_1 + 1;
    if (code >= SDL_SCANCODE_KP_1 && code <= SDL_SCANCODE_KP_9) return code - SDL_SCANCODE_KP_1 + 1;
    return code == SDL_SCANCODE_0 || code == SDL_SCANCODE_KP_0 ? 0 : -1;
}

Key keyOf(SDL_Keycode code)
{
    constexpr std::pair<SDL_Keycode, Key> kKeys[] = {
        {SDLK_c, Key::c},
        {SDLK_h, Key::h},
        {SDLK_m, Key::m},
        {SDLK_p, Key::p},
        {SDLK_q, Key::q},
        {SDLK_r, Key::r},
        {SDLK_s, Key::s},
        {SDLK_v, Key::v},
        {SDLK_SPACE, Key::space},
        {SDLK_ESCAPE, Key::escape},
        {SDLK_RETURN, Key::enter},
        {SDLK_KP_ENTER, Key::enter},
        {SDLK_PLUS, Key::plus},
        {SDLK_EQUALS, Key::plus}, // the same key with Shift, on many
                                  // keyboards
        {SDLK_KP_PLUS, Key::plus},
        {SDLK_MINUS, Key::minus},
        {SDLK_KP_MINUS, Key::minus},
        {SDLK_LEFT, Key::left},
        {SDLK_RIGHT, Key::right},
        {SDLK_UP, Key::up},
        {SDLK_DOWN, Key::down},
    };
    for (const auto& [sdl, key] : kKeys)
        if (sdl == code) return key;
    return Key::other;
}

// Keys that go on while they are held.
bool repeats(Key key)
{
    return key >= Key::plus;
}

KeyPress keyPress(const SDL_Keysym& symbol)
{
    KeyPress press{keyOf(symbol.sym), 0, (symbol.mod & KMOD_SHIFT) != 0};
    if (const int digit = digitOf(symbol.scancode); digit >= 0) {
        press.key = Key::digit;
        press.digit = digit;
    }
    return press;
}

Point pointOf(int x, int y)
{
    return {double(x), double(y)};
}

} // namespace

bool forward(const SDL_Event& event, Interaction& interaction)
{
    switch (event.type) {
    case SDL_KEYDOWN: {
        const KeyPress press = keyPress(event.key.keysym);
        if (event.key.repeat == 0 || repeats(press.key)) interaction.press(press);
        return true;
    }
    case SDL_MOUSEBUTTONDOWN:
        if (event.button.button != SDL_BUTTON_LEFT) return false;
        interaction.pressButton(pointOf(event.button.x, event.button.y), event.button.clicks);
        return true;
    case SDL_MOUSEBUTTONUP:
        if (event.button.button != SDL_BUTTON_LEFT) return false;
        interaction.releaseButton();
        return true;
    case SDL_MOUSEMOTION:
        interaction.movePointer(pointOf(event.motion.x, event.motion.y));
        return true;
    case SDL_MOUSEWHEEL: {
        const float up = event.wheel.preciseY;
        const bool flipped = event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED;
        interaction.turnWheel(double(flipped ? -up : up));
        return true;
    }
    default:
        return false;
    }
}

} // namespace lumofe::viewer
