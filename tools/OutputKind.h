// What an output name asks for.
#ifndef LUMOFE_TOOLS_OUTPUT_KIND_H
#define LUMOFE_TOOLS_OUTPUT_KIND_H

#include "media/ImageFile.h"

#include <string>

namespace lumofe {

// A video is Y4M; ffmpeg writes encoded ones.
enum class OutputKind { png, jpeg, bmp, video, encoded, sameAsInput };

// By the extension, in either case; "-" is sameAsInput, an address as rtmp://host/name is encoded.
// Throws Error for anything else.
OutputKind outputKind(const std::string& path);

// With its dot, in lower case; empty when there is none.
std::string lowerExtension(const std::string& path);

bool isVideo(OutputKind kind);

// The still format; PNG for sameAsInput. Not for videos.
ImageKind imageKind(OutputKind kind);

} // namespace lumofe

#endif
