// Tables are built with luma-plane indices (row * pitch + column); the kernels for packed frames
// read byte offsets (row * 3 * width + 3 * column).
#include "views/PackedTable.h"

#include "engine/Buffers.h"
#include "mapping/MapEntry.h"

namespace fe {

int* tableForFormat(FEDSP& e, int entries)
{
    if (e.m_nFormat != FORMAT_RGB) return e.m_pMapTable;
    if (e.m_nPackedEntries >= entries) return e.m_pMapWork;

    const std::int64_t rowBytes = 3 * std::int64_t(e.m_nInputW);
    // An entry that an earlier, larger frame left behind may lie beyond the staged bytes.
    const std::int64_t last = std::int64_t(e.m_nCapacity[kStaged]) - rowBytes - 6;
    for (int k = 0; k < entries; ++k) {
        MapEntry entry = loadEntry(e.m_pMapTable, std::size_t(k));
        const int row = entry.index / e.m_nPitch;
        const int column = entry.index % e.m_nPitch;
        const std::int64_t offset = row * rowBytes + 3 * std::int64_t(column);
        entry.index = offset >= 0 && offset <= last ? int(offset) : 0;
        storeEntry(e.m_pMapWork, std::size_t(k), entry);
    }
    e.m_nPackedEntries = entries;
    return e.m_pMapWork;
}

void dropPackedTable(FEDSP& e)
{
    e.m_nPackedEntries = 0;
}

} // namespace fe
