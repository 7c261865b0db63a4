// Mapping tables for packed 24-bit frames.
#ifndef LUMOFE_PACKEDTABLE_H
#define LUMOFE_PACKEDTABLE_H

#include "FEDSP.h"

#include <cstdint>

namespace fe {

// One of the engine's three tables as the kernel for the engine's format wants it: the table
// itself, or for packed 24-bit frames a copy in m_pMapWork whose indices are byte offsets. The copy
// is made when there is none of the first `entries` entries.
int* tableForFormat(FEDSP& e, int* table, std::int64_t entries);

// Drops a table's copy, because the table changed.
void dropPackedTable(FEDSP& e, const int* table);

// Drops all copies, because the input's size or format changed.
void dropPackedTables(FEDSP& e);

} // namespace fe

#endif
