// The command that dewarps a still or a video.
#ifndef LUMOFE_TOOLS_RENDER_COMMAND_H
#define LUMOFE_TOOLS_RENDER_COMMAND_H

#include "RenderPlan.h"

namespace lumofe {

// Throws Error for whatever cannot be done; then no output file is left.
void runRender(const RenderOptions& asked);

} // namespace lumofe

#endif
