// The choice of the remapping kernels' inner loops.
#include "kernels/RemapOps.h"

#include "mapping/MapEntry.h"

#include <algorithm>

namespace fe {

// With 2^(s-1) < stride <= 2^s the multiplier is floor(2^(31 + s) / stride) + 1.
Divider::Divider(int positive) : stride(positive), multiplier(0), shift(31)
{
    while ((std::int64_t(1) << (shift - 31)) < stride)
        ++shift;
    multiplier = std::uint32_t((std::uint64_t(1) << shift) / std::uint32_t(stride) + 1);
}

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
