// Conversions between the pixel layouts.
#ifndef LUMOFE_TOOLS_PIXELS_H
#define LUMOFE_TOOLS_PIXELS_H

#include "media/Image.h"

namespace lumofe {

// BT.601 with full range, as in JPEG files. Chroma is the mean of 2 x 2 pixels; on the way back it
// is interpolated linearly between the centres of those blocks.
Frame420 toFrame420(const Image& image);
Image toImage(const Frame420& frame);

// Semi-planar and planar order of a frame of an even size; both buffers hold width * height * 3 / 2
// bytes and must not overlap. U comes first in the pairs.
void interleaveChroma(const std::uint8_t* planar, std::uint8_t* semiPlanar, Size size);
void separateChroma(const std::uint8_t* semiPlanar, std::uint8_t* planar, Size size);

// Without the last column and row where the width or height is odd.
Size evenSize(Size size);
Image cropToEven(Image image);
Frame420 cropToEven(Frame420 frame);

// Copies rows of rowBytes bytes in reverse order; the buffers must not overlap.
void copyUpsideDown(const std::uint8_t* src, std::uint8_t* dst, int rowBytes, int rows);

// Reverses the order of rows of rowBytes bytes.
void reverseRows(std::uint8_t* bytes, int rowBytes, int rows);

// Exchanges the first and third byte of each of so many 24-bit pixels.
void exchangeRedAndBlue(std::uint8_t* bytes, std::size_t pixels);
void exchangeRedAndBlue(Image& image);

} // namespace lumofe

#endif
