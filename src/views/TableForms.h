// The engine's mapping tables as the kernels take them.
//
// m_pMapWork holds a second form of each of the three tables: for packed 24-bit frames a copy with
// byte offsets, for 4:2:0 frames a plan, once a table has served
// some frames.
#ifndef LUMOFE_TABLEFORMS_H
#define LUMOFE_TABLEFORMS_H

#include "FEDSP.h"
#include "kernels/RemapPlan.h"

#include <cstdint>

namespace fe {

// Maps a whole picture of w x h pixels in the engine's format, by the entries of one of the
// engine's tables from firstEntry on. The picture goes to out, or, when it is mapped by a plan and
// `placed` is not null, there instead; true then.
bool mapByTable(FEDSP& e, unsigned char* in, unsigned char* out, int* table,
                std::int64_t firstEntry, int w, int h, const PlanarPicture* placed = nullptr);

// Prints what mapByTable does, for a picture that is there already: the same table has mapped the
// same frame to it.
void printMapped(const FEDSP& e);

// The table as the kernel for the engine's format wants it: the table itself, or for packed 24-bit
// frames its copy. The copy is made when there is none of the first `entries` entries.
int* tableForFormat(FEDSP& e, int* table, std::int64_t entries);

// Drops the other form of the table that this address lies in, because the table changed. Other
// addresses change nothing.
void tableChanged(FEDSP& e, const int* table);

// Drops all of them, because the tables, the input's size or its format changed.
void tablesChanged(FEDSP& e);

// True when frames are mapped by a plan of this table.
bool hasPlan(const FEDSP& e, const int* table);

} // namespace fe

#endif
