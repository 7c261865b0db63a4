// What keys and mouse have the viewer do.
#ifndef LUMOFE_VIEWER_COMMANDS_H
#define LUMOFE_VIEWER_COMMANDS_H

#include "Dewarper.h"
#include "Geometry.h"

namespace lumofe::viewer {

// Views are counted from 1; the 180 layout's panorama is view 1.
class Commands {
public:
    virtual ~Commands() = default;

    virtual void showLayout(View view) = 0;
    virtual void nextMount() = 0;

    // Has a view's picture follow the pointer: shares of the view's width and height.
    virtual void drag(int view, double across, double down) = 0;
    // Notches of the wheel; positive: closer.
    virtual void zoom(int view, double notches) = 0;
    virtual void reset(int view) = 0;
    virtual void aimAt(int view, RawPixel pixel) = 0;

    virtual void keepCircle(const Circle& circle) = 0;

    virtual void savePreset() = 0;
    virtual void recallPreset(int index) = 0; // from 0 on; there is one

    virtual void savePicture() = 0;
    virtual void toggleRecording() = 0;
    virtual void quit() = 0;
};

} // namespace lumofe::viewer

#endif
