// The single view: one steerable perspective view fills the screen.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "views/TableForms.h"
#include "views/ViewRules.h"

#include <algorithm>
#include <cstring>

namespace {

fe::ViewFrame singleFrame(const FEDSP& e, int screenW, int screenH)
{
    const double scale = double(e.m_fScaleX);
    fe::ViewFrame frame{};
    frame.viewW = screenW;
    frame.viewH = screenH;
    frame.zoomGain = scale <= 1 ? 1.5 : 1.5 * scale * scale * scale;
    frame.base = fe::trunc32(e.m_nRadius * 0.1);
    return frame;
}

void mapWholeFrame(FEDSP& e, unsigned char* in, unsigned char* out, int width, int height)
{
    const auto map = [&](unsigned char* dst) {
        fe::mapByTable(e, in, dst, e.m_pMapTable, 0, width, height);
    };
    const bool packed = e.m_nFormat == FORMAT_RGB;
    if (!packed && e.m_nCamPos != 0) {
        map(e.m_pViewImage);
        e.TransferButtomToUpPlanar(e.m_pViewImage, out, width, height, true);
    } else if (!packed && (width % 2 != 0 || height % 2 != 0)) {
        // The kernels round odd chroma sizes up, which is more than the caller's frame holds.
        map(e.m_pViewImage);
        std::memcpy(out, e.m_pViewImage, std::size_t(width) * std::size_t(height) * 3 / 2);
    } else {
        map(out);
    }
}

// Copies what a band kernel wrote for rows first to last - 1 of an image, as far as it belongs to
// the frame: of odd sizes the kernels write more chroma than a frame holds.
void copyBand(const FEDSP& e, unsigned char* out, int width, int height, int first, int last)
{
    const std::size_t w = std::size_t(width), luma = w * std::size_t(height);
    const auto copy = [&](std::size_t begin, std::size_t end) {
        end = std::min(end, luma + luma / 2);
        if (begin < end) std::memcpy(out + begin, e.m_pViewImage + begin, end - begin);
    };
    const std::size_t rowBytes = e.m_nFormat == FORMAT_YV12 ? w / 2 : w;
    const std::size_t chromaEnd = std::size_t(std::min(last, (height + 1) / 2));
    copy(std::size_t(first) * w, std::size_t(last) * w);
    copy(luma + std::size_t(first) * rowBytes, luma + chromaEnd * rowBytes + w % 2);
}

// Maps one band and returns the number of lines done.
int mapBand(FEDSP& e, unsigned char* in, unsigned char* out, int width, int height)
{
    const bool packed = e.m_nFormat == FORMAT_RGB;
    const bool flipped = !packed && e.m_nCamPos != 0;
    const bool odd = !packed && (width % 2 != 0 || height % 2 != 0);
    const int lines = e.FCMapping_line(e.m_nFormat, in, flipped || odd ? e.m_pViewImage : out,
                                       e.m_pMapTable, e.m_nInputW, e.m_nInputH, width, height,
                                       e.m_FishSetting.bEnabled != 0, e.m_nLineIndex);
    if (flipped) {
        if (e.m_nLineIndex >= height - 1 || lines == height)
            e.TransferButtomToUpPlanar(e.m_pViewImage, out, width, height, true);
    } else if (odd && lines > e.m_nLineIndex) {
        copyBand(e, out, width, height, e.m_nLineIndex, lines);
    }
    return lines;
}

} // namespace

bool FEDSP::AccessCtr_FESingleView(unsigned char* pIn, unsigned char* pOut, int, int, int nScreenW,
                                   int nScreenH)
{
    fe::ViewFrame frame = singleFrame(*this, nScreenW, nScreenH);
    int radius = fe::kSingleLaw.radius(*this, frame, m_nSingleZoom);
    if (m_nLineIndex < 1)
        radius = fe::steerView(*this, fe::kSingleRule, fe::kSingleLaw, frame, radius);
    fe::updateTable(*this, fe::kSingleRule, fe::kSingleLaw, frame, radius);

    const bool wholeFrame = m_nLineIndex < 0;
    if (!fe::isKnown(m_nFormat)) return wholeFrame;
    if (!wholeFrame) return mapBand(*this, pIn, pOut, nScreenW, nScreenH) >= nScreenH;
    mapWholeFrame(*this, pIn, pOut, nScreenW, nScreenH);
    return true;
}
