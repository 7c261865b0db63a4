// Copying finished views into the caller's frame.
#ifndef LUMOFE_COMPOSE_H
#define LUMOFE_COMPOSE_H

#include "FEDSP.h"
#include "kernels/RemapPlan.h"

#include <cstdint>
#include <optional>

namespace fe {

// A view of w x h pixels and its place in a frame of frameW x frameH, all in luma pixels.
struct Placement {
    std::int64_t w, h;
    std::int64_t frameW, frameH;
    std::int64_t lumaOffset;
    std::int64_t lumaBytes;      // copied of each luma row
    std::int64_t pairOffset;     // of the view in an interleaved chroma plane, bytes
    std::int64_t planeOffset[2]; // of the view in each separate chroma plane, bytes
};

// A view of the quad layout: 0 and 1 above, 2 and 3 below.
Placement quadrant(int position, int w, int h);
// An upper view of the 360 layout, left or right, in a frame of frameH rows.
Placement upperView(int position, int w, int h, int frameH);

// Rows of `bytes` bytes: from src, `srcStep` apart, to `offset` in the output and on, `step` apart.
struct RowCopy {
    std::int64_t offset;
    std::int64_t step;
    const unsigned char* src;
    std::int64_t srcStep;
    std::int64_t bytes;
    std::int64_t rows;

    // In the output, behind the last byte.
    std::int64_t end() const { return offset + (rows - 1) * step + bytes; }
};

// The caller's frame while a frame is rendered: copies are clipped to its size. Hosts that call a
// composition method themselves bring a destination that is large enough.
class OutputWindow {
public:
    OutputWindow(const FEDSP& e, unsigned char* dst)
        : dst_(dst), size_(dst == e.m_pOutput ? e.m_nOutputBytes : INT64_MAX)
    {
    }

    // True when none of them would be clipped.
    bool holds(const RowCopy& rows) const;
    unsigned char* at(std::int64_t offset) const { return dst_ + offset; }
    void copyRows(const RowCopy& rows) const;
    // As above, each element x of a row taken from element `elements - x` of the source row.
    void mirrorRows(const RowCopy& rows, int elementBytes) const;

private:
    unsigned char* dst_;
    std::int64_t size_;
};

// Copies a view whose rows follow one another without padding to its place.
void compose(const OutputWindow& out, FORMAT format, const Placement& place,
             const unsigned char* src);

// The place itself as a 4:2:0 picture, for views that are mapped straight into the frame. None when
// the frame does not hold it whole, less than the view is copied or its planes lie over one
// another.
std::optional<PlanarPicture> placeIn(const OutputWindow& out, FORMAT format,
                                     const Placement& place);

} // namespace fe

#endif
