// The choice of the remapping kernels' inner loops.
#include "kernels/RemapOps.h"

#include "mapping/MapEntry.h"

#include <algorithm>

namespace fe {

std::int32_t reachOf(const int* table, std::size_t count)
{
    constexpr std::size_t kMaxSamples = 256;
    const std::size_t step = count / kMaxSamples + 1;
    std::int32_t reach = -1;
    for (std::size_t k = step / 2; k < count; k += step) {
        const MapEntry entry = loadEntry(table, k);
        const bool all = (entry.fractions & 0xFFFF) != 0 && (entry.fractions >> 16) != 0;
        if (all) reach = std::max(reach, entry.index);
    }
    return reach;
}

const RemapOps& remapOps(Isa isa)
{
    switch (isa) {
    case Isa::avx2:
        return kRemapAvx2;
    case Isa::ssse3:
        return kRemapSsse3;
    case Isa::sse2:
        return kRemapSse2;
    default:
        return kRemapPlain;
    }
}

} // namespace fe
