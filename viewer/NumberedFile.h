// Names for pictures and recordings that are not taken yet.
#ifndef LUMOFE_VIEWER_NUMBERED_FILE_H
#define LUMOFE_VIEWER_NUMBERED_FILE_H

#include <string>

namespace lumofe::viewer {

// Creates an empty file with the first free name of lumofe-view-0001, lumofe-view-0002 and so on,
// and returns its path. Two programs never get the same one. extension: with its dot. Throws Error
// when none can be created.
std::string createNumbered(const std::string& folder, const std::string& extension);

} // namespace lumofe::viewer

#endif
