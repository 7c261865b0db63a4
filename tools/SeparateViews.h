// Each perspective view of a layout as a picture or video of its own.
#ifndef LUMOFE_TOOLS_SEPARATE_VIEWS_H
#define LUMOFE_TOOLS_SEPARATE_VIEWS_H

#include "RenderPlan.h"

#include <vector>

namespace lumofe {

// What to render: the options themselves, or with RenderOptions::separate the single view that
// shows what view 1, 2, ... of the layout shows, into OUT-1.png, OUT-2.png and so on of OUT.png.
// Throws Error for a layout without perspective views beside one another, and for standard output.
std::vector<RenderOptions> viewsOf(const RenderOptions& options);

} // namespace lumofe

#endif
