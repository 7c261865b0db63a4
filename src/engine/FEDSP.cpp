// Construction and reset of the engine.
#include "FEDSP.h"

#include "engine/SubViews.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cmath>

FEDSP::FEDSP() = default;

FEDSP::~FEDSP() = default;

void FEDSP::FE_Initialize(int nCam, int nInW, int nInH, int nScreenRes)
{
    m_nCam = nCam;
    m_nInputW = nInW;
    m_nInputH = nInH;
    m_nCenterX = nInW >> 1;
    m_nCenterY = nInH >> 1;
    m_nRadius = m_nRadius2 = nInW >> 1;
    m_fScaleX = float(nInW / 1280.0);
    m_fScaleY = float(nInH / 1024.0);
    m_fScreenScaleX = m_fScreenScaleY = 1.0f;
    m_nAngle30 = 30;
    m_nScreenRes = nScreenRes;

    fe::selectLayout(*this, fe::kModeQuad);
    m_bSpareLayout = 0;
    m_nCamPos = 0;
    m_nRefW = 800;
    m_nRefH = 600;
    m_bSetup = 1;
    m_bModeChanged = 1;
    m_bKeyFlag3 = 0;
    m_bTall180 = 0;
    m_nPanoBase = 720;
    m_nModeKey = 0;

    for (const fe::SubViewFields& view : fe::allViews())
        this->*view.pan = this->*view.tilt = this->*view.zoom = this->*view.aux = 0;
    m_n180Pan = 0;

    m_bOverlay = 0;
    m_bOverlayAux = 1;
    m_nOverlayCode = 0;
    m_nQuadOption = 0;
    std::fill(std::begin(m_bOverlaySpare), std::end(m_bOverlaySpare),
              static_cast<unsigned char>(0));
    m_nOverlaySpare = 0;

    // Kept: buffers of an earlier initialisation are dropped here, not freed.
    m_pInput = m_pStaged = m_pViewImage = m_pWorkImageA = m_pPanoImage = nullptr;
    m_pSubMapA = m_pSubMapB = m_pMapTable = m_pMapWork = nullptr;
    std::fill(std::begin(m_pSpare), std::end(m_pSpare), nullptr);
    std::fill(std::begin(m_nCapacity), std::end(m_nCapacity), std::size_t(0));
    m_pBlock = nullptr;
    m_nBlockSize = 0;
    fe::tablesChanged(*this);

    // The first frame decides anew, with another threshold.
    m_bLargeInput = nInW >= 2560;
    m_nAngleLimit = m_nScreenRes == 4 ? 45 : 60;

    // The constants stand for pi and 1/180; views are calibrated with the table as it comes out.
    const auto wide = [](auto value) { return static_cast<long double>(value); };
    for (int i = 0; i < 1440; ++i) {
        const long double x = wide(i) * wide(3.14159f) * wide(0.25f) * wide(0.00556f);
        m_fSinTbl[i] = float(std::sin(double(x)));
        m_fCosTbl[i] = float(std::cos(double(x)));
    }
}
