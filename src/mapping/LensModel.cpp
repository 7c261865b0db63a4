// The lens model: where each pixel of a perspective view lies in the fisheye picture.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "kernels/Isa.h"
#include "mapping/LensRows.h"
#include "mapping/MapEntry.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kColumns = 2048; // whose places are worked out at once, for all rows

float tiltSlope(const FEDSP& e, float rowStep)
{
    if (e.m_bSingle) return 1 / (300 / rowStep / e.m_fScaleX) / float(e.m_nAngleLimit);
    return 1 / (150 / e.m_fScaleX / rowStep) * 0.0222f;
}

decltype(&fe::mapLensRow) rowMapper()
{
    switch (fe::isaInUse()) {
    case fe::Isa::plain:
        return fe::mapLensRow;
    case fe::Isa::avx2:
        return fe::mapLensRowAvx2;
    default:
        return fe::mapLensRowSse2;
    }
}

} // namespace

void FEDSP::Fisheye_calibration_Init_byArea(int u, int v, int Lr, int Sr, ClonefishRect rcArea,
                                            float Ang, int Scale_N, int nOutW, int nOutH,
                                            int* pMapTbl, int Tile_Angle, int CamPos)
{
    if (!pMapTbl) return;
    fe::tableChanged(*this, pMapTbl);
    std::printf("%s: u[%i] v[%i], Lr[%i], Sr[%i] Ang[%f] Scale_N[%d] Tile_Angle[%d] CamPos[%d]\n",
                "Fisheye_calibration_Init_byArea", u, v, Lr, Sr, double(Ang), Scale_N, Tile_Angle,
                CamPos);

    const int a = fe::wrapAngle(fe::trunc32(double(Ang)), 0);
    const float si = m_fSinTbl[a];
    const float co = m_fCosTbl[a];
    const float dx = float(rcArea.w) / float(nOutW);
    const float dy = float(rcArea.h) / float(nOutH);
    const float n = m_bSingle ? 40 : 0;
    const float k = 1 - (n * 0.875f) / 80;
    const float slope = tiltSlope(*this, dy);

    const float fu = float(u);
    const float fv = float(v);
    const float cx = float(std::int64_t(rcArea.x) + v - Lr);
    const float cy = float(std::int64_t(rcArea.y) + u - Lr);
    const fe::LensView view{
        .si = si,
        .co = co,
        .P = (cx * co - cy * si) * k,
        .Q = (cy * co + cx * si) * k,
        .centreRow = fu,
        .centreCol = fv,
        .Lr = Lr,
        .halfWidth = float(m_nInputW >> 1),
        .lastRow = float(std::int64_t(m_nInputH) - 2),
        .lastCol = float(std::int64_t(m_nInputW) - 2),
        .lens = m_bLargeInput && m_nCamPos != 1 ? fe::kLargeInputLens : fe::kLens,
        .pitch = m_nPitch,
    };
    const bool mirrored = CamPos == 1 || CamPos == 2;
    const int middle = nOutH / 2;
    const auto mapRow = rowMapper();

    // Maps the pixels of some rows and says whether some of them have no source.
    const auto mapRows = [&](int firstRow, int endRow) {
        bool someWithout = false;
        float places[kColumns];
        // Kept: the - 1 shifts every view by one input pixel along its own columns.
        float Ca = fv * co + fu * si - fv * k - 1;
        for (int j = 0, count; j < nOutW; j += count) {
            count = std::min(nOutW - j, kColumns);
            for (int c = 0; c < count; ++c, Ca = Ca + dx * k)
                places[mirrored ? count - 1 - c : c] = Ca;
            const int column = mirrored ? nOutW - j - count : j;

            float Ra = fu * co - fv * si - fu * k;
            for (int i = 0; i < endRow; ++i, Ra = Ra + dy * k) {
                if (i < firstRow) continue;
                const float m =
                    1 - (float(nOutH - (middle + i)) * slope * float(Tile_Angle)) / m_fScaleX;
                const std::size_t first = std::size_t(i) * std::size_t(nOutW) + std::size_t(column);
                someWithout |=
                    mapRow(view, {Ra, m}, places, count,
                           reinterpret_cast<unsigned char*>(pMapTbl) + first * fe::kMapEntryBytes);
            }
        }
        return someWithout;
    };

    // Kept: a pixel without a source clears the table's first entry, not its own. In a mirrored
    // table that entry belongs to the last pixel of row 0, which has the last word on that row.
    const int firstRows = std::min(nOutH, 1);
    if (mapRows(0, firstRows)) {
        fe::storeEntry(pMapTbl, 0, {0, 0});
        if (mirrored) mapRows(0, firstRows);
    }
    if (mapRows(firstRows, nOutH)) fe::storeEntry(pMapTbl, 0, {0, 0});
}
