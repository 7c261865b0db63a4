// How much of each working buffer a frame takes.
#ifndef LUMOFE_LAYOUTNEEDS_H
#define LUMOFE_LAYOUTNEEDS_H

#include "engine/Buffers.h"

namespace fe {

// Bytes that the renderers of the current layout use of each buffer for a frame of w x h pixels
// that is mapped as `format`. They depend on the frame, the screen, the circle and the mounting.
std::array<std::int64_t, kBufferCount> layoutNeeds(const FEDSP& e, int w, int h, FORMAT format);

} // namespace fe

#endif
