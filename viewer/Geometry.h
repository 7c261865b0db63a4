// Where things are in the window. Lengths are window pixels unless it says otherwise.
#ifndef LUMOFE_VIEWER_GEOMETRY_H
#define LUMOFE_VIEWER_GEOMETRY_H

#include "Layout.h"

namespace lumofe::viewer {

struct Point {
    double x = 0;
    double y = 0;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool contains(Point p) const
    {
        return p.x >= x && p.y >= y && p.x < x + width && p.y < y + height;
    }
};

// The largest rectangle of the picture's shape in the middle of the area.
Rect fitted(Size picture, const Rect& area);

// Where the inset with the raw picture lies: in the window's lower right corner.
Rect insetArea(Size raw, Size window);

// The part of the layout's picture, which fills `picture`, that shows view `number`, 1 and up; all
// of it for the 180 layout.
Rect viewArea(View view, int number, const Rect& picture);

// The view that is seen there, 1 and up; 1 for all of the 180 layout; 0 beside the views.
int viewAt(View view, const Rect& picture, Point p);

// The raw picture's pixel that is drawn there, when the raw picture fills `area`.
struct RawPixel {
    int x, y;
};
RawPixel rawPixelAt(Size raw, const Rect& area, Point p);

} // namespace lumofe::viewer

#endif
