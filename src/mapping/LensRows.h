// The inner loop of the lens model: mapping table entries of pixels in one row of a view.
#ifndef LUMOFE_LENSROWS_H
#define LUMOFE_LENSROWS_H

namespace fe {

constexpr float kRadiusScale = 0.5575035f * 2; // the lens law reaches its full angle at Lr / this
constexpr float kDegrees = 57.295645f;         // per radian, as the pictures need it

// A lens's field of view in degrees, and the tangent of its half, which fixes the view plane.
struct Lens {
    float fov;
    float tanHalf;
};
constexpr Lens kLens{160.0f, 5.67139f};
constexpr Lens kLargeInputLens{170.0f, 11.430509f};

// What all pixels of a view share. Lengths are input pixels.
struct LensView {
    float si, co; // sine and cosine of the view's angle
    float P, Q;   // the area's origin seen from the circle's centre, turned: column, row
    float centreRow, centreCol; // centre of the circle
    int Lr;                     // its radius
    float halfWidth;            // half of the input: nearer pixels are inside, whatever the radius
    float lastRow, lastCol;     // sources lie before these
    Lens lens;
    int pitch; // distance of two input rows
};

// What the pixels of one row share.
struct LensRow {
    float Ra; // the row's place in the area, before it is turned
    float m;  // keystone divisor
};

// Writes the entries of `count` neighbouring pixels, whose places along the row are in Ca, and says
// whether some of them have no source. Entries of these and of pixels outside the circle keep their
// content. Every variant writes the same bytes.
bool mapLensRow(const LensView& view, const LensRow& row, const float* Ca, int count,
                unsigned char* entries);
bool mapLensRowSse2(const LensView& view, const LensRow& row, const float* Ca, int count,
                    unsigned char* entries);
bool mapLensRowAvx2(const LensView& view, const LensRow& row, const float* Ca, int count,
                    unsigned char* entries);

} // namespace fe

#endif
