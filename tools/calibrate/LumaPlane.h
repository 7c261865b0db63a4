// Brightness of one picture, or of several of the same camera.
#ifndef LUMOFE_TOOLS_LUMA_PLANE_H
#define LUMOFE_TOOLS_LUMA_PLANE_H

#include "media/Image.h"

namespace lumofe {

// One value a pixel, 256 to a level of the 8-bit luma; top row first, no padding.
struct LumaPlane {
    Size size;
    std::vector<std::uint16_t> values;

    LumaPlane() = default;
    explicit LumaPlane(Size s) : size(s), values(std::size_t(s.width) * std::size_t(s.height)) {}

    std::uint16_t& at(int x, int y)
    {
        return values[std::size_t(y) * std::size_t(size.width) + std::size_t(x)];
    }
    std::uint16_t at(int x, int y) const
    {
        return values[std::size_t(y) * std::size_t(size.width) + std::size_t(x)];
    }
};

// The mean of pictures of equal size. From three on, each pixel leaves out its brightest one, so
// that a passing glare, or a picture that does not belong there, leaves no trace in the dark.
class LumaStack {
public:
    // The first picture decides on the size; the others must have it.
    void add(const Image& image);

    int count() const { return count_; }
    Size size() const { return size_; }

    // Of at least one picture.
    LumaPlane mean() const;

private:
    Size size_;
    int count_ = 0;
    std::vector<std::uint32_t> sums_;
    std::vector<std::uint8_t> brightest_;
};

// Means of factor x factor pixels; what is left at the right and at the bottom is dropped.
LumaPlane reduced(const LumaPlane& plane, int factor);

// Weighted mean of 5 x 5 pixels, binomial; the outermost pixels go on beyond the edges.
LumaPlane smoothed(const LumaPlane& plane);

} // namespace lumofe

#endif
