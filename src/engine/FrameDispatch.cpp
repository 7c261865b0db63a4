// One frame: take over its description, stage it and run the layout's renderers.
#include "FEDSP.h"

#include "engine/Buffers.h"
#include "engine/LayoutNeeds.h"
#include "engine/SubViews.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cstring>

namespace {

// Bytes that staging a frame writes.
std::int64_t stagedBytes(std::int64_t w, std::int64_t h, FORMAT format)
{
    switch (format) {
    case FORMAT_NV12:
    case FORMAT_YV12:
        return w * h * 3 / 2;
    case FORMAT_RGB:
        return w * h * 3;
    default:
        return 0;
    }
}

// True when the slot's buffers hold the frame and what the layout makes of it. Frames are limited
// to half the staging buffer in pixels, so that an entry that an earlier frame left in a table, and
// the neighbours and chroma that belong to it, lie inside the buffer too.
bool frameFits(const FEDSP& e, int w, int h, FORMAT format, int pitch)
{
    if (w < 4 || h < 4 || pitch < 1 || !fe::hasBuffers(e)) return false;
    const std::int64_t capacity = std::int64_t(e.m_nCapacity[fe::kStaged]);
    const std::int64_t columns = std::max(w, pitch);
    const std::int64_t rows = e.m_bSetup ? h : std::max(h, e.m_nInputH);
    if (columns > capacity / (2 * rows) || stagedBytes(w, h, format) > capacity) return false;

    const FORMAT mapped = e.m_bSetup ? format : e.m_nFormat;
    const auto needs = fe::layoutNeeds(e, w, h, mapped);
    for (int b = 0; b < fe::kBufferCount; ++b)
        if (needs[std::size_t(b)] > std::int64_t(e.m_nCapacity[b])) return false;
    return true;
}

// Black, as a 4:2:0 frame. Kept: also for RGB, whose second half then stays as it was.
void clearOutput(unsigned char* out, int screenW, int screenH)
{
    const std::size_t luma = std::size_t(screenW) * std::size_t(screenH);
    std::memset(out, 0, luma);
    std::memset(out + luma, 128, luma / 2);
}

void takeOverFrame(FEDSP& e, int w, int h, FORMAT format)
{
    e.m_nInputW = w;
    e.m_nInputH = h;
    e.m_fScaleX = float(w / 1280.0);
    e.m_fScaleY = float(h / 1024.0);
    e.m_nFormat = format;
    e.m_bLargeInput = w > 2048;
    fe::tablesChanged(e);
    if (e.m_nScreenRes == 16)
        e.OnScreenres16();
    else
        e.OnScreenres4();
}

void renderLayout(FEDSP& e, unsigned char* out, int w, int h, FORMAT format, bool flip)
{
    const int mode = fe::currentMode(e);
    if (mode == 0) return;
    if (e.m_nLineIndex < 1) e.AccessCtr_FECopypIn(e.m_pInput, e.m_pStaged, w, h, format, flip);
    unsigned char* in = e.m_pStaged;
    const int screenW = e.m_nScreenW, screenH = e.m_nScreenH;
    switch (mode) {
    case fe::kModeQuad:
        e.AccessCtr_FEQuad12(in, out, w, h, screenW, screenH);
        e.AccessCtr_FEQuad34(in, out, w, h, screenW, screenH);
        break;
    case fe::kMode360:
        e.AccessCtr_FE360PTZ(in, out, w, h, screenW, screenH);
        e.AccessCtr_FE360(in, out, w, h, screenW, screenH);
        break;
    case fe::kMode180:
        e.AccessCtr_FE180(in, out, w, h, screenW, screenH);
        break;
    default:
        e.AccessCtr_FESingleView(in, out, w, h, screenW, screenH);
        break;
    }
}

} // namespace

bool FEDSP::LumoAccessCtr_FEProc_VideoInput(int, int, unsigned char* pIn, unsigned char* pOut,
                                            int nW, int nH, FORMAT format, bool bFlip, int nPitch)
{
    if (!pIn || !pOut || !frameFits(*this, nW, nH, format, nPitch)) return false;

    m_nPitch = nPitch;
    m_pInput = pIn;
    if (m_bSetup) {
        takeOverFrame(*this, nW, nH, format);
        clearOutput(pOut, m_nScreenW, m_nScreenH);
    }
    const long long pixels = static_cast<long long>(m_nScreenW) * m_nScreenH;
    m_pOutput = pOut;
    m_nOutputBytes = m_nFormat == FORMAT_RGB ? pixels * 3 : pixels + pixels / 2;
    // The renderers read m_bSetup to see whether they must rebuild.
    renderLayout(*this, pOut, nW, nH, format, bFlip);
    m_pOutput = nullptr;
    m_bSetup = 0;
    return true;
}

void FEDSP::OnScreenres4()
{
    m_nAngleLimit = 45;
    m_nRefW = 800;
    m_nRefH = 600;
    for (const fe::SubViewFields& view : fe::allViews())
        this->*view.tilt = std::min(this->*view.tilt, 45);
}

void FEDSP::OnScreenres16()
{
    m_nAngleLimit = 60;
    m_nRefW = 800;
    m_nRefH = 450;
}
