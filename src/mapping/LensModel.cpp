// The lens model: where each pixel of a perspective view lies in the fisheye picture.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "mapping/MapEntry.h"
#include "views/TableForms.h"

#include <cstdio>

namespace {

constexpr float kRadiusScale = 0.5575035f * 2; // the lens law reaches its full angle at Lr / this
constexpr float kDegrees = 57.295645f;         // per radian, as the pictures need it

// The lens's field of view in degrees, and the tangent of its half, which fixes the view plane.
struct Lens {
    float fov;
    float tanHalf;
};
constexpr Lens kLens{160.0f, 5.67139f};
constexpr Lens kLargeInputLens{170.0f, 11.430509f};

float tiltSlope(const FEDSP& e, float rowStep)
{
    if (e.m_bSingle) return 1 / (300 / rowStep / e.m_fScaleX) / float(e.m_nAngleLimit);
    return 1 / (150 / e.m_fScaleX / rowStep) * 0.0222f;
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
    const Lens lens = m_bLargeInput && m_nCamPos != 1 ? kLargeInputLens : kLens;

    const float fu = float(u);
    const float fv = float(v);
    const float radius = float(Lr);
    const float cx = float(std::int64_t(rcArea.x) + v - Lr);
    const float cy = float(std::int64_t(rcArea.y) + u - Lr);
    const float P = (cx * co - cy * si) * k;
    const float Q = (cy * co + cx * si) * k;
    const float halfWidth = float(m_nInputW >> 1);
    const float lastRow = float(std::int64_t(m_nInputH) - 2);
    const float lastCol = float(std::int64_t(m_nInputW) - 2);
    const int i0 = nOutH / 2;

    float Ra = fu * co - fv * si - fu * k;
    for (int i = 0; i < nOutH; ++i, Ra = Ra + dy * k) {
        // Kept: the - 1 shifts every view by one input pixel along its own columns.
        float Ca = fv * co + fu * si - fv * k - 1;
        const float m = 1 - (float(nOutH - (i0 + i)) * slope * float(Tile_Angle)) / m_fScaleX;

        for (int j = 0; j < nOutW; ++j, Ca = Ca + dx * k) {
            const float dY = (Ra * co + Ca * si) + Q - fu;
            const float dX = P + (Ca * co - Ra * si) - fv;
            const float y = dY * kRadiusScale;
            const float x = dX * kRadiusScale;
            const float r = FastInvSqrt(1 / (y * y + x * x));
            // On the optical axis r is minus infinity and must not be truncated.
            if (!(halfWidth > r) && !(fe::trunc32(double(r + 3)) < Lr)) continue;

            const float q = r / m;
            const float theta =
                float(FastAtan(double(q * lens.tanHalf / radius)) * double(kDegrees));
            const float g = (2 * radius) / (lens.fov * q) * theta;
            float srcRow = (dY * g / m) * 1 + fu;
            float srcCol = (dX * g / m) * 1 + fv;
            if (q == 0) {
                srcRow = fu;
                srcCol = fv;
            }
            if (srcRow >= lastRow) srcRow = 0;
            if (srcCol >= lastCol) srcCol = 0;

            // Kept: a pixel without a source clears the table's first entry, not its own. A NaN,
            // which arises where the tilted plane passes through the camera, counts as such.
            if (!(srcRow > 0 && srcCol > 0)) {
                fe::storeEntry(pMapTbl, 0, {0, 0});
                continue;
            }
            const bool mirrored = CamPos == 1 || CamPos == 2;
            const int column = mirrored ? nOutW - 1 - j : j;
            fe::storeEntry(pMapTbl, std::size_t(i) * std::size_t(nOutW) + std::size_t(column),
                           fe::entryAt(srcRow, srcCol, m_nPitch));
        }
    }
}
