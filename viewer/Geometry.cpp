// Where things are in the window.
#include "Geometry.h"

#include <algorithm>
#include <cmath>

namespace lumofe::viewer {
namespace {

constexpr double kInsetShare = 0.4; // of the window's sides, at most
constexpr double kInsetMargin = 8;

} // namespace

Rect fitted(Size picture, const Rect& area)
{
    const double scale = std::min(area.width / picture.width, area.height / picture.height);
    const double width = std::max(1.0, std::floor(picture.width * scale + 0.5));
    const double height = std::max(1.0, std::floor(picture.height * scale + 0.5));
    return {area.x + std::floor((area.width - width) / 2),
            area.y + std::floor((area.height - height) / 2), width, height};
}

Rect insetArea(Size raw, Size window)
{
    const Rect inset = fitted(raw, {0, 0, window.width * kInsetShare, window.height * kInsetShare});
    return {window.width - kInsetMargin - inset.width, window.height - kInsetMargin - inset.height,
            inset.width, inset.height};
}

Rect viewArea(View view, int number, const Rect& picture)
{
    if (view == View::single || view == View::half180) return picture;
    const double width = picture.width / 2;
    const double height = picture.height / (view == View::quad ? 2 : kUpperPart);
    const int column = (number - 1) % 2, row = (number - 1) / 2;
    return {picture.x + column * width, picture.y + row * height, width, height};
}

int viewAt(View view, const Rect& picture, Point p)
{
    for (int number = 1; number <= std::max(1, layoutRule(view).views); ++number)
        if (viewArea(view, number, picture).contains(p)) return number;
    return 0;
}

RawPixel rawPixelAt(Size raw, const Rect& area, Point p)
{
    const double x = (p.x - area.x) / area.width * raw.width;
    const double y = (p.y - area.y) / area.height * raw.height;
    return {std::clamp(int(x), 0, raw.width - 1), std::clamp(int(y), 0, raw.height - 1)};
}

} // namespace lumofe::viewer
