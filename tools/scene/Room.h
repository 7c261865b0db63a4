// The room of the test scene.
#ifndef LUMOFE_TOOLS_ROOM_H
#define LUMOFE_TOOLS_ROOM_H

#include "scene/Vec3.h"

namespace lumofe {

// Linear light, 0 to 1 each.
struct Colour {
    double r = 0, g = 0, b = 0;

    friend Colour operator+(Colour p, Colour q) { return {p.r + q.r, p.g + q.g, p.b + q.b}; }
    friend Colour operator*(Colour p, double f) { return {p.r * f, p.g * f, p.b * f}; }
};

// A square room around the origin: x and y from -kHalfWidth to kHalfWidth, z from 0 to kHeight. The
// north wall is blue, the east wall red, the south wall green and the west wall ochre; each carries
// its letter, white, as a person in the room reads it. The floor is checkered, with a compass
// needle whose red end points north; the ceiling is tiled, some tiles are lamps.
class Room {
public:
    static constexpr double kHalfWidth = 4;
    static constexpr double kHeight = 3.2;
    static constexpr double kLetterZ = 1.75; // centre of the letters
    static constexpr double kLetterHeight = 1.5;

    // What is seen from a point inside the room. direction need not have length 1.
    Colour trace(Vec3 origin, Vec3 direction) const;
};

} // namespace lumofe

#endif
