// Where a camera's views look in the course of its tour.
#ifndef LUMOFE_TOOLS_TOUR_H
#define LUMOFE_TOOLS_TOUR_H

#include "camera/CameraFile.h"

namespace lumofe {

// Seconds from the start of the first stop until it begins anew; without repeat, until the last
// stop ends. 0 without stops.
double tourSeconds(const Tour& tour);

// Where the views look that many seconds after the start: at a stop's preset as long as it stays,
// then on the way to the next one, which begins and ends gently. On ceiling and floor pan and
// panorama turn the shorter way round. Offsets glide between two presets that have them and are
// left out otherwise. Before the start it is the first stop, after the end the last; the tour must
// have one, and the presets that it names.
Position tourAt(const CameraFile& camera, double seconds);

// The camera with the offsets of its tour's presets filled in, so that they glide too: a view's
// tilt alone moves it in steps that can be seen. The dewarper shows the tour's layout, and ends up
// anywhere.
CameraFile withOffsets(CameraFile camera, Dewarper& dewarper);

} // namespace lumofe

#endif
