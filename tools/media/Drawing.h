// Scaling down, pasting and lettering pictures.
#ifndef LUMOFE_TOOLS_DRAWING_H
#define LUMOFE_TOOLS_DRAWING_H

#include "media/Image.h"

#include <string>

namespace lumofe {

struct Rgb {
    std::uint8_t r, g, b;
};

// A picture in one colour.
Image filled(Size size, Rgb colour);

// The picture at another size: each pixel is the mean of those that it covers, or the nearest one
// where it is scaled up. The size is at least 1 x 1.
Image scaled(const Image& image, Size size);

// Copies a picture into another, its top left corner at (x, y), clipped to the target.
void paste(Image& target, const Image& image, int x, int y);

// Draws a circle, the line half inside and half outside of the radius. The centre of pixel (column,
// row) is the point (column, row). Clipped to the target.
void drawCircle(Image& target, double x, double y, double radius, double lineWidth, Rgb colour);

// Rows that a line of text takes, and the columns of this one; both times the scale.
inline constexpr int kTextHeight = 12;
int textWidth(const std::string& text);

// Writes a line of ASCII text; other characters become question marks. (x, y) is its top left
// corner, a font pixel is scale x scale pixels. Clipped to the target.
void drawText(Image& target, int x, int y, int scale, const std::string& text, Rgb colour);

} // namespace lumofe

#endif
