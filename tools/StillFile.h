// Writing stills by name.
#ifndef LUMOFE_TOOLS_STILL_FILE_H
#define LUMOFE_TOOLS_STILL_FILE_H

#include "media/Image.h"

#include <string>

namespace lumofe {

// Throws Error when the name is that of a video, or of nothing known; `what` stands for the picture
// in the message, as in "the scene".
void checkStillName(const std::string& path, const std::string& what);

// Writes a picture in the kind that the name's end says; "-" is PNG on standard output.
// jpegQuality: 1 to 100, of JPEG files only. Throws Error when it cannot be written; then there is
// no file.
void writeStill(const std::string& path, const Image& image, int jpegQuality = 95);

} // namespace lumofe

#endif
