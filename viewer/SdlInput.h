// From SDL's events to what they mean.
#ifndef LUMOFE_VIEWER_SDL_INPUT_H
#define LUMOFE_VIEWER_SDL_INPUT_H

#include "Interaction.h"

#include <SDL.h>

namespace lumofe::viewer {

// Hands a key or mouse event on. False for every other event.
bool forward(const SDL_Event& event, Interaction& interaction);

} // namespace lumofe::viewer

#endif
