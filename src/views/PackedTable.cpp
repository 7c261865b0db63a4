// Tables are built with luma-plane indices (row * pitch + column); the kernels for packed frames
// read byte offsets (row * 3 * width + 3 * column).
#include "views/PackedTable.h"

#include "engine/Buffers.h"
#include "mapping/MapEntry.h"

#include <algorithm>
#include <iterator>

namespace fe {

namespace {

// The copies follow one another in m_pMapWork: main table, then the two sub-view tables.
struct Copy {
    int number;
    std::size_t offset; // bytes
};

Copy copyOf(const FEDSP& e, const int* table)
{
    if (table == e.m_pSubMapA) return {1, e.m_nCapacity[kMapTable]};
    if (table == e.m_pSubMapB) return {2, e.m_nCapacity[kMapTable] + e.m_nCapacity[kSubMapA]};
    return {0, 0};
}

} // namespace

int* tableForFormat(FEDSP& e, int* table, std::int64_t entries)
{
    if (e.m_nFormat != FORMAT_RGB) return table;
    const Copy where = copyOf(e, table);
    int* copy = e.m_pMapWork + where.offset / sizeof(int);
    int& upToDate = e.m_nPackedEntries[where.number];
    if (upToDate >= entries) return copy;

    const std::int64_t rowBytes = 3 * std::int64_t(e.m_nInputW);
    // An entry that an earlier, larger frame left behind may lie beyond the staged bytes.
    const std::int64_t last = std::int64_t(e.m_nCapacity[kStaged]) - rowBytes - 6;
    for (std::int64_t k = 0; k < entries; ++k) {
        MapEntry entry = loadEntry(table, std::size_t(k));
        const int row = entry.index / e.m_nPitch;
        const int column = entry.index % e.m_nPitch;
        const std::int64_t offset = row * rowBytes + 3 * std::int64_t(column);
        entry.index = offset >= 0 && offset <= last ? int(offset) : 0;
        storeEntry(copy, std::size_t(k), entry);
    }
    upToDate = int(entries);
    return copy;
}

void dropPackedTable(FEDSP& e, const int* table)
{
    e.m_nPackedEntries[copyOf(e, table).number] = 0;
}

void dropPackedTables(FEDSP& e)
{
    std::fill(std::begin(e.m_nPackedEntries), std::end(e.m_nPackedEntries), 0);
}

} // namespace fe
