// The rectangular remap: the circle's bounding square, cut to 0.85 of its height.
#include "FEDSP.h"

#include "mapping/MapEntry.h"
#include "views/TableForms.h"

#include <cmath>
#include <cstdlib>

namespace {

constexpr float kRadians = 0.01745327f; // per degree
constexpr double kSqueeze = 0.85;
constexpr double kLatitude = 60.0; // degrees above and below the centre

// How far a row's columns are drawn together; 1 over the whole range of latitudes.
float rowSqueeze(int r, int R)
{
    const float phi = float((2 * double(r) - R) * kLatitude / R);
    return float(std::abs(fe::trunc32(1 / std::cos(double(phi * kRadians)))));
}

} // namespace

void FEDSP::Mercator_Projection_360(int c1, int c2, int R, int nInW, int nInH, int* pTable, int,
                                    float*, float*, int, int nW)
{
    if (!pTable || nW <= 0) return;
    fe::tableChanged(*this, pTable);
    const float colStep = float(R) / float(nW);
    std::size_t k = 0;
    for (int r = 0; r + 1 < R; ++r) {
        const std::int64_t dy = 2 * std::int64_t(r) - R;
        const float row = float(double(dy) * kSqueeze + c1);
        const float squeeze = rowSqueeze(r, R);
        for (int c = 0; c < nW; ++c, ++k) {
            const std::int64_t dx = 2 * std::int64_t(c) - nW;
            const float distance = FastInvSqrt(float(1.0 / double(float(dx * dx + dy * dy))));
            const float col = float(dx) * colStep / squeeze + float(c2);
            const bool inside = float(4 * std::int64_t(R)) > distance &&
                                row < float(std::int64_t(nInH) - 2) &&
                                col < float(std::int64_t(nInW) - 2) && row > 0 && col > 0;
            fe::storeEntry(pTable, k,
                           inside ? fe::entryAt(row, col, m_nPitch) : fe::MapEntry{0, 0});
        }
    }
}
