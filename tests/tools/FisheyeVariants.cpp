// Fisheye pictures of the test scene as cameras deliver them, with the circle that is in them.
#include "FisheyeVariants.h"

#include "media/Drawing.h"
#include "media/ImageFile.h"
#include "scene/FisheyeLens.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>

namespace lumofe::test {
namespace {

constexpr int kSourceCircle = 480, kSourceMargin = 8; // pixels
constexpr Size kSizes[] = {{320, 240}, {400, 300}, {400, 320}, {400, 226}, {320, 320}, {400, 400}};

// The circle with all of its rim, which the scene command's picture cuts off by a pixel.
const Image& source(Mount mount)
{
    static std::map<Mount, Image> pictures;
    Image& picture = pictures[mount];
    if (picture.bytes.empty())
        picture = renderPicture(Room(), cameraFor(mount), fisheyeLens(kSourceCircle),
                                {kSourceCircle + kSourceMargin, kSourceCircle + kSourceMargin});
    return picture;
}

// How a camera takes and delivers a picture.
struct Recipe {
    double gain, vignetting; // of the light; how much of it the rim loses
    int black;               // level of no light
    int noise;               // standard deviation, levels
    int blur;                // half the side of the box, pixels
};

bool inside(Size size, double x, double y)
{
    return x >= 0 && y >= 0 && x <= size.width - 1 && y <= size.height - 1;
}

double rimInside(const FisheyeVariant& variant)
{
    constexpr int kPoints = 720;
    int count = 0;
    for (int i = 0; i < kPoints; ++i) {
        const double angle = i * 2 * std::numbers::pi / kPoints;
        count += inside(variant.picture.size, variant.x + variant.radius * std::cos(angle),
                        variant.y + variant.radius * std::sin(angle));
    }
    return double(count) / kPoints;
}

// One in three circles lies wholly in the picture, one is cut at the top and the bottom, one
// anywhere; as far as the picture's shape lets them.
void placeCircle(FisheyeVariant& variant, Dice& dice, double leastRim)
{
    const Size size = variant.picture.size;
    const double shorter = std::min(size.width, size.height);
    const int way = dice.between(0, 2);
    do {
        const double largest = way == 0 ? shorter / 2 : std::min(0.7 * shorter, 0.5 * size.width);
        variant.radius = dice.real(0.35 * shorter, largest);
        const double spareX = size.width - 2 * variant.radius;
        const double spareY = way == 0   ? size.height - 2 * variant.radius
                              : way == 1 ? 0.1 * size.height
                                         : 0.7 * size.height;
        const double playX = way == 2 ? 0.7 * size.width : std::max(spareX, 0.0);
        variant.x = size.width / 2.0 + dice.real(-playX / 2, playX / 2);
        variant.y = size.height / 2.0 + dice.real(-spareY / 2, spareY / 2);
        variant.rimInside = rimInside(variant);
    } while (variant.rimInside < leastRim);
}

using Levels = std::array<double, 3>; // red, green, blue

// Adds what is seen between pixels; nothing outside.
void addSeen(Levels& sum, const Image& image, double x, double y, double share)
{
    if (x < 0 || y < 0 || x >= image.size.width - 1 || y >= image.size.height - 1) return;
    const int column = int(x), row = int(y);
    const double u = x - column, v = y - row;
    const std::uint8_t* top = image.pixel(column, row);
    const std::uint8_t* bottom = image.pixel(column, row + 1);
    for (std::size_t c = 0; c < 3; ++c)
        sum[c] += share * ((top[c] * (1 - u) + top[c + 3] * u) * (1 - v) +
                           (bottom[c] * (1 - u) + bottom[c + 3] * u) * v);
}

// Something dark that is close to the lens and covers a part of the rim; places in radii.
struct Shade {
    double x = 0, y = 0, radius = 0;

    bool covers(double u, double v) const
    {
        return (u - x) * (u - x) + (v - y) * (v - y) < radius * radius;
    }
};

Shade someShade(Dice& dice)
{
    const double angle = dice.real(0, 2 * std::numbers::pi);
    return {std::cos(angle), std::sin(angle), dice.oneIn(3) ? dice.real(0.2, 0.6) : 0.0};
}

void expose(FisheyeVariant& variant, const Image& from, const Recipe& recipe, const Shade& shade)
{
    constexpr double kCentre = kSourceCircle / 2;
    const auto addLight = [&](Levels& sum, double x, double y, double share) {
        const double u = (x - variant.x) / variant.radius, v = (y - variant.y) / variant.radius;
        const double q = u * u + v * v;
        const double light =
            (shade.covers(u, v) ? 0.05 : 1) * recipe.gain * (1 - recipe.vignetting * q * q);
        addSeen(sum, from, kCentre * (1 + u), kCentre * (1 + v), share * light);
    };
    for (int y = 0; y < variant.picture.size.height; ++y) {
        for (int x = 0; x < variant.picture.size.width; ++x) {
            const double toRim = std::hypot(x - variant.x, y - variant.y) - variant.radius;
            Levels sum{};
            if (toRim < -3)
                addLight(sum, x, y, 1);
            else if (toRim < 3) // the rim is drawn in quarters of a pixel
                for (const double dy : {-0.25, 0.25})
                    for (const double dx : {-0.25, 0.25})
                        addLight(sum, x + dx, y + dy, 0.25);
            for (std::size_t c = 0; c < 3; ++c)
                variant.picture.pixel(x, y)[c] =
                    std::uint8_t(std::clamp(sum[c] + recipe.black, 0.0, 255.0));
        }
    }
}

// Means along the rows or the columns; the outermost pixels go on beyond the picture's edges.
Image blurredAlong(const Image& image, int half, int dx, int dy)
{
    Image out(image.size);
    for (int y = 0; y < image.size.height; ++y) {
        for (int x = 0; x < image.size.width; ++x) {
            int sum[3] = {};
            for (int i = -half; i <= half; ++i) {
                const std::uint8_t* p =
                    image.pixel(std::clamp(x + i * dx, 0, image.size.width - 1),
                                std::clamp(y + i * dy, 0, image.size.height - 1));
                for (int c = 0; c < 3; ++c)
                    sum[c] += p[c];
            }
            for (int c = 0; c < 3; ++c)
                out.pixel(x, y)[c] = std::uint8_t(sum[c] / (2 * half + 1));
        }
    }
    return out;
}

// A glow that fades away from one of the corners, as of a lamp beside the lens.
void addGlow(Image& image, Dice& dice)
{
    const double cornerX = dice.oneIn(2) ? 0 : image.size.width;
    const double cornerY = dice.oneIn(2) ? 0 : image.size.height;
    const double reach = dice.real(0.08, 0.22) * image.size.width;
    const double strength = dice.real(60, 255);
    for (int y = 0; y < image.size.height; ++y) {
        for (int x = 0; x < image.size.width; ++x) {
            const double dx = (x - cornerX) / reach, dy = (y - cornerY) / reach;
            const double glow = strength * std::exp(-dx * dx - dy * dy);
            for (int c = 0; c < 3 && glow > 0.5; ++c) {
                std::uint8_t& level = image.pixel(x, y)[c];
                level = std::uint8_t(std::min(255.0, level + glow));
            }
        }
    }
}

void addLettering(Image& image, Dice& dice)
{
    const int scale = dice.between(1, 2), edge = 4;
    const std::string time = "2024-05-1" + std::to_string(dice.between(0, 9)) + " 12:34:56";
    const int bottom = image.size.height - kTextHeight * scale - edge;
    drawText(image, edge, dice.oneIn(2) ? edge : bottom, scale, time, {255, 255, 255});
    if (dice.oneIn(2))
        paste(image, filled({dice.between(16, 40), dice.between(8, 24)}, {40, 90, 200}),
              image.size.width - 44, edge);
}

} // namespace

void addNoise(Image& image, Dice& dice, int deviation)
{
    if (deviation == 0) return;
    for (std::uint8_t& level : image.bytes)
        level = std::uint8_t(std::clamp(level + deviation * dice.bell() + 0.5, 0.0, 255.0));
}

FisheyeVariant fisheyeVariant(std::uint32_t seed, double leastRim)
{
    Dice dice(seed);
    FisheyeVariant variant{Image(kSizes[dice.between(0, 5)]), 0, 0, 0, 0};
    placeCircle(variant, dice, leastRim);
    const Recipe recipe{dice.real(0.25, 1), dice.real(0, 0.6), dice.between(0, 24),
                        dice.between(0, 8), dice.between(0, 2)};
    const Mount mount = Mount(dice.between(0, 2));
    expose(variant, source(mount), recipe, someShade(dice));
    Image& picture = variant.picture;
    if (recipe.blur > 0)
        picture = blurredAlong(blurredAlong(picture, recipe.blur, 1, 0), recipe.blur, 0, 1);
    for (int corners = dice.between(0, 2); corners > 0; --corners)
        addGlow(picture, dice);
    addNoise(picture, dice, recipe.noise);
    if (dice.oneIn(2)) addLettering(picture, dice);
    if (dice.oneIn(2))
        picture = decodeImage(encodeImage(picture, ImageKind::jpeg, dice.between(40, 95)),
                              "variant", {1, 1});
    return variant;
}

} // namespace lumofe::test
