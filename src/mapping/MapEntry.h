// One entry of a mapping table. The format is documented in CBilinear.h.
#ifndef LUMOFE_MAPENTRY_H
#define LUMOFE_MAPENTRY_H

#include "engine/Numeric.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace fe {

struct MapEntry {
    std::uint32_t fractions; // row fraction in the low half, column fraction in the high half
    std::int32_t index;
};

inline constexpr std::size_t kMapEntryBytes = sizeof(MapEntry);
static_assert(kMapEntryBytes == 8);

// Tables carved from a host's block may be unaligned, so entries are copied.
inline MapEntry loadEntry(const void* table, std::size_t k)
{
    MapEntry entry;
    std::memcpy(&entry, static_cast<const unsigned char*>(table) + k * kMapEntryBytes,
                kMapEntryBytes);
    return entry;
}

inline void storeEntry(void* table, std::size_t k, MapEntry entry)
{
    std::memcpy(static_cast<unsigned char*>(table) + k * kMapEntryBytes, &entry, kMapEntryBytes);
}

// The entry of a source position, which must not be negative.
inline MapEntry entryAt(float row, float col, int pitch)
{
    const auto fraction = [](float position, int whole) {
        return std::uint32_t(trunc32(double((position - float(whole & 0xFFFF)) * 256))) & 0xFFFF;
    };
    const int row0 = trunc32(double(row));
    const int col0 = trunc32(double(col));
    return {fraction(row, row0) | fraction(col, col0) << 16,
            wrappingSum(std::uint32_t(row0) * std::uint32_t(pitch), col0)};
}

} // namespace fe

#endif
