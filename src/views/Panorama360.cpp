// The panorama strip below the two views of the 360 layout.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "views/LayoutSizes.h"
#include "views/Panorama.h"
#include "views/TableForms.h"

using fe::trunc32;

namespace {

// What is mapped.
fe::PanoramaMap stripMap(const FEDSP& e)
{
    const int width = fe::panoramaWidth(e);
    const bool packed = e.m_nFormat == FORMAT_RGB;
    if (e.m_nCamPos == 1)
        // Kept: packed frames start at another row of the same table.
        return {width, trunc32(e.m_nRadius * 0.75),
                packed ? 0 : std::int64_t(e.m_nRadius >> 3) * width};
    if (packed) return {width, e.m_nRadius >> 1, 0};
    return fe::outerRows(e);
}

} // namespace

unsigned int FEDSP::AccessCtr_FE360(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                                    int nScreenW, int nScreenH)
{
    const fe::Strip strip = fe::stripSize({nInW, nInH, nScreenW, nScreenH});
    if (m_bSetup) fe::tableChanged(*this, m_pMapTable); // by a host that calls this itself
    if (m_bModeChanged) fe::buildPanorama(*this);
    m_bModeChanged = 0;

    const fe::PanoramaMap map = stripMap(*this);
    const bool wholeFrame = m_nLineIndex < 0;
    const int done = fe::mapPanorama(*this, pIn, nInW, nInH, map);
    if (!wholeFrame && m_nLineIndex != map.rows - 1 && done != map.rows) return 0;

    unsigned char* target = m_pViewImage;
    if (!wholeFrame) target += std::int64_t(strip.w) * strip.top * 3 / 2;
    if (m_nCamPos == 1) {
        resize_image(m_pPanoImage, target, map.width, map.rows, strip.w, strip.h);
    } else if (fe::isPlanar(m_nFormat)) {
        resize_image(m_pPanoImage, m_pWorkImageA, map.width, map.rows, strip.w, strip.h);
        // A floor camera's strip is upright already; it is mirrored instead.
        TransferButtomToUpPlanar(m_pWorkImageA, target, strip.w, strip.h, m_nCamPos != 2);
    }
    SnapShotM2(nullptr, nullptr, target, pOut, strip.w, strip.h, m_fScaleX, 0, nScreenH);
    return wholeFrame || done >= map.rows;
}
