// The polar unwrap: each column is a direction about the circle's centre, each row a distance.
#include "FEDSP.h"

#include "mapping/MapEntry.h"
#include "views/TableForms.h"

#include <cmath>

namespace {

constexpr float kRadians = 0.01745327f; // per degree, as the pictures need it
constexpr double kBlankRatio = 0.2;     // of the radius, left out by the mirrored unwrap

enum Mode { kUnwrap = 0, kCopy = 1, kMirrored = 2 };

struct Source {
    float row, col;
};

struct Builder {
    const FEDSP& engine;
    int centreRow, centreCol, radius, inW, inH;
    int* table;
    int rotation; // degrees
    int width;
    float step; // degrees per column

    Source polar(float theta, int r) const
    {
        const double angle = double(theta * kRadians);
        return {float(std::sin(angle) * r + centreRow), float(std::cos(angle) * r + centreCol)};
    }
    Source copied(int r, int c) const
    {
        const int latitude = r / radius;
        const double s = 1 / std::cos(double(float(latitude) * kRadians));
        return {float(r + radius * 0.5), float(c * s)};
    }
    bool outside(const Source& s) const
    {
        return s.row > float(std::int64_t(inH) - 3) || s.col > float(std::int64_t(inW) - 3) ||
               s.row <= 0 || s.col <= 0;
    }
    fe::MapEntry entryOf(const Source& s) const
    {
        return outside(s) ? fe::MapEntry{0, 0} : fe::entryAt(s.row, s.col, engine.m_nPitch);
    }

    // Every second radius makes an output row, so a row stands for two input pixels.
    void buildForward(Mode mode) const
    {
        const std::int64_t inputPixels = inW > 0 && inH > 0 ? std::int64_t(inW) * inH : 0;
        std::size_t written = 0;
        for (int r = 0; r < radius - 3; ++r)
            for (int c = 0; c < width; ++c) {
                if (std::int64_t(r) * width + c >= inputPixels) {
                    // Kept: tables larger than the input end in one empty entry.
                    fe::storeEntry(table, written, {0, 0});
                    return;
                }
                if (r % 2 != 0) continue;
                const Source s =
                    mode == kCopy ? copied(r, c) : polar(float(c) * step + float(rotation), r);
                fe::storeEntry(table, written++, entryOf(s));
            }
    }

    // Columns run right to left; column 0 lands on the first entry of the next row.
    void buildMirrored(bool shifted) const
    {
        const std::size_t skipped = shifted ? std::size_t(radius / 5) * std::size_t(width) : 0;
        for (int r = 0; r < radius - 3; r += 2)
            for (int c = 0; c < width; ++c) {
                const std::size_t e = std::size_t(width) * (std::size_t(r) + 1) - std::size_t(c);
                if (r < radius * kBlankRatio)
                    // Kept: the blanked centre is not shifted.
                    fe::storeEntry(table, e, {0, 0});
                else
                    fe::storeEntry(table, e - skipped,
                                   entryOf(polar(float(c) * step - float(rotation), r)));
            }
    }
};

} // namespace

void FEDSP::InitCPIBuffer_360(int c1, int c2, int R, int nInW, int nInH, int* pTable, int nRot,
                              float*, float*, int nMode, int nShift, int nW)
{
    if (!pTable || nW <= 0 || R <= 3) return;
    fe::tableChanged(*this, pTable);
    const Builder builder{*this, c1, c2, R, nInW, nInH, pTable, nRot % nW, nW, float(360.0 / nW)};
    switch (nMode) {
    case kUnwrap:
    case kCopy:
        builder.buildForward(Mode(nMode));
        break;
    case kMirrored:
        builder.buildMirrored(nShift != 0);
        break;
    default:
        break;
    }
}
