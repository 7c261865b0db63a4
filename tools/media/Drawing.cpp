// Scaling down, pasting and lettering pictures.
#include "media/Drawing.h"

#include <algorithm>
#include <cmath>
#include <stb_easy_font.h>
#include <utility>
#include <vector>

namespace lumofe {
namespace {

// The pixels from..to that an output pixel covers along one side; never empty.
std::pair<int, int> covered(int index, int outSide, int inSide)
{
    const int from = int(std::int64_t(index) * inSide / outSide);
    const int to = int(std::int64_t(index + 1) * inSide / outSide);
    return {from, std::max(to, from + 1)};
}

void fillBox(Image& image, int x0, int y0, int x1, int y1, Rgb colour)
{
    for (int y = std::max(y0, 0); y < std::min(y1, image.size.height); ++y)
        for (int x = std::max(x0, 0); x < std::min(x1, image.size.width); ++x) {
            std::uint8_t* p = image.pixel(x, y);
            p[0] = colour.r;
            p[1] = colour.g;
            p[2] = colour.b;
        }
}

// The font's table begins at the space and ends before the rubout.
std::string printable(std::string text)
{
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

// As the font writes it; a box of the lettering has four of them.
struct Vertex {
    float x, y, z;
    std::uint8_t colour[4];
};

} // namespace

Image filled(Size size, Rgb colour)
{
    Image image(size);
    fillBox(image, 0, 0, size.width, size.height, colour);
    return image;
}

Image scaled(const Image& image, Size size)
{
    Image out(size);
    for (int y = 0; y < size.height; ++y) {
        const auto [top, bottom] = covered(y, size.height, image.size.height);
        for (int x = 0; x < size.width; ++x) {
            const auto [left, right] = covered(x, size.width, image.size.width);
            std::int64_t sum[3] = {};
            for (int row = top; row < bottom; ++row)
                for (int column = left; column < right; ++column)
                    for (int c = 0; c < 3; ++c)
                        sum[c] += image.pixel(column, row)[c];
            const std::int64_t count = std::int64_t(bottom - top) * (right - left);
            for (int c = 0; c < 3; ++c)
                out.pixel(x, y)[c] = std::uint8_t((sum[c] + count / 2) / count);
        }
    }
    return out;
}

void paste(Image& target, const Image& image, int x, int y)
{
    const int left = std::max(0, -x), right = std::min(image.size.width, target.size.width - x);
    if (left >= right) return;
    for (int row = std::max(0, -y); row < std::min(image.size.height, target.size.height - y);
         ++row)
        std::copy_n(image.pixel(left, row), 3 * (right - left), target.pixel(x + left, y + row));
}

void drawCircle(Image& target, double x, double y, double radius, double lineWidth, Rgb colour)
{
    const std::uint8_t ink[] = {colour.r, colour.g, colour.b};
    for (int row = 0; row < target.size.height; ++row) {
        for (int column = 0; column < target.size.width; ++column) {
            const double dx = column - x, dy = row - y;
            const double offLine = std::abs(std::sqrt(dx * dx + dy * dy) - radius);
            const double covered = std::clamp(lineWidth / 2 + 0.5 - offLine, 0.0, 1.0);
            if (covered <= 0) continue;
            std::uint8_t* p = target.pixel(column, row);
            for (int c = 0; c < 3; ++c)
                p[c] = std::uint8_t(std::lround(p[c] * (1 - covered) + ink[c] * covered));
        }
    }
}

int textWidth(const std::string& text)
{
    return stb_easy_font_width(printable(text).data());
}

void drawText(Image& target, int x, int y, int scale, const std::string& text, Rgb colour)
{
    std::string line = printable(text);
    std::vector<Vertex> vertices(line.size() * 64 + 4);
    const int boxes = stb_easy_font_print(0, 0, line.data(), nullptr, vertices.data(),
                                          int(vertices.size() * sizeof(Vertex)));
    for (int i = 0; i < boxes; ++i) {
        const Vertex& from = vertices[std::size_t(i) * 4];
        const Vertex& to = vertices[std::size_t(i) * 4 + 2];
        const auto at = [scale](float v) { return int(std::lround(v)) * scale; };
        fillBox(target, x + at(from.x), y + at(from.y), x + at(to.x), y + at(to.y), colour);
    }
}

} // namespace lumofe
