// Scaling of one plane: the bytes of LM_Affine_check and LM_Affine_UV_check for a matrix that only
// scales, in two passes.
#ifndef LUMOFE_SCALEPLANE_H
#define LUMOFE_SCALEPLANE_H

#include "kernels/Isa.h"

namespace fe {

// A plane and its scaled copy, both tightly packed; sizes in pixels.
struct PlaneScaling {
    const unsigned char* src;
    int srcW, srcH;
    unsigned char* dst;
    int dstW, dstH;
    float stepX, stepY;    // source pixels per pixel
    int channels;          // bytes of a pixel, 1 or 2
    unsigned char outside; // what bytes without a source are set to
};

// Scales the plane. False, and nothing done, for those that only the affine warpers serve: extreme
// sizes, planes that overlap, and all when the instruction set is Isa::plain.
bool scalePlane(const PlaneScaling& plane, Isa isa);

inline constexpr int kScaleGroup = 8;    // bytes that may come from one window
inline constexpr int kScaleWindow = 16;  // bytes
inline constexpr int kScaleStep = 32;    // bytes that a pass writes at once, at most
inline constexpr int kScaleBlock = 1024; // bytes of a row that are described at once

// Where some bytes of each destination row lie in a source row.
struct ScaleGroup {
    // The weights of a byte and its right neighbour as 16-bit halves, in 1 / 2^14; what they lack
    // is in `rest`, in 1 / 2^16.
    alignas(32) unsigned int weights[kScaleGroup];
    float rest[kScaleGroup];
    // Shuffles a window's bytes to the two halves.
    unsigned int shuffle[kScaleGroup];
    int index[kScaleGroup]; // bytes from the row's start
};

// A piece of each destination row.
struct ScaleColumns {
    int count;     // bytes
    int steps;     // that hold them
    int channels;  // a byte's right neighbour is so far away
    bool windowed; // each group and its neighbours lie inside a window
    bool whole;    // nothing is in `rest`
    int window[kScaleBlock / kScaleGroup];
    // Those of the steps' bytes behind `count` are like the last one.
    ScaleGroup groups[kScaleBlock / kScaleGroup];
};

// Two source rows that were interpolated across, in 1 / 2^16, and the lower one's weight. The rows
// have kScaleBlock elements, 32-byte aligned.
struct ScaleRows {
    const float* top;
    const float* bottom;
    float weight;
};

// The passes.
struct ScaleOps {
    // Interpolates between the columns of one source row; writes whole steps.
    void (*across)(const ScaleColumns& columns, const unsigned char* row, float* out);
    // Interpolates between rows; writes `count` bytes.
    void (*down)(const ScaleRows& rows, unsigned char* out, int count);
};
extern const ScaleOps kScaleSse2, kScaleAvx2;

} // namespace fe

#endif
