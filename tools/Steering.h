// Has the views of a video look where they shall, frame by frame.
#ifndef LUMOFE_TOOLS_STEERING_H
#define LUMOFE_TOOLS_STEERING_H

#include "RenderPlan.h"

namespace lumofe {

class Steering {
public:
    // rate: frames a second. The dewarper must outlive it.
    Steering(Dewarper& dewarper, const RenderOptions& options, double rate);

    // Aims for frame `number`, from 0 on without a gap. What stays where it is is not built anew.
    void aim(int number);

private:
    Dewarper& dewarper_;
    RenderOptions options_;
    const double rate_;
    Position position_;
};

} // namespace lumofe

#endif
