// Saving, restoring and limiting the positions of the views.
#include "FEDSP.h"

#include "engine/SubViews.h"

#include <algorithm>

void FEDSP::LmFESetPosition(int, FE_CurPosParams* p)
{
    if (!p) return;
    m_nCamPos = p->nCamPos;
    m_nCenterX = p->nCenterX;
    m_nCenterY = p->nCenterY;
    m_nRadius = p->nRadius;
    m_nRadius2 = p->nRadius2;

    const FE_ViewPosition* position = p->view;
    for (const fe::SubViewFields& view : fe::viewsOfMode(p->nViewMode)) {
        this->*view.pan = position->nPan;
        this->*view.tilt = position->nTilt;
        this->*view.zoom = position->nZoom;
        this->*view.aux = position->nAux;
        ++position;
    }
    if (p->nViewMode == fe::kModeQuad) m_nQuadOption = p->bQuadOption;
    if (p->nViewMode == fe::kMode180) m_n180Pan = p->n180Pos;
    fe::selectLayout(*this, p->nViewMode);
}

void FEDSP::LmFEGetPosition(int, FE_CurPosParams* p)
{
    if (!p) return;
    const auto word = [](int value) { return static_cast<unsigned short>(value); };
    p->nCamPos = word(m_nCamPos);
    p->nCenterX = word(m_nCenterX);
    p->nCenterY = word(m_nCenterY);
    p->nRadius = word(m_nRadius);
    p->nRadius2 = word(m_nRadius2);

    const int mode = fe::currentMode(*this);
    if (mode == 0) return;
    p->nViewMode = word(mode);
    FE_ViewPosition* position = p->view;
    for (const fe::SubViewFields& view : fe::viewsOfMode(mode)) {
        position->nPan = static_cast<short>(this->*view.pan);
        position->nTilt = static_cast<short>(this->*view.tilt);
        position->nZoom = static_cast<short>(this->*view.zoom);
        position->nAux = static_cast<short>(this->*view.aux);
        ++position;
    }
    if (mode == fe::kModeQuad) p->bQuadOption = m_nQuadOption != 0;
    if (mode == fe::kMode180) p->n180Pos = m_n180Pan;
}

int FEDSP::LmFEZoom(int nZoom, FE_ViewParams* p)
{
    const bool single = p->nViewMode == fe::kModeSingle;
    int lower = 0, upper = 0;
    switch (p->nCamPos) {
    case 0:
    case 2:
        upper = single ? 88 : 44;
        break;
    case 1:
        lower = 10;
        upper = single ? 70 : 44;
        break;
    default:
        break;
    }
    return std::clamp(nZoom, lower, upper);
}
