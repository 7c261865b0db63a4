// The sizes of the parts of each layout.
#include "views/LayoutSizes.h"

#include "engine/Numeric.h"

namespace fe {

namespace {

constexpr double kUpperPart = 1.538; // frame height over that of the 360 layout's upper views

// Height of the 360 layout's upper part, rounded to the nearest row.
int upperHeight(int frameH)
{
    return trunc32(frameH / kUpperPart + 0.5);
}

} // namespace

Size quadViewSize(const Extent& extent, int fraction)
{
    if (extent.exceeds()) return {extent.inW / fraction, extent.inH / fraction};
    return {trunc32(extent.screenW * 0.5 + 0.5) & ~3, trunc32(extent.screenH * 0.5 + 0.5) & ~3};
}

Size ptz360ViewSize(const Extent& extent)
{
    if (extent.exceeds()) return {extent.inW / 2, upperHeight(extent.inH)};
    return {4 * trunc32(extent.screenW * 0.5 / 4.0 + 0.5), upperHeight(extent.screenH) / 4 * 4};
}

Strip stripSize(const Extent& extent)
{
    // Kept: the screen's width is compared with the input's height too, unlike everywhere else.
    if (extent.screenW > extent.inW || extent.screenW > extent.inH) {
        const int top = upperHeight(extent.inH);
        return {2 * (extent.inW / 2), extent.screenH - top, top};
    }
    const int top = upperHeight(extent.screenH) / 4 * 4;
    return {2 * (trunc32(extent.screenW * 0.5 / 4.0 + 0.5) * 4), extent.screenH - top, top};
}

int stripTop(int frameH)
{
    return trunc32(frameH / kUpperPart) & ~3;
}

Size half180Size(const Extent& extent)
{
    if (extent.exceeds()) return {extent.inW, extent.inH / 2};
    return {extent.screenW, trunc32(extent.screenH * 0.5)};
}

} // namespace fe
