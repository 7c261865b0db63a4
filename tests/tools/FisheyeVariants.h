// Fisheye pictures of the test scene as cameras deliver them, with the circle that is in them.
#ifndef LUMOFE_TESTS_FISHEYE_VARIANTS_H
#define LUMOFE_TESTS_FISHEYE_VARIANTS_H

#include "media/Image.h"

#include <cstdint>
#include <random>

namespace lumofe::test {

// Whole numbers that are the same everywhere, which those of the standard's distributions are not.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) { engine_.discard(20); }

    // Both ends are included; the range is at most some millions.
    int between(int low, int high)
    {
        return low + int(engine_() / 8 % std::uint32_t(high - low + 1));
    }
    bool oneIn(int count) { return between(1, count) == 1; }
    // In steps of a 4096th of the range.
    double real(double low, double high) { return low + (high - low) * between(0, 4096) / 4096; }
    // Mean 0, standard deviation 1, and near enough to the bell curve: a sum of four even draws.
    double bell()
    {
        const std::uint32_t bits = std::uint32_t(engine_()) >> 3;
        const std::uint32_t sum =
            (bits & 127) + (bits >> 7 & 127) + (bits >> 14 & 127) + (bits >> 21);
        return (double(sum) - 254) / 73.9;
    }

private:
    std::minstd_rand engine_;
};

// Adds noise of that standard deviation, levels.
void addNoise(Image& image, Dice& dice, int deviation);

struct FisheyeVariant {
    Image picture;
    double x, y,
        radius;       // of the circle, pixels; the centre of pixel (column, row) is (column, row)
    double rimInside; // share of the rim that lies in the picture
};

// A picture of 320 x 240 to 400 x 400 pixels. Seeds choose the mounting, where the circle lies and
// how it is cut, exposure, something dark that covers the rim, noise, softness and vignetting of
// the rim, glowing corners, lettering, and JPEG artefacts. At least leastRim of the rim lies in the
// picture.
FisheyeVariant fisheyeVariant(std::uint32_t seed, double leastRim = 0.6);

} // namespace lumofe::test

#endif
