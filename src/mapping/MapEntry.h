// One entry of a mapping table. The format is documented in CBilinear.h.
#ifndef LUMOFE_MAPENTRY_H
#define LUMOFE_MAPENTRY_H

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

} // namespace fe

#endif
