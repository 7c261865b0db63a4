// The quad layout: four perspective views, one in each quadrant.
#include "engine/Numeric.h"
#include "views/LayoutSizes.h"
#include "views/ViewRules.h"

#include <cmath>

using fe::trunc32;

namespace {

fe::ViewFrame quadFrame(const FEDSP& e, const fe::Size& view, double zoomGain)
{
    fe::ViewFrame frame{};
    frame.viewW = view.w;
    frame.viewH = view.h;
    frame.zoomGain = double(float(zoomGain));
    const int halfHeight = view.h / 2;
    frame.base = trunc32((double(e.m_nRadius) - halfHeight) * 0.1);
    return frame;
}

fe::Placement placeOf(int position, const fe::ViewFrame& frame)
{
    return fe::quadrant(position, frame.viewW, frame.viewH);
}

} // namespace

bool FEDSP::AccessCtr_FEQuad12(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                               int nScreenW, int nScreenH)
{
    const fe::Extent extent{nInW, nInH, nScreenW, nScreenH};
    const fe::Size view = fe::quadViewSize(extent, fe::kQuad12Fraction);
    const double scale = double(m_fScaleX);
    fe::ViewFrame frame = quadFrame(*this, view, scale <= 1 ? 1.2 : 1.2 * std::pow(scale, 3.0));
    // The dispatcher goes on with views 3 and 4.
    frame.imagesAreTemporary =
        pOut == m_pOutput && view == fe::quadViewSize(extent, fe::kQuad34Fraction);
    return fe::renderPair(*this, fe::kQuad12Rules, fe::kQuadLaw, frame, placeOf, pIn, pOut);
}

bool FEDSP::AccessCtr_FEQuad34(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                               int nScreenW, int nScreenH)
{
    const fe::Size view = fe::quadViewSize({nInW, nInH, nScreenW, nScreenH}, fe::kQuad34Fraction);
    const double scale = double(m_fScaleX);
    fe::ViewFrame frame =
        quadFrame(*this, view, scale <= 1 ? 1.2 : 3.0 * 0.4 * scale * scale * scale);
    const std::uint32_t frameBytes = 3u * std::uint32_t(nScreenW) * std::uint32_t(nScreenH);
    m_nQuadBytes = fe::wrappingSum(m_nQuadBytes, frameBytes & ~3u);
    return fe::renderPair(*this, fe::kQuad34Rules, fe::kQuadLaw, frame, placeOf, pIn, pOut);
}
