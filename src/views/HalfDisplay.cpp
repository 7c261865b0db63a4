// The composition of the 180 frame: the two halves of an unwrap one above the other, or one
// picture.
#include "FEDSP.h"

#include "views/Compose.h"

namespace {

// A plane of samples of the picture and of the frame; sizes in bytes.
struct Plane {
    std::int64_t srcOffset, srcStep;
    std::int64_t dstOffset, dstStep;
    std::int64_t rows;
    int elementBytes;         // a mirror moves such elements
    std::int64_t upperBytes;  // of the upper strip's rows
    std::int64_t lowerColumn; // where the second half of a row begins
    std::int64_t lowerBytes;
    std::int64_t lowerRow; // of the frame, where the lower strip begins
    std::int64_t wholeBytes;
    std::int64_t wallRow; // of the frame, where a single picture begins
};

struct Composer {
    fe::OutputWindow out;
    const unsigned char* img;
    int camPos;

    void upper(const Plane& p) const { strip(p, 0, 0, p.upperBytes); }
    void lower(const Plane& p) const { strip(p, p.lowerRow, p.lowerColumn, p.lowerBytes); }
    void whole(const Plane& p) const { out.copyRows(rowsAt(p, p.wallRow, 0, p.wholeBytes)); }

private:
    fe::RowCopy rowsAt(const Plane& p, std::int64_t row, std::int64_t column,
                       std::int64_t bytes) const
    {
        return {p.dstOffset + row * p.dstStep,
                p.dstStep,
                img + p.srcOffset + column,
                p.srcStep,
                bytes,
                p.rows};
    }
    void strip(const Plane& p, std::int64_t row, std::int64_t column, std::int64_t bytes) const
    {
        const fe::RowCopy rows = rowsAt(p, row, column, bytes);
        if (camPos == 2)
            // Kept: the mirror is offset by one element.
            out.mirrorRows(rows, p.elementBytes);
        else
            out.copyRows(rows);
    }
};

} // namespace

void FEDSP::Access_ctr_M3_Half_Display(unsigned char* pImg, int nImgW, int nImgH,
                                       unsigned char* pDst, int nScreenW, int nScreenH, int nCamPos,
                                       bool bTall)
{
    if (!pImg || !pDst || nImgW <= 0 || nImgH <= 0 || nScreenW <= 0 || nScreenH <= 0) return;
    const std::int64_t sw = nImgW, sh = nImgH, W = nScreenW, H = nScreenH;
    const std::int64_t half = sw >> 1, halfW = W >> 1, halfH = H >> 1;
    const std::int64_t imgLuma = sw * sh, frameLuma = W * H, chromaRows = (sh + 1) / 2;
    const int wallShift = bTall ? 3 : 2;

    Plane planes[3] = {{.srcOffset = 0,
                        .srcStep = sw,
                        .dstOffset = 0,
                        .dstStep = W,
                        .rows = sh,
                        .elementBytes = 1,
                        .upperBytes = W,
                        .lowerColumn = half,
                        .lowerBytes = half,
                        .lowerRow = halfH + 1,
                        .wholeBytes = sw,
                        .wallRow = H >> wallShift}};
    int count = 1;
    Plane chroma{.srcOffset = imgLuma,
                 .srcStep = sw,
                 .dstOffset = frameLuma,
                 .dstStep = W,
                 .rows = chromaRows,
                 .elementBytes = 2,
                 .upperBytes = half,
                 .lowerColumn = half & ~1,
                 .lowerBytes = half,
                 .lowerRow = halfH >> 1,
                 .wholeBytes = sw,
                 .wallRow = halfH >> wallShift};
    if (m_nFormat == FORMAT_NV12) {
        planes[count++] = chroma;
    } else if (m_nFormat == FORMAT_YV12) {
        chroma.srcStep = half;
        chroma.dstStep = halfW;
        chroma.elementBytes = 1;
        chroma.upperBytes = chroma.lowerColumn = chroma.lowerBytes = half >> 1;
        chroma.wholeBytes = half;
        for (int plane = 0; plane < 2; ++plane) {
            chroma.srcOffset = imgLuma + plane * (imgLuma / 4);
            chroma.dstOffset = frameLuma + plane * (frameLuma / 4);
            planes[count++] = chroma;
        }
    }

    const Composer compose{fe::OutputWindow(*this, pDst), pImg, nCamPos};
    if (nCamPos != 0 && nCamPos != 2) {
        for (int i = 0; i < count; ++i)
            compose.whole(planes[i]);
        return;
    }
    for (int i = 0; i < count; ++i)
        compose.upper(planes[i]);
    // Kept: the lower strip begins one row below the middle, so on full screens its last row lands
    // on the first chroma row of the upper strip.
    for (int i = 0; i < count; ++i)
        compose.lower(planes[i]);
}
