// The polar unwrap: each column is a direction about the circle's centre, each row a distance.
#include "FEDSP.h"

#include "kernels/Isa.h"
#include "mapping/MapEntry.h"
#include "mapping/PolarRow.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kRadians = 0.01745327f; // per degree, as the pictures need it
constexpr double kBlankRatio = 0.2;     // of the radius, left out by the mirrored unwrap

enum Mode { kUnwrap = 0, kCopy = 1, kMirrored = 2 };

struct Source {
    float row, col;
};

// The definition of the table, entry by entry.
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

    std::int64_t inputPixels() const { return inW > 0 && inH > 0 ? std::int64_t(inW) * inH : 0; }

    // Every second radius makes an output row, so a row stands for two input pixels.
    void buildForward(Mode mode) const
    {
        std::size_t written = 0;
        for (int r = 0; r < radius - 3; ++r)
            for (int c = 0; c < width; ++c) {
                if (std::int64_t(r) * width + c >= inputPixels()) {
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

    std::size_t entriesSkipped(bool shifted) const
    {
        return shifted ? std::size_t(radius / 5) * std::size_t(width) : 0;
    }

    // Columns run right to left; column 0 lands on the first entry of the next row.
    void buildMirrored(bool shifted) const
    {
        for (int r = 0; r < radius - 3; r += 2)
            for (int c = 0; c < width; ++c) {
                const std::size_t e = std::size_t(width) * (std::size_t(r) + 1) - std::size_t(c);
                if (r < radius * kBlankRatio)
                    // Kept: the blanked centre is not shifted.
                    fe::storeEntry(table, e, {0, 0});
                else
                    fe::storeEntry(table, e - entriesSkipped(shifted),
                                   entryOf(polar(float(c) * step - float(rotation), r)));
            }
    }
};

// Builds the same table faster: sine and cosine depend on the column only, so that they are taken
// once for a block of columns, whose pieces of rows are written from there.
struct BlockBuilder {
    const Builder& plain;
    fe::PolarRowWriter* write;
    fe::PolarColumns columns = {};
    double leastSine = 0, mostSine = 0, leastCosine = 0, mostCosine = 0;

    // What the writers can count with.
    static bool serves(const Builder& b)
    {
        constexpr int kMost = 0x7FFF;
        return b.inW <= kMost && b.inH <= kMost && b.engine.m_nPitch >= 0 &&
               b.engine.m_nPitch <= kMost;
    }

    // Takes `count` directions; those behind them, up to a whole group, stay harmless.
    template <class Theta>
    void take(int count, Theta theta)
    {
        for (int c = 0; c < count; ++c) {
            const double angle = double(theta(c) * kRadians);
            const double sine = std::sin(angle) * 256, cosine = std::cos(angle) * 256;
            columns.sine[fe::polarPlace(c)] = sine;
            columns.cosine[fe::polarPlace(c)] = cosine;
            leastSine = c == 0 ? sine : std::min(leastSine, sine);
            mostSine = c == 0 ? sine : std::max(mostSine, sine);
            leastCosine = c == 0 ? cosine : std::min(leastCosine, cosine);
            mostCosine = c == 0 ? cosine : std::max(mostCosine, cosine);
        }
    }

    fe::PolarRow rowAt(int r) const
    {
        fe::PolarRow row{double(r),
                         plain.centreRow * 256.0,
                         plain.centreCol * 256.0,
                         float(std::int64_t(plain.inH) - 3) * 256,
                         float(std::int64_t(plain.inW) - 3) * 256,
                         plain.engine.m_nPitch,
                         false};
        // Positions grow with the sine and the cosine.
        row.inside = float(leastSine * r + row.centreRow) > 0 &&
                     float(mostSine * r + row.centreRow) <= row.lastRow &&
                     float(leastCosine * r + row.centreCol) > 0 &&
                     float(mostCosine * r + row.centreCol) <= row.lastCol;
        return row;
    }

    void* entry(std::size_t k) const
    {
        return reinterpret_cast<unsigned char*>(plain.table) + k * fe::kMapEntryBytes;
    }

    void buildForward()
    {
        const std::size_t width = std::size_t(plain.width);
        const std::int64_t pixels = plain.inputPixels();
        for (int first = 0; first < plain.width; first += fe::kPolarBlock) {
            const int block = std::min(plain.width - first, fe::kPolarBlock);
            take(block,
                 [&](int c) { return float(first + c) * plain.step + float(plain.rotation); });
            for (int r = 0; r < plain.radius - 3; r += 2) {
                const std::int64_t left = pixels - std::int64_t(r) * plain.width - first;
                if (left <= 0) break;
                write(columns, rowAt(r), entry(std::size_t(r / 2) * width + std::size_t(first)),
                      int(std::min<std::int64_t>(left, block)));
            }
        }
        if (pixels >= std::int64_t(plain.radius - 3) * plain.width) return;
        const std::size_t r = std::size_t(pixels) / width, c = std::size_t(pixels) % width;
        fe::storeEntry(plain.table, (r + 1) / 2 * width + (r % 2 == 0 ? c : 0), {0, 0});
    }

    void buildMirrored(bool shifted)
    {
        const std::size_t width = std::size_t(plain.width);
        for (int first = 0; first < plain.width; first += fe::kPolarBlock) {
            const int block = std::min(plain.width - first, fe::kPolarBlock);
            take(block, [&](int c) {
                return float(plain.width - 1 - first - c) * plain.step - float(plain.rotation);
            });
            for (int r = 0; r < plain.radius - 3; r += 2) {
                const std::size_t k = std::size_t(r) * width + 1 + std::size_t(first);
                if (r < plain.radius * kBlankRatio)
                    std::memset(entry(k), 0, std::size_t(block) * fe::kMapEntryBytes);
                else
                    write(columns, rowAt(r), entry(k - plain.entriesSkipped(shifted)), block);
            }
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
    const fe::Isa isa = fe::isaInUse();
    const bool quick = isa != fe::Isa::plain && BlockBuilder::serves(builder);
    BlockBuilder blocks{builder,
                        isa == fe::Isa::avx2 ? fe::writePolarRowAvx2 : fe::writePolarRowSse2};
    switch (nMode) {
    case kUnwrap:
        quick ? blocks.buildForward() : builder.buildForward(kUnwrap);
        break;
    case kCopy:
        builder.buildForward(kCopy);
        break;
    case kMirrored:
        quick ? blocks.buildMirrored(nShift != 0) : builder.buildMirrored(nShift != 0);
        break;
    default:
        break;
    }
}
