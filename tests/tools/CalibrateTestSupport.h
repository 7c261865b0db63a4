// What the tests of finding circles share: discs as pictures.
#ifndef LUMOFE_TESTS_CALIBRATE_TEST_SUPPORT_H
#define LUMOFE_TESTS_CALIBRATE_TEST_SUPPORT_H

#include "FisheyeVariants.h"
#include "calibrate/CircleFit.h"
#include "calibrate/LumaPlane.h"
#include "media/Drawing.h"

namespace lumofe::test {

inline Image withDisc(Image image, const FineCircle& disc, Rgb colour)
{
    drawCircle(image, disc.x, disc.y, disc.radius / 2, disc.radius, colour);
    return image;
}

inline LumaPlane planeOf(const Image& image)
{
    LumaStack stack;
    stack.add(image);
    return stack.mean();
}

inline Image withNoise(Image image, Dice& dice, int deviation)
{
    addNoise(image, dice, deviation);
    return image;
}

} // namespace lumofe::test

#endif
