// Renders every still of a folder.
#ifndef LUMOFE_TOOLS_RENDER_FOLDER_H
#define LUMOFE_TOOLS_RENDER_FOLDER_H

#include "RenderPlan.h"

#include <functional>

namespace lumofe {

// Calls `render` for each PNG, JPEG and BMP file of the folder options.input, in the order of
// names, with an output of the same name in the folder options.output, which is made if it is
// missing. An Error of one is printed and the others go on; at the end an Error tells how many
// failed. Throws Error at once for folders that cannot be used.
void renderFolder(const RenderOptions& options,
                  const std::function<void(const RenderOptions&)>& render);

} // namespace lumofe

#endif
