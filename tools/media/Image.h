// Pictures in memory.
#ifndef LUMOFE_TOOLS_IMAGE_H
#define LUMOFE_TOOLS_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumofe {

struct Size {
    int width = 0; // pixels
    int height = 0;
    bool operator==(const Size&) const = default;
};

// Sizes that the library takes as input.
inline constexpr Size kSmallestInput{320, 240};
inline constexpr Size kLargestInput{4096, 4096};

// 24-bit picture: 3 * width bytes a row, red first, top row first, no padding.
struct Image {
    Size size;
    std::vector<std::uint8_t> bytes;

    Image() = default;
    explicit Image(Size s) : size(s), bytes(std::size_t(s.width) * std::size_t(s.height) * 3) {}

    std::uint8_t* pixel(int x, int y)
    {
        return bytes.data() + (std::size_t(y) * std::size_t(size.width) + std::size_t(x)) * 3;
    }
    const std::uint8_t* pixel(int x, int y) const
    {
        return bytes.data() + (std::size_t(y) * std::size_t(size.width) + std::size_t(x)) * 3;
    }
};

// Planar 4:2:0 frame: the luma plane, then the U plane, then the V plane. Odd sizes round the
// chroma planes up.
struct Frame420 {
    Size size;
    std::vector<std::uint8_t> bytes;

    Frame420() = default;
    explicit Frame420(Size s) : size(s), bytes(lumaBytes(s) + 2 * chromaBytes(s)) {}

    static Size chromaSize(Size s) { return {(s.width + 1) / 2, (s.height + 1) / 2}; }
    static std::size_t lumaBytes(Size s) { return std::size_t(s.width) * std::size_t(s.height); }
    static std::size_t chromaBytes(Size s) { return lumaBytes(chromaSize(s)); }

    // plane: 0 luma, 1 U, 2 V
    Size planeSize(int plane) const { return plane == 0 ? size : chromaSize(size); }
    std::size_t planeOffset(int plane) const
    {
        return plane == 0 ? 0 : lumaBytes(size) + std::size_t(plane - 1) * chromaBytes(size);
    }
    std::uint8_t* plane(int plane) { return bytes.data() + planeOffset(plane); }
    const std::uint8_t* plane(int plane) const { return bytes.data() + planeOffset(plane); }
};

} // namespace lumofe

#endif
