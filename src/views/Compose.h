// Copying finished views into the caller's frame.
#ifndef LUMOFE_COMPOSE_H
#define LUMOFE_COMPOSE_H

#include "FEDSP.h"

#include <cstdint>

namespace fe {

// Rows of `bytes` bytes: from src, `srcStep` apart, to `offset` in the output and on, `step` apart.
struct RowCopy {
    std::int64_t offset;
    std::int64_t step;
    const unsigned char* src;
    std::int64_t srcStep;
    std::int64_t bytes;
    std::int64_t rows;
};

// The caller's frame while a frame is rendered: copies are clipped to its size. Hosts that call a
// composition method themselves bring a destination that is large enough.
class OutputWindow {
public:
    OutputWindow(const FEDSP& e, unsigned char* dst)
        : dst_(dst), size_(dst == e.m_pOutput ? e.m_nOutputBytes : INT64_MAX)
    {
    }

    void copyRows(const RowCopy& rows) const;
    // As above, each element x of a row taken from element `elements - x` of the source row.
    void mirrorRows(const RowCopy& rows, int elementBytes) const;

private:
    unsigned char* dst_;
    std::int64_t size_;
};

} // namespace fe

#endif
