// Brightness of one picture, or of several of the same camera.
#include "calibrate/LumaPlane.h"

#include <algorithm>

namespace lumofe {
namespace {

constexpr int kTrimFrom = 3; // pictures

// BT.601, in 256ths.
std::uint8_t luma(const std::uint8_t* rgb)
{
    return std::uint8_t((77 * rgb[0] + 150 * rgb[1] + 29 * rgb[2] + 128) >> 8);
}

} // namespace

void LumaStack::add(const Image& image)
{
    const std::size_t pixels = image.bytes.size() / 3;
    if (count_ == 0) {
        size_ = image.size;
        sums_.assign(pixels, 0);
        brightest_.assign(pixels, 0);
    }
    ++count_;
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t level = luma(&image.bytes[3 * i]);
        sums_[i] += level;
        brightest_[i] = std::max(brightest_[i], level);
    }
}

LumaPlane LumaStack::mean() const
{
    const bool trim = count_ >= kTrimFrom;
    const std::uint32_t divisor = std::uint32_t(trim ? count_ - 1 : count_);
    LumaPlane plane(size_);
    for (std::size_t i = 0; i < plane.values.size(); ++i) {
        const std::uint64_t sum = sums_[i] - (trim ? brightest_[i] : 0u);
        plane.values[i] = std::uint16_t(sum * 256 / divisor);
    }
    return plane;
}

LumaPlane reduced(const LumaPlane& plane, int factor)
{
    LumaPlane out(Size{plane.size.width / factor, plane.size.height / factor});
    const std::uint32_t area = std::uint32_t(factor) * std::uint32_t(factor);
    for (int y = 0; y < out.size.height; ++y) {
        for (int x = 0; x < out.size.width; ++x) {
            std::uint32_t sum = 0;
            for (int row = y * factor; row < (y + 1) * factor; ++row)
                for (int column = x * factor; column < (x + 1) * factor; ++column)
                    sum += plane.at(column, row);
            out.at(x, y) = std::uint16_t(sum / area);
        }
    }
    return out;
}

LumaPlane smoothed(const LumaPlane& plane)
{
    constexpr std::uint32_t kWeights[] = {1, 4, 6, 4, 1};
    const auto pass = [&](const LumaPlane& from, int dx, int dy) {
        LumaPlane to(from.size);
        for (int y = 0; y < from.size.height; ++y) {
            for (int x = 0; x < from.size.width; ++x) {
                std::uint32_t sum = 8;
                for (int i = -2; i <= 2; ++i)
                    sum +=
                        kWeights[i + 2] * from.at(std::clamp(x + i * dx, 0, from.size.width - 1),
                                                  std::clamp(y + i * dy, 0, from.size.height - 1));
                to.at(x, y) = std::uint16_t(sum / 16);
            }
        }
        return to;
    };
    return pass(pass(plane, 1, 0), 0, 1);
}

} // namespace lumofe
