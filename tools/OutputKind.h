// What an output name asks for.
#ifndef LUMOFE_TOOLS_OUTPUT_KIND_H
#define LUMOFE_TOOLS_OUTPUT_KIND_H

#include "media/ImageFile.h"

#include <string>

namespace lumofe {

enum class OutputKind { png, jpeg, bmp, video, sameAsInput };

// By the extension, in either case; "-" is sameAsInput. Throws Error for anything else.
OutputKind outputKind(const std::string& path);

// The still format; PNG for sameAsInput. Not for video.
ImageKind imageKind(OutputKind kind);

} // namespace lumofe

#endif
