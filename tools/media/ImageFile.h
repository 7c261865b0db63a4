// Still picture files: PNG, JPEG and BMP.
#ifndef LUMOFE_TOOLS_IMAGE_FILE_H
#define LUMOFE_TOOLS_IMAGE_FILE_H

#include "media/Image.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lumofe {

// Bytes of a file that is read.
inline constexpr std::size_t kLargestImageFile = std::size_t(256) << 20;

enum class ImageKind { png, jpeg, bmp };

// Decodes a picture by its content; a fourth channel is dropped. name stands for the file in
// messages. Throws Error for anything that is not a picture, and before decoding for one that is
// smaller or larger than the library takes as input, or than the given smallest size.
Image decodeImage(const std::vector<std::uint8_t>& file, const std::string& name,
                  Size smallest = kSmallestInput);

// jpegQuality: 1 to 100, of JPEG files only.
std::vector<std::uint8_t> encodeImage(const Image& image, ImageKind kind, int jpegQuality = 95);

// Throws Error, which says what to do, for a size outside these limits.
void checkInputSize(Size size, const std::string& name, Size smallest = kSmallestInput);

} // namespace lumofe

#endif
