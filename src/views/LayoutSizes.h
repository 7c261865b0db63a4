// The sizes of the parts of each layout, in pixels.
#ifndef LUMOFE_LAYOUTSIZES_H
#define LUMOFE_LAYOUTSIZES_H

namespace fe {

// Sizes of the input and the screen.
struct Extent {
    int inW, inH, screenW, screenH;

    bool exceeds() const { return screenW > inW || screenH > inH; }
};

struct Size {
    int w, h;

    bool operator==(const Size&) const = default;
};

// A view of the quad layout: half the screen, a multiple of 4. For screens larger than the input,
// the input over `fraction`.
Size quadViewSize(const Extent& extent, int fraction);
inline constexpr int kQuad12Fraction = 2;
// Kept: views 3 and 4 are smaller than views 1 and 2 then.
inline constexpr int kQuad34Fraction = 4;

// A perspective view of the 360 layout.
Size ptz360ViewSize(const Extent& extent);

// The panorama strip of the 360 layout. Its height can be negative.
struct Strip {
    int w, h;
    int top; // height of the part above it
};
Strip stripSize(const Extent& extent);

// Frame row where the strip of a frame of that height is placed.
int stripTop(int frameH);

// One half of the picture of the 180 layout.
Size half180Size(const Extent& extent);

} // namespace fe

#endif
