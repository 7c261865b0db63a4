// The 180 layout: a panorama fills the screen.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "views/LayoutSizes.h"
#include "views/Panorama.h"

using fe::trunc32;

namespace {

// What is mapped.
fe::PanoramaMap map180(const FEDSP& e)
{
    const int width = fe::panoramaWidth(e);
    const int radius = e.m_nRadius;
    const bool packed = e.m_nFormat == FORMAT_RGB;
    if (e.m_nCamPos == 1) {
        if (packed) return {width, trunc32(radius * 0.5), 0};
        // Kept: the tall picture starts half as many entries down as rows were meant.
        if (e.m_bTall180 == 1)
            return {width, trunc32(radius * 0.75), std::int64_t(radius >> 3) * width / 2};
        return {width, trunc32(radius * 0.5), std::int64_t(radius >> 2) * width};
    }
    if (packed) return {width, trunc32(radius * 0.25), 0};
    return fe::outerRows(e);
}

} // namespace

unsigned int FEDSP::AccessCtr_FE180(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                                    int nScreenW, int nScreenH)
{
    const fe::Size half = fe::half180Size({nInW, nInH, nScreenW, nScreenH});
    if (m_bSetup) fe::buildPanorama(*this);

    const fe::PanoramaMap map = map180(*this);
    const bool wholeFrame = m_nLineIndex < 0;
    const int done = fe::mapPanorama(*this, pIn, nInW, nInH, map);
    // Kept: the last band is told by the picture's height, not by the panorama's.
    if (!wholeFrame && m_nLineIndex != half.h - 1 && done != map.rows) return 0;

    if (m_nCamPos != 1) {
        if (fe::isPlanar(m_nFormat))
            resize_image(m_pPanoImage, m_pViewImage, m_nPanoH, map.rows, 2 * half.w, half.h);
        Access_ctr_M3_Half_Display(m_pViewImage, 2 * half.w, half.h, pOut, nScreenW, nScreenH,
                                   m_nCamPos, false);
    } else {
        const bool tall = m_bTall180 == 1;
        const int height = tall ? trunc32(half.h * 1.5) : half.h;
        resize_image(m_pPanoImage, m_pViewImage, m_nPanoH0,
                     trunc32(m_nRadius * (tall ? 0.75 : 0.5)), half.w, height);
        Access_ctr_M3_Half_Display(m_pViewImage, half.w, height, pOut, nScreenW, nScreenH,
                                   m_nCamPos, tall);
    }
    return wholeFrame || done >= map.rows;
}
