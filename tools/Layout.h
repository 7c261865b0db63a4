// The layouts: how many views they steer, and which sizes and formats come out right.
#ifndef LUMOFE_TOOLS_LAYOUT_H
#define LUMOFE_TOOLS_LAYOUT_H

#include "Mounting.h"
#include "media/Image.h"

namespace lumofe {

// The values are those of FE_ViewParams::nViewMode.
enum class View { quad = 1, ptz360 = 2, half180 = 4, single = 8 };

enum class PixelFormat { nv12, yv12, rgb };

inline constexpr int kMaxViews = 4;

// Height of the 360 layout's picture over that of its perspective views.
inline constexpr double kUpperPart = 1.538;

struct ZoomRange {
    int widest;
    int closest;
};

// What a layout is like on every mounting.
struct LayoutRule {
    View view;
    const char* name;
    int views;           // that are steered one by one
    int closestZoom;     // steps, on ceiling and floor; the widest is 0
    int closestWallZoom; // on the wall; the widest is 10
};

const LayoutRule& layoutRule(View view);

// Zoom steps of the layout's views on that mounting.
ZoomRange zoomRange(View view, Mount mount);

// Where the layout's view `number`, 1 and up, looks unless it is told otherwise. On the ceiling and
// the floor the views share a full turn in the order of a room's compass, tilted to see the walls;
// on the wall they look left, right, ahead and down.
Aim defaultAim(View view, Mount mount, int number);

// The format to feed so that the picture comes out right: the asked one, or NV12 where the library
// composes or scales that one only.
PixelFormat fedFormat(View view, PixelFormat asked);

// True for sizes that the library composes without a gap, a seam or a garbled strip from such an
// input. The single view takes every size.
bool composes(View view, Mount mount, Size screen, Size input);

// The size nearest to the asked one that composes; one that is too large for the input is shrunk
// in its own shape first.
Size nearestComposing(View view, Mount mount, Size asked, Size input);

// The largest size in the layout's natural shape that composes: 4:3, for the 360 layout and the 180
// layout of ceiling and floor 16:9. The single view's sides are multiples of 4.
Size defaultOutputSize(View view, Mount mount, Size input);

// Whether the polar unwrap of a circle of that radius is complete: the library gives up on larger
// ones half-way.
bool unwrapIsComplete(Size input, int radius);

} // namespace lumofe

#endif
