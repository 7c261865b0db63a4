// Inner loops of the remapping kernels. Every variant writes the same bytes as the plain one for
// any table whatever. Of the source it reads what the plain one reads, and at most bytes between
// those and the plane's first one.
#ifndef LUMOFE_REMAPOPS_H
#define LUMOFE_REMAPOPS_H

#include "kernels/Isa.h"
#include "kernels/PlanBlock.h"

#include <cstddef>
#include <cstdint>

namespace fe {

// A source stride, made ready for dividing numbers below 2^31 by it: n / stride is
// n * multiplier >> shift. Source: Granlund, Montgomery, "Division by invariant integers using
// multiplication", PLDI 1994.
struct Divider {
    int stride; // positive
    std::uint32_t multiplier;
    int shift;
    explicit Divider(int positive);
};

// Tables have two 32-bit words an entry, see CBilinear.h; they may be unaligned.
struct RemapOps {
    // One byte a pixel. `count` entries; `stride` is the distance of two rows; `reach` is reachOf()
    // of this table or of one that it is a part of. Samples are fetched into the cache for the
    // entry `ahead` bytes from each, which must exist, and the table twice as far.
    void (*luma)(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
                 int stride, std::int32_t reach, std::size_t ahead);
    // Three bytes a pixel; indices and rowBytes count bytes.
    void (*packed)(const unsigned char* src, unsigned char* dst, const int* table,
                   std::size_t count, std::ptrdiff_t rowBytes, std::int32_t reach,
                   std::size_t ahead);
    // The same; bytes 0 and 2 of a pixel change places.
    void (*packedSwapped)(const unsigned char* src, unsigned char* dst, const int* table,
                          std::size_t count, std::ptrdiff_t rowBytes, std::int32_t reach,
                          std::size_t ahead);
    // Index of the chroma sample of each second entry: `count` indices of 2 * count - 1 entries.
    void (*chromaIndices)(std::int32_t* indices, const int* table, std::size_t count,
                          const Divider& stride);
    // Maps neighbouring blocks of a plan. Reads the whole windows. Null where a plan would not pay.
    void (*planRow)(const PlanRow& row);
};

// A high index all of whose neighbours have a weight: those of lower indices exist, too. -1 if
// there is none. Looks at some of the entries only.
std::int32_t reachOf(const int* table, std::size_t count);

extern const RemapOps kRemapPlain, kRemapSse2, kRemapSsse3, kRemapAvx2;

// The variant for an instruction set that the processor has.
const RemapOps& remapOps(Isa isa);

} // namespace fe

#endif
