// The command that dewarps a still, a folder of stills, or a video.
#ifndef LUMOFE_TOOLS_RENDER_COMMAND_H
#define LUMOFE_TOOLS_RENDER_COMMAND_H

#include "RenderPlan.h"

namespace lumofe {

// Throws Error for whatever cannot be done; then no output file is left, except of a video that
// broke off and of the other pictures of a folder. Throws Interrupted after a video was ended
// early.
void runRender(const RenderOptions& asked);

} // namespace lumofe

#endif
