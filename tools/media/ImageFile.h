// Still picture files: PNG, JPEG and BMP.
#ifndef LUMOFE_TOOLS_IMAGE_FILE_H
#define LUMOFE_TOOLS_IMAGE_FILE_H

#include "media/Image.h"

#include <string>
#include <vector>

namespace lumofe {

enum class ImageKind { png, jpeg, bmp };

// Decodes a picture by its content; a fourth channel is dropped. name stands for the file in
// messages. Throws Error for anything that is not a picture, and before decoding for a picture of a
// size that the library does not take.
Image decodeImage(const std::vector<std::uint8_t>& file, const std::string& name);

// JPEG files get quality 95.
std::vector<std::uint8_t> encodeImage(const Image& image, ImageKind kind);

// The size and what to do about it, when the library does not take it as input; otherwise nothing.
void checkInputSize(Size size, const std::string& name);

} // namespace lumofe

#endif
