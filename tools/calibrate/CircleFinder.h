// Finds the fisheye circle in pictures.
#ifndef LUMOFE_TOOLS_CIRCLE_FINDER_H
#define LUMOFE_TOOLS_CIRCLE_FINDER_H

#include "calibrate/CircleFit.h"
#include "calibrate/LumaPlane.h"

namespace lumofe {

// Confidence from which a circle can be used without a look at it.
inline constexpr double kConfident = 0.5;

// What speaks most against a circle.
enum class Doubt {
    littleRim,     // hardly any of the rim shows in the picture
    brokenRim,     // where the rim should be in the picture, much of it does not show
    raggedRim,     // what shows of it is too short or too uneven to tell the centre
    brightSurround // it is not dark outside
};

struct FoundCircle {
    FineCircle circle;
    double confidence = 0;   // 0 to 1
    double rimVisible = 0;   // share of the rim that lies in the picture
    double rimFound = 0;     // share of the rim where the picture turns dark on the circle
    double residual = 0;     // root mean square distance of the rim found there, pixels
    double contrast = 0;     // step at the rim, levels
    double surroundDark = 0; // share of the pixels outside the circle that are dark
    Doubt doubt = Doubt::littleRim;

    bool confident() const { return confidence >= kConfident; }
};

// Looks for the edge of something round on a darker surround, cut by the picture's borders or not.
// Nothing when there is no such thing at all. The same picture gives the same result always. Sizes
// are those that the library takes as input.
std::optional<FoundCircle> findCircle(const LumaPlane& plane);

} // namespace lumofe

#endif
