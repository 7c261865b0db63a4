// Steering that waits for the next frames: the library takes one step of one view a frame.
#ifndef LUMOFE_VIEWER_STEP_QUEUE_H
#define LUMOFE_VIEWER_STEP_QUEUE_H

#include "Dewarper.h"

#include <array>
#include <optional>

namespace lumofe::viewer {

class StepQueue {
public:
    struct ViewStep {
        int view; // 1 and up
        Step step;
    };

    // Units of Step; fractions add up.
    void add(int view, double pan, double tilt, double zoom);

    // Whether next() has something.
    bool pending() const;

    // What the next frame shall take, the larger one of pan and tilt with the zoom; the other one
    // stays for the frame after it. Nothing: no whole step waits.
    std::optional<ViewStep> next();

    void clear() { waiting_ = {}; }

private:
    struct Amount {
        double pan = 0, tilt = 0, zoom = 0;
    };
    std::array<Amount, kMaxViews> waiting_;
};

} // namespace lumofe::viewer

#endif
