// The upper part of the 360 layout: two perspective views side by side.
#include "engine/Numeric.h"
#include "views/LayoutSizes.h"
#include "views/ViewRules.h"

using fe::trunc32;

namespace {

fe::ViewFrame ptz360Frame(const FEDSP& e, const fe::Size& view)
{
    fe::ViewFrame frame{};
    frame.viewW = view.w;
    frame.viewH = view.h;
    const double scale = double(e.m_fScaleX);
    frame.zoomGain = double(float(scale <= 1 ? 1.2 : 1.2 * scale * scale * scale));
    frame.base = trunc32((double(e.m_nRadius) - (frame.viewH >> 1)) * 0.1);
    frame.zoomTerm = fe::k360Law.wallGrowth(frame, e.m_n360View1Zoom);
    return frame;
}

fe::Placement placeOf(int position, const fe::ViewFrame& frame)
{
    return fe::upperView(position, frame.viewW, frame.viewH, frame.screenH);
}

} // namespace

bool FEDSP::AccessCtr_FE360PTZ(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                               int nScreenW, int nScreenH)
{
    const fe::Size view = fe::ptz360ViewSize({nInW, nInH, nScreenW, nScreenH});
    fe::ViewFrame frame = ptz360Frame(*this, view);
    frame.screenH = nScreenH;
    return fe::renderPair(*this, fe::k360Rules, fe::k360Law, frame, placeOf, pIn, pOut);
}
