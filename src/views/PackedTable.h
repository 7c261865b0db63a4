// Mapping tables for packed 24-bit frames.
#ifndef LUMOFE_PACKEDTABLE_H
#define LUMOFE_PACKEDTABLE_H

#include "FEDSP.h"

namespace fe {

// The main table as the kernel for the engine's format wants it: the table itself, or for packed
// 24-bit frames a copy in m_pMapWork whose indices are byte offsets. The copy is made when there is
// none of that length.
int* tableForFormat(FEDSP& e, int entries);

// Drops the copy, because the table or the input's size changed.
void dropPackedTable(FEDSP& e);

} // namespace fe

#endif
