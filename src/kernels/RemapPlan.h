// A compact form of a mapping table, for pictures that are mapped by the same table again and
// again: 5.5 bytes a pixel instead of 8, and less to compute for each.
//
// Four output pixels, a tile of 2 x 2, mostly lie so close together in the source that one window
// of 4 x 4 samples holds the neighbours of all. Others need two, one for the upper pixels and one
// for the lower. A tile keeps where its windows and its chroma sample are, and each pixel's place
// in its window and its fractions. Tiles that do not fit ("odd" ones) are mapped by the table
// itself, as are the columns that are left over. Blocks follow one another down a narrow strip, so
// that the source lines of a rotated view stay in the cache.
#ifndef LUMOFE_REMAPPLAN_H
#define LUMOFE_REMAPPLAN_H

#include "kernels/PlanBlock.h"
#include "kernels/RemapOps.h"

#include <cstddef>
#include <cstdint>

namespace fe {

// A plan, in memory of somebody else's.
struct RemapPlan {
    int w, h, stride;        // of the picture and of the source that it was made for
    std::size_t sourceBytes; // readable from the source's first sample on
    unsigned char* memory;   // planBytes(w, h) bytes
    std::size_t rows;        // pairs of output rows that are done
    std::size_t oddTiles;    // how many there are in them
};

// Bytes that a plan for a picture of w x h pixels takes; 0 when there can be none, as for odd
// sizes.
std::size_t planBytes(int w, int h);

// Goes on with a plan for a table of w * h entries, by so many pairs of output rows. False when it
// would not pay; then the memory's content is undefined.
bool makePlan(RemapPlan& plan, const int* table, const RemapOps& ops, std::size_t rows);

bool isComplete(const RemapPlan& plan);

// The planes of a 4:2:0 source that is read by index; the second chroma plane is there when the
// picture that is made of it has one.
struct PlanarSource {
    const unsigned char* luma;
    const unsigned char* chroma[2];
};

// The planes of a 4:2:0 picture, or of its place in a larger one. Pitches are the distances of two
// rows, bytes; those of a picture that is upside down are negative.
struct PlanarPicture {
    unsigned char* luma;
    std::ptrdiff_t lumaPitch;
    int chromaPlanes; // 1: pairs, 2: a plane for each
    unsigned char* chroma[2];
    std::ptrdiff_t chromaPitch;
};

// Maps a 4:2:0 picture by a complete plan and the table that it was made from: the same bytes as
// without it. `ops` must have a planRow.
void mapByPlan(const RemapPlan& plan, const int* table, const RemapOps& ops,
               const PlanarSource& src, const PlanarPicture& dst);

} // namespace fe

#endif
