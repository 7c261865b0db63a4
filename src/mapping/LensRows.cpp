// The inner loop of the lens model, as it is defined.
#include "mapping/LensRows.h"

#include "FEDSP.h"
#include "engine/Numeric.h"
#include "mapping/MapEntry.h"

namespace fe {

bool mapLensRow(const LensView& view, const LensRow& row, const float* Ca, int count,
                unsigned char* entries)
{
    const auto [Ra, m] = row;
    const float radius = float(view.Lr);
    bool someWithout = false;
    for (int j = 0; j < count; ++j) {
        const float dY = (Ra * view.co + Ca[j] * view.si) + view.Q - view.centreRow;
        const float dX = view.P + (Ca[j] * view.co - Ra * view.si) - view.centreCol;
        const float y = dY * kRadiusScale;
        const float x = dX * kRadiusScale;
        const float r = FastInvSqrt(1 / (y * y + x * x));
        // On the optical axis r is minus infinity and must not be truncated.
        if (!(view.halfWidth > r) && !(trunc32(double(r + 3)) < view.Lr)) continue;

        const float q = r / m;
        const float theta =
            float(FastAtan(double(q * view.lens.tanHalf / radius)) * double(kDegrees));
        const float g = (2 * radius) / (view.lens.fov * q) * theta;
        float srcRow = (dY * g / m) * 1 + view.centreRow;
        float srcCol = (dX * g / m) * 1 + view.centreCol;
        if (q == 0) {
            srcRow = view.centreRow;
            srcCol = view.centreCol;
        }
        if (srcRow >= view.lastRow) srcRow = 0;
        if (srcCol >= view.lastCol) srcCol = 0;

        // A NaN, which arises where the tilted plane passes through the camera, is no source.
        if (srcRow > 0 && srcCol > 0)
            storeEntry(entries, std::size_t(j), entryAt(srcRow, srcCol, view.pitch));
        else
            someWithout = true;
    }
    return someWithout;
}

} // namespace fe
