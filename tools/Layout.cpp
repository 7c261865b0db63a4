// The layouts: how many views they steer, and which sizes and formats come out right.
#include "Layout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace lumofe {
namespace {

// clang-format off
constexpr LayoutRule kRules[] = {
    {View::quad,    "quad",   4, 44, 44},
    {View::ptz360,  "360",    2, 44, 44},
    {View::half180, "180",    0,  0, 10},
    {View::single,  "single", 1, 88, 70},
};
// clang-format on

constexpr int kWidestWallZoom = 10;
constexpr int kPanoramaColumns = 1080;

// Steps of a composing frame's width and height, pixels.
Size sizeStep(View view, Mount mount)
{
    switch (view) {
    case View::quad: // halves are multiples of 4
        return {8, 8};
    case View::ptz360:
        return {8, 2};
    case View::half180: // quarters of luma rows begin on a chroma row; on the wall, eighths
        return {2, mount == Mount::wall ? 8 : 4};
    case View::single:
        break;
    }
    return {1, 1};
}

// The largest frame from such an input.
Size largestScreen(View view, Size input)
{
    // The 360 layout compares the width with the input's height too.
    return view == View::ptz360 ? Size{std::min(input.width, input.height), input.height} : input;
}

// The 360 layout sizes its upper views and places its strip by two roundings of the same height,
// which leave a gap unless they agree.
bool stripMeetsViews(int height)
{
    const double upper = height / kUpperPart;
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): as the library rounds
    return (int(upper + 0.5) & ~3) == (int(upper) & ~3);
}

Size naturalShape(View view, Mount mount)
{
    // The wall's panorama is cut from a square, the others span half a turn.
    const bool wide = view == View::ptz360 || (view == View::half180 && mount != Mount::wall);
    return wide ? Size{16, 9} : Size{4, 3};
}

int nearestMultiple(double value, int step, int highest)
{
    const int nearest = int(std::lround(value / step)) * step;
    return std::clamp(nearest, step, highest / step * step);
}

} // namespace

const LayoutRule& layoutRule(View view)
{
    return *std::ranges::find(kRules, view, &LayoutRule::view);
}

ZoomRange zoomRange(View view, Mount mount)
{
    const LayoutRule& rule = layoutRule(view);
    if (mount == Mount::wall) return {kWidestWallZoom, rule.closestWallZoom};
    return {0, rule.closestZoom};
}

Aim defaultAim(View view, Mount mount, int number)
{
    if (view == View::single) return {0, mountRule(mount).defaultTilt, 0};
    if (mount == Mount::wall) {
        constexpr Aim kWallAims[] = {{-45, 0, 0}, {45, 0, 0}, {0, 0, 30}, {0, 60, 30}};
        return kWallAims[number - 1];
    }
    // Further out, the views would reach beyond the circle.
    const double tilt = mount == Mount::ceiling ? 80 : -80;
    const double clockwise = 360.0 / layoutRule(view).views * (number - 1);
    // The floor camera sees the room's compass the other way round.
    const bool turned = mount == Mount::floor && clockwise > 0;
    return {turned ? 360 - clockwise : clockwise, tilt, 0};
}

PixelFormat fedFormat(View view, PixelFormat asked)
{
    const bool planarIsRight = view == View::quad;
    if (view == View::single || (planarIsRight && asked == PixelFormat::yv12)) return asked;
    return PixelFormat::nv12;
}

bool composes(View view, Mount mount, Size screen, Size input)
{
    if (view == View::single) return true;
    const Size step = sizeStep(view, mount), most = largestScreen(view, input);
    return screen.width > 0 && screen.height > 0 && screen.width % step.width == 0 &&
           screen.height % step.height == 0 && screen.width <= most.width &&
           screen.height <= most.height && (view != View::ptz360 || stripMeetsViews(screen.height));
}

Size nearestComposing(View view, Mount mount, Size asked, Size input)
{
    if (composes(view, mount, asked, input)) return asked;
    const Size step = sizeStep(view, mount), most = largestScreen(view, input);
    const double shrink =
        std::min({1.0, double(most.width) / asked.width, double(most.height) / asked.height});
    const double height = asked.height * shrink;
    Size size{nearestMultiple(asked.width * shrink, step.width, most.width),
              nearestMultiple(height, step.height, most.height)};
    // Every second height or so meets the strip: the search is short.
    const int middle = size.height;
    for (int away = 0; !composes(view, mount, size, input); away += step.height) {
        const int below = middle - away, above = middle + away;
        const bool first = std::abs(below - height) <= std::abs(above - height);
        size.height = first ? below : above;
        if (!composes(view, mount, size, input)) size.height = first ? above : below;
    }
    return size;
}

Size defaultOutputSize(View view, Mount mount, Size input)
{
    const Size shape = naturalShape(view, mount), most = largestScreen(view, input);
    // Sides that are both multiples of 4 in the ratio 4:3 are multiples of 16 by 12.
    const Size unit = shape.width == 4 ? Size{16, 12} : shape;
    int units = std::min(most.width / unit.width, most.height / unit.height);
    while (!composes(view, mount, {unit.width * units, unit.height * units}, input))
        --units;
    return {unit.width * units, unit.height * units};
}

bool unwrapIsComplete(Size input, int radius)
{
    return std::ptrdiff_t(radius - 3) * kPanoramaColumns <=
           std::ptrdiff_t(input.width) * input.height;
}

} // namespace lumofe
