// The single view: one steerable perspective view fills the screen.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "views/PackedTable.h"
#include "views/ViewRules.h"

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

void mapWholeFrame(FEDSP& e, unsigned char* in, unsigned char* out, int* table, int width,
                   int height)
{
    const auto map = [&](unsigned char* dst) {
        e.FCMapping(e.m_nFormat, in, dst, table, e.m_nInputW, e.m_nInputH, width, height,
                    e.m_FishSetting.bEnabled != 0);
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

// Maps one band and returns the number of lines done.
int mapBand(FEDSP& e, unsigned char* in, unsigned char* out, int width, int height)
{
    const bool flipped = e.m_nFormat != FORMAT_RGB && e.m_nCamPos != 0;
    const int lines = e.FCMapping_line(e.m_nFormat, in, flipped ? e.m_pViewImage : out,
                                       e.m_pMapTable, e.m_nInputW, e.m_nInputH, width, height,
                                       e.m_FishSetting.bEnabled != 0, e.m_nLineIndex);
    if (flipped && (e.m_nLineIndex >= height - 1 || lines == height))
        e.TransferButtomToUpPlanar(e.m_pViewImage, out, width, height, true);
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
    const std::int64_t pixels = std::int64_t(nScreenW) * nScreenH;
    int* table = fe::tableForFormat(*this, m_pMapTable, pixels);
    mapWholeFrame(*this, pIn, pOut, table, nScreenW, nScreenH);
    return true;
}
