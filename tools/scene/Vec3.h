// Points and directions of the test scene.
#ifndef LUMOFE_TOOLS_VEC3_H
#define LUMOFE_TOOLS_VEC3_H

namespace lumofe {

// World: x east, y north, z up, metres.
struct Vec3 {
    double x = 0, y = 0, z = 0;

    friend Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vec3 operator*(Vec3 a, double f) { return {a.x * f, a.y * f, a.z * f}; }
};

} // namespace lumofe

#endif
