// The composition of the quad and the 360 frame from their views.
#include "views/Compose.h"

#include "kernels/ReversedCopy.h"
#include "views/LayoutSizes.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace fe {

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

// A view and its place in a frame of frameW x frameH pixels, all in luma pixels.
struct Placement {
    const unsigned char* src;
    std::int64_t w, h;
    std::int64_t frameW, frameH;
    std::int64_t lumaOffset;
    std::int64_t lumaBytes;      // copied of each luma row
    std::int64_t pairOffset;     // of the view in an interleaved chroma plane, bytes
    std::int64_t planeOffset[2]; // of the view in each separate chroma plane, bytes
};

// Rows of chroma are counted 0, 2, 4 ... below the view's height.
void place(const OutputWindow& out, FORMAT format, const Placement& p)
{
    const std::int64_t frameLuma = p.frameW * p.frameH, viewLuma = p.w * p.h;
    const std::int64_t chromaRows = (p.h + 1) / 2;
    out.copyRows({p.lumaOffset, p.frameW, p.src, p.w, p.lumaBytes, p.h});
    if (format == FORMAT_NV12) {
        const std::int64_t step = p.frameW == p.w ? p.w & ~1 : p.frameW;
        out.copyRows({frameLuma + p.pairOffset, step, p.src + viewLuma, p.w & ~1, p.w, chromaRows});
    } else if (format == FORMAT_YV12) {
        for (int plane = 0; plane < 2; ++plane)
            out.copyRows({frameLuma + p.planeOffset[plane], p.frameW >> 1,
                          p.src + viewLuma + plane * (viewLuma / 4), p.w >> 1, p.w >> 1,
                          chromaRows});
    }
}

} // namespace

} // namespace fe

void FEDSP::SnapShotM1(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                       unsigned char* pSrc4, unsigned char* pDst, int nW, int nH)
{
    const unsigned char* const sources[4] = {pSrc1, pSrc2, pSrc3, pSrc4};
    const auto* source = std::find_if(std::begin(sources), std::end(sources),
                                      [](const unsigned char* src) { return src != nullptr; });
    if (source == std::end(sources) || nW <= 0 || nH <= 0) return;
    const int quadrant = int(source - sources);
    const bool right = quadrant % 2 == 1, bottom = quadrant >= 2;
    const std::int64_t w = nW, h = nH, quarter = (2 * w * 2 * h) >> 2;

    fe::Placement p{*source, w, h, 2 * w, 2 * h, 0, w, 0, {0, quarter}};
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
    fe::place(fe::OutputWindow(*this, pDst), m_nFormat, p);
}

void FEDSP::SnapShotM2(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                       unsigned char* pDst, int nW, int nH, float, int, int nFrameH)
{
    if ((!pSrc1 && !pSrc2 && !pSrc3) || nW <= 0 || nH <= 0) return;
    const std::int64_t w = nW, h = nH, H = nFrameH;
    const fe::OutputWindow out(*this, pDst);
    if (!pSrc1 && !pSrc2) { // the strip, as wide as the frame
        const std::int64_t top = fe::stripTop(nFrameH);
        const std::int64_t half = w >> 1;
        fe::place(out, m_nFormat,
                  {pSrc3,
                   w,
                   h,
                   w,
                   H,
                   top * w,
                   w,
                   half * top,
                   {half * top / 2, half * H / 2 + half * top / 2}});
        return;
    }
    const std::int64_t quarter = (2 * w * H) >> 2;
    fe::Placement p{pSrc1, w, h, 2 * w, H, 0, w, 0, {0, quarter}};
    if (!pSrc1) {
        // Kept: the right view's last column is dropped and the frame's column w not written.
        p.src = pSrc2;
        p.lumaOffset = w + 1;
        p.lumaBytes = w - 1;
        p.pairOffset = w;
        p.planeOffset[0] += w >> 1;
        p.planeOffset[1] += w >> 1;
    }
    fe::place(out, m_nFormat, p);
}
