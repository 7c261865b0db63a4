// Which of a camera's presets looks nearest to a direction.
#ifndef LUMOFE_TOOLS_NEAREST_VIEW_H
#define LUMOFE_TOOLS_NEAREST_VIEW_H

#include "camera/CameraFile.h"

#include <optional>

namespace lumofe {

// The same direction as another layout's aims count pan: on ceiling and floor the single view's is
// 22.5 degrees less than the others'. From 0 to 360 there.
Aim convertedAim(const Aim& aim, View from, View to, Mount mount);

// Degrees between two directions of one layout, 0 to 180.
double angleBetween(const Aim& a, const Aim& b, Mount mount);

struct NearestView {
    const Preset* preset;
    int number; // of the view, 1 and up
    double degrees;
};

// Of the views of all presets, the first of those that look nearest to the direction, which is one
// of the single view's aims. Nothing without views.
std::optional<NearestView> nearestView(const CameraFile& camera, const Aim& direction);

} // namespace lumofe

#endif
