// Dewarps every frame of a video.
#ifndef LUMOFE_TOOLS_RENDER_VIDEO_H
#define LUMOFE_TOOLS_RENDER_VIDEO_H

#include "OutputKind.h"
#include "RenderPlan.h"
#include "video/VideoSource.h"

#include <vector>

namespace lumofe {

// Prints what departs from the options, and returns planFor()'s set-up.
DewarperSetup plannedSetup(const RenderOptions& options, Size input, bool video);

// Renders the views, of which each has an output of its own; ownOutput stands for "-". Throws Error
// for whatever cannot be done, and Interrupted after the outputs were completed early; with the
// name of `input` for the source.
void renderVideo(const std::vector<RenderOptions>& views, VideoSource& source,
                 const std::string& input, int ownOutput);

} // namespace lumofe

#endif
