// The composition of the quad and the 360 frame from their views.
#include "views/Compose.h"

#include "kernels/ReversedCopy.h"
#include "views/LayoutSizes.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace fe {

bool OutputWindow::holds(const RowCopy& rows) const
{
    return rows.rows > 0 && rows.offset >= 0 && rows.step >= rows.bytes && rows.end() <= size_;
}

void OutputWindow::copyRows(const RowCopy& rows) const
{
    for (std::int64_t r = 0; r < rows.rows; ++r) {
        const std::int64_t offset = rows.offset + r * rows.step;
        const std::int64_t first = std::max<std::int64_t>(0, -offset);
        const std::int64_t last = std::min(rows.bytes, size_ - offset);
        if (first < last)
            std::memcpy(dst_ + offset + first, rows.src + r * rows.srcStep + first,
                        std::size_t(last - first));
    }
}

void OutputWindow::mirrorRows(const RowCopy& rows, int elementBytes) const
{
    const std::int64_t elements = rows.bytes / elementBytes;
    for (std::int64_t r = 0; r < rows.rows; ++r) {
        const std::int64_t offset = rows.offset + r * rows.step;
        const unsigned char* src = rows.src + r * rows.srcStep;
        if (offset >= 0 && offset <= size_ - elements * elementBytes) {
            copyReversed(src + elementBytes, dst_ + offset, std::size_t(elements),
                         std::size_t(elementBytes));
            continue;
        }
        for (std::int64_t x = 0; x < elements; ++x)
            for (std::int64_t b = 0; b < elementBytes; ++b) {
                const std::int64_t at = offset + x * elementBytes + b;
                if (at >= 0 && at < size_) dst_[at] = src[(elements - x) * elementBytes + b];
            }
    }
}

namespace {

// The rows of a view's planes.
struct Planes {
    RowCopy rows[3];
    int count;
};

// Rows of chroma are counted 0, 2, 4 ... below the view's height. Without a source, only their
// places.
Planes planesOf(FORMAT format, const Placement& p, const unsigned char* src)
{
    const auto at = [src](std::int64_t offset) { return src ? src + offset : nullptr; };
    const std::int64_t frameLuma = p.frameW * p.frameH, viewLuma = p.w * p.h;
    const std::int64_t chromaRows = (p.h + 1) / 2;
    Planes planes{{{p.lumaOffset, p.frameW, src, p.w, p.lumaBytes, p.h}}, 1};
    if (format == FORMAT_NV12) {
        const std::int64_t step = p.frameW == p.w ? p.w & ~1 : p.frameW;
        planes.rows[planes.count++] = {
            frameLuma + p.pairOffset, step, at(viewLuma), p.w & ~1, p.w, chromaRows};
    } else if (format == FORMAT_YV12) {
        for (int plane = 0; plane < 2; ++plane)
            planes.rows[planes.count++] = {frameLuma + p.planeOffset[plane],
                                           p.frameW >> 1,
                                           at(viewLuma + plane * (viewLuma / 4)),
                                           p.w >> 1,
                                           p.w >> 1,
                                           chromaRows};
    }
    return planes;
}

// The panorama strip of the 360 layout, as wide as the frame.
Placement strip(int nW, int nH, int frameH)
{
    const std::int64_t w = nW, h = nH, top = stripTop(frameH), half = w >> 1;
    return {w,       h, w,          frameH,
            top * w, w, half * top, {half * top / 2, half * frameH / 2 + half * top / 2}};
}

} // namespace

Placement quadrant(int position, int nW, int nH)
{
    const bool right = position % 2 == 1, bottom = position >= 2;
    const std::int64_t w = nW, h = nH, quarter = (2 * w * 2 * h) >> 2;
    Placement p{w, h, 2 * w, 2 * h, 0, w, 0, {0, quarter}};
    if (bottom) {
        p.lumaOffset += 2 * w * h;
        p.pairOffset += w * h;
        for (std::int64_t& offset : p.planeOffset)
            offset += w * h / 2;
    }
    if (right) {
        // Kept: luma starts one byte late, so a row's last byte lands on the next row's first.
        p.lumaOffset += w + 1;
        p.pairOffset += w;
        for (std::int64_t& offset : p.planeOffset)
            offset += w >> 1;
    }
    return p;
}

Placement upperView(int position, int nW, int nH, int frameH)
{
    const std::int64_t w = nW, h = nH, quarter = (2 * w * frameH) >> 2;
    Placement p{w, h, 2 * w, frameH, 0, w, 0, {0, quarter}};
    if (position == 1) {
        // Kept: the right view's last column is dropped and the frame's column w not written.
        p.lumaOffset = w + 1;
        p.lumaBytes = w - 1;
        p.pairOffset = w;
        p.planeOffset[0] += w >> 1;
        p.planeOffset[1] += w >> 1;
    }
    return p;
}

void compose(const OutputWindow& out, FORMAT format, const Placement& place,
             const unsigned char* src)
{
    const Planes planes = planesOf(format, place, src);
    std::for_each_n(planes.rows, planes.count, [&](const RowCopy& rows) { out.copyRows(rows); });
}

std::optional<PlanarPicture> placeIn(const OutputWindow& out, FORMAT format, const Placement& place)
{
    const Planes planes = planesOf(format, place, nullptr);
    if (place.lumaBytes != place.w || planes.count == 1) return std::nullopt;
    for (int i = 0; i < planes.count; ++i) {
        if (!out.holds(planes.rows[i])) return std::nullopt;
        // A view that is higher than its frame: its luma lies where its chroma shall win.
        if (i > 0 && planes.rows[i].offset < planes.rows[i - 1].end()) return std::nullopt;
    }
    const int chromaPlanes = planes.count - 1;
    return PlanarPicture{out.at(planes.rows[0].offset),
                         std::ptrdiff_t(planes.rows[0].step),
                         chromaPlanes,
                         {out.at(planes.rows[1].offset), out.at(planes.rows[chromaPlanes].offset)},
                         std::ptrdiff_t(planes.rows[1].step)};
}

} // namespace fe

void FEDSP::SnapShotM1(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                       unsigned char* pSrc4, unsigned char* pDst, int nW, int nH)
{
    const unsigned char* const sources[4] = {pSrc1, pSrc2, pSrc3, pSrc4};
    const auto* source = std::find_if(std::begin(sources), std::end(sources),
                                      [](const unsigned char* src) { return src != nullptr; });
    if (source == std::end(sources) || nW <= 0 || nH <= 0) return;
    fe::compose(fe::OutputWindow(*this, pDst), m_nFormat,
                fe::quadrant(int(source - sources), nW, nH), *source);
}

void FEDSP::SnapShotM2(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                       unsigned char* pDst, int nW, int nH, float, int, int nFrameH)
{
    const unsigned char* upper = pSrc1 ? pSrc1 : pSrc2;
    if ((!upper && !pSrc3) || nW <= 0 || nH <= 0) return;
    fe::compose(fe::OutputWindow(*this, pDst), m_nFormat,
                upper ? fe::upperView(pSrc1 ? 0 : 1, nW, nH, nFrameH) : fe::strip(nW, nH, nFrameH),
                upper ? upper : pSrc3);
}
