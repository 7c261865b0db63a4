// The rectangular remap: the circle's bounding square, cut to 0.85 of its height.
#include "FEDSP.h"

#include "kernels/Isa.h"
#include "mapping/MapEntry.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

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

struct Remap {
    int centreRow, centreCol, radius, inW, inH, width, pitch;

    std::int64_t rowOffset(int r) const { return 2 * std::int64_t(r) - radius; }
    std::int64_t colOffset(int c) const { return 2 * std::int64_t(c) - width; }
    float rowOf(int r) const { return float(double(rowOffset(r)) * kSqueeze + centreRow); }
    float colOf(int c, float squeeze) const
    {
        const float step = float(radius) / float(width);
        return float(colOffset(c)) * step / squeeze + float(centreCol);
    }
    bool rowInside(float row) const { return row < float(std::int64_t(inH) - 2) && row > 0; }
    bool colInside(float col) const { return col < float(std::int64_t(inW) - 2) && col > 0; }

    // A row of the table, entry by entry: the definition.
    void writeRow(int r, void* entries) const
    {
        const std::int64_t dy = rowOffset(r);
        const float row = rowOf(r);
        const float squeeze = rowSqueeze(r, radius);
        for (int c = 0; c < width; ++c) {
            const std::int64_t dx = colOffset(c);
            const float distance = FastInvSqrt(float(1.0 / double(float(dx * dx + dy * dy))));
            const float col = colOf(c, squeeze);
            const bool inside =
                float(4 * std::int64_t(radius)) > distance && rowInside(row) && colInside(col);
            fe::storeEntry(entries, std::size_t(c),
                           inside ? fe::entryAt(row, col, pitch) : fe::MapEntry{0, 0});
        }
    }

    // True when no entry is too far from the centre. The approximate distance exceeds the true one
    // by rounding at most.
    bool isNear() const
    {
        const double w = width, r = radius;
        return w * w + r * r < 15 * r * r;
    }
};

constexpr int kBlock = 512;

// What a block of columns adds to the entries of any row. The rows' squeeze is 1.
struct Columns {
    int count;
    std::uint32_t fraction[kBlock], index[kBlock];
    std::uint32_t mask[kBlock]; // all bits where the column is inside

    Columns(const Remap& remap, int first) : count(std::min(remap.width - first, kBlock))
    {
        for (int c = 0; c < count; ++c) {
            const float col = remap.colOf(first + c, 1);
            const bool inside = remap.colInside(col);
            const fe::MapEntry entry =
                inside ? fe::entryAt(0, col, remap.pitch) : fe::MapEntry{0, 0};
            fraction[c] = entry.fractions;
            index[c] = std::uint32_t(entry.index);
            mask[c] = inside ? ~0u : 0;
        }
    }

    void write(const fe::MapEntry& row, void* entries) const
    {
        std::uint32_t words[2 * kBlock];
        for (std::size_t c = 0; c < std::size_t(count); ++c) {
            words[2 * c] = (row.fractions & mask[c]) | fraction[c];
            words[2 * c + 1] = (std::uint32_t(row.index) & mask[c]) + index[c];
        }
        std::memcpy(entries, words, std::size_t(count) * fe::kMapEntryBytes);
    }
};

} // namespace

void FEDSP::Mercator_Projection_360(int c1, int c2, int R, int nInW, int nInH, int* pTable, int,
                                    float*, float*, int, int nW)
{
    if (!pTable || nW <= 0) return;
    fe::tableChanged(*this, pTable);
    const Remap remap{c1, c2, R, nInW, nInH, nW, m_nPitch};
    const auto entry = [&](int r, int c) {
        const std::size_t k = std::size_t(r) * std::size_t(nW) + std::size_t(c);
        return reinterpret_cast<unsigned char*>(pTable) + k * fe::kMapEntryBytes;
    };
    if (fe::isaInUse() == fe::Isa::plain || !remap.isNear()) {
        for (int r = 0; r + 1 < R; ++r)
            remap.writeRow(r, entry(r, 0));
        return;
    }
    // Rows and columns do not depend on each other.
    for (int first = 0; first < nW; first += kBlock) {
        const Columns columns(remap, first);
        for (int r = 0; r + 1 < R; ++r) {
            const float row = remap.rowOf(r);
            if (remap.rowInside(row))
                columns.write(fe::entryAt(row, 0, m_nPitch), entry(r, first));
            else
                std::memset(entry(r, first), 0, std::size_t(columns.count) * fe::kMapEntryBytes);
        }
    }
}
