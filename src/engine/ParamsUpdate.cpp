// Parameter updates, and what a change of the view mode does.
#include "FEDSP.h"

#include "engine/Buffers.h"
#include "engine/Numeric.h"
#include "engine/SubViews.h"
#include "views/TableForms.h"

#include <algorithm>

namespace {

constexpr int kWallZoomFloor = 10;

void takeOverOverlay(FEDSP& e, int overlay)
{
    constexpr short kCodes[] = {0, 1, 2, 4};
    if (overlay > 3) return;
    e.m_bOverlay = overlay != 0;
    if (overlay != 0) e.m_nOverlayCode = kCodes[overlay];
}

// Applies a zoom step to the selected view of the mode. False when no view is selected.
bool applyZoom(FEDSP& e, FE_EventParams& event, FE_ViewParams& view)
{
    const auto views = fe::viewsOfMode(view.nViewMode);
    if (view.nSubView < 1 || view.nSubView > views.size()) return false;
    const int stepsPerEvent = view.nViewMode == fe::kModeSingle ? 4 : 1;
    int& zoom = e.*views[view.nSubView - 1u].zoom;
    zoom = e.LmFEZoom(fe::saturate32(std::int64_t(event.nZoomStep) * stepsPerEvent + zoom), &view);
    e.m_ViewParams.nSubView = view.nSubView;
    event = FE_EventParams();
    return true;
}

} // namespace

bool FEDSP::FEParamsUpdated(FE_EventParams* pEvent, FE_ViewParams* pView)
{
    m_nCamPos = pView->nCamPos;
    m_nEventPan = pEvent->nPanStep;
    m_nEventTilt = pEvent->nTiltStep;
    m_nCenterX = pView->nCenterX;
    m_nCenterY = pView->nCenterY;
    m_nRadius = pView->nRadius;
    m_nRadius2 = pView->nRadius2;
    takeOverOverlay(*this, pView->nOverlay);

    // Kept: changes that cancel in the sum are not seen.
    const int key = fe::wrappingSum(int(pView->nViewMode), int(pView->nCamPos), m_nScreenRes);
    if (key != m_nModeKey) {
        OnViewModeChange();
        m_nModeKey = key;
        m_bSetup = 1;
        m_bModeChanged = 1;
    }

    const int mode = pView->nViewMode;
    if (mode != fe::kModeQuad && mode != fe::kMode360 && mode != fe::kMode180 &&
        mode != fe::kModeSingle)
        return true;
    m_ViewParams.nViewMode = pView->nViewMode;
    m_ViewParams.nCamPos = pView->nCamPos;
    fe::selectLayout(*this, mode);

    if (applyZoom(*this, *pEvent, *pView)) return true;
    switch (mode) {
    case fe::kMode360:
        // Kept: the recorded sub-view stays, but a step for no view is dropped.
        m_nEventPan = 0;
        m_nEventTilt = 0;
        break;
    case fe::kMode180:
        m_bSetup = 1;
        pEvent->nTiltStep = 0;
        pEvent->nZoomStep = 0;
        [[fallthrough]];
    default:
        m_ViewParams.nSubView = 0;
        break;
    }
    return true;
}

void FEDSP::OnViewModeChange()
{
    m_nAngleLimit = m_nScreenRes == 4 ? 45 : 60;
    if (m_nCamPos == 1)
        for (const fe::SubViewFields& view : fe::allViews())
            this->*view.zoom = std::max(this->*view.zoom, kWallZoomFloor);

    // Sizes are those of now, not of the allocation.
    const std::int64_t screenW = std::max(m_nScreenW, 0);
    const std::int64_t subArea = std::int64_t(m_nScreenH / 3) * (screenW / 2);
    const std::int64_t panoArea = std::int64_t(m_nRadius) * m_nPanoH;
    fe::fillBuffer(*this, fe::kStaged, std::int64_t(m_nInputW) * m_nInputH * 2, 0);
    // Kept: a third of the screen's height clears only half of these tables.
    fe::fillBuffer(*this, fe::kSubMapA, subArea * 8, 0);
    fe::fillBuffer(*this, fe::kSubMapB, subArea * 8, 0);
    fe::fillBuffer(*this, fe::kMapTable, panoArea * 8, 0);
    fe::tablesChanged(*this);
    fe::fillBuffer(*this, fe::kPanoImage, panoArea * 2, 128);
    fe::fillBuffer(*this, fe::kViewImage, screenW * screenW * 2, 0);
    fe::fillBuffer(*this, fe::kWorkImageA, panoArea * 2, 0);
}
