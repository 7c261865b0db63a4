// Has the views of a video look where they shall, frame by frame.
#include "Steering.h"

#include "camera/Tour.h"

#include <utility>

namespace lumofe {

Steering::Steering(Dewarper& dewarper, const RenderOptions& options, double rate)
    : dewarper_(dewarper), options_(options), rate_(rate)
{
    if (options.tour) options_.camera = withOffsets(*options.camera, dewarper);
}

void Steering::aim(int number)
{
    if (number > 0 && !moves(options_)) return;
    Position position = positionFor(options_, number, rate_);
    if (number > 0 && position == position_) return;
    dewarper_.aim(position.views);
    if (position.panoOffset != dewarper_.setup().panoOffset)
        dewarper_.turnPanorama(position.panoOffset);
    position_ = std::move(position);
}

} // namespace lumofe
