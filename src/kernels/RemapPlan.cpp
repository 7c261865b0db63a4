// Making and following a remapping plan.
#include "kernels/RemapPlan.h"

#include "kernels/CopyPairs.h"
#include "kernels/Sampling.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace fe {

namespace {

constexpr std::size_t kStripBlocks = 8; // 128 pixels
constexpr std::size_t kRowsAhead = 3;   // of a strip, for fetching samples
constexpr int kMinStride = 16;          // below, a place in the window has two names

// The highest index whose neighbours can be read.
std::int32_t reachOf(const RemapPlan& plan)
{
    return saturate32(std::int64_t(plan.sourceBytes) - plan.stride - 2);
}

// The blocks of a plan: strip by strip, in a strip row by row.
class Blocks {
public:
    Blocks(int w, int h, unsigned char* memory)
        : columns_(std::size_t(w) / kPlanBlockW), rows_(std::size_t(h) / kPlanBlockH)
    {
        void* p = memory;
        std::size_t room = 128;
        first_ = static_cast<PlanBlock*>(std::align(64, 64, p, room));
    }
    std::size_t columns() const { return columns_; }
    std::size_t rows() const { return rows_; }
    std::size_t count() const { return columns_ * rows_; }
    std::size_t maxOddTiles() const { return count() * kTilesInBlock / 4; }
    // How many blocks a strip's rows have from this column on.
    std::size_t stripWidth(std::size_t column) const
    {
        return std::min(kStripBlocks, columns_ - column / kStripBlocks * kStripBlocks);
    }
    PlanBlock* at(std::size_t column, std::size_t row) const
    {
        const std::size_t strip = column / kStripBlocks * kStripBlocks;
        return first_ + strip * rows_ + row * stripWidth(column) + (column - strip);
    }
    // The odd tiles' places, as the number of their first pixel.
    std::uint32_t* oddTiles() const { return reinterpret_cast<std::uint32_t*>(first_ + count()); }

private:
    std::size_t columns_, rows_;
    PlanBlock* first_;
};

// Finds the windows of a source.
class WindowFinder {
public:
    WindowFinder(int stride, std::size_t sourceBytes)
        : stride_(stride), perRow_(1.0f / float(stride)),
          last_(std::int64_t(sourceBytes) - 3 * std::int64_t(stride) - 4)
    {
    }

    // Puts the tile with these entries into the block, whose windows it takes one or two of. False
    // when none hold it.
    bool place(const MapEntry (&entries)[4], PlanBlock& block, std::size_t tile) const
    {
        const std::size_t first = PlanBlock::firstPixel(tile);
        std::uint32_t fractions = 0;
        for (std::size_t p = 0; p < 4; ++p) {
            fractions |= entries[p].fractions;
            block.fx[first + p] = std::uint8_t(entries[p].fractions >> 16);
            block.fy[first + p] = std::uint8_t(entries[p].fractions);
        }
        if ((fractions & 0xFF00FF00u) != 0) return false;
        block.lower[tile] = 0;
        std::uint8_t* positions = block.position + first;
        std::int32_t below;
        if (find(entries, 4, block.window[tile], positions)) return true;
        if (!find(entries, 2, block.window[tile], positions) ||
            !find(entries + 2, 2, below, positions + 2))
            return false;
        const std::int64_t distance = std::int64_t(below) - block.window[tile];
        block.lower[tile] = std::int16_t(distance);
        return block.lower[tile] == distance && distance != PlanBlock::kNone;
    }

    // Lets two neighbouring tiles share a window wherever possible in the whole block, unless one
    // of them has two.
    void widen(PlanBlock& block) const
    {
        for (const std::int16_t distance : block.lower)
            if (distance != 0) return;
        block.lower[0] = PlanBlock::kNone;
        PlanBlock wide = block;
        for (std::size_t tile = 0; tile < kTilesInBlock; tile += 2)
            if (!share(wide, tile)) return;
        wide.window[1] = PlanBlock::kWide;
        block = wide;
    }

private:
    static constexpr int kFarthest = 2; // row or column of a top-left neighbour in its window

    // Finds a window that holds the neighbours of so many pixels, and their places in it.
    bool find(const MapEntry* entries, int count, std::int32_t& window,
              std::uint8_t* positions) const
    {
        int rows[4], columns[4];
        for (int p = 0; p < count; ++p)
            if (!split(std::int64_t(entries[p].index) - entries[0].index, rows[p], columns[p]))
                return false;
        const int top = *std::min_element(rows, rows + count);
        const int left = *std::min_element(columns, columns + count);
        const std::int64_t first =
            std::int64_t(entries[0].index) + top * std::int64_t(stride_) + left;
        if (first < 0 || first > last_) return false;
        for (int p = 0; p < count; ++p) {
            const int row = rows[p] - top, column = columns[p] - left;
            if (row > kFarthest || column > kFarthest) return false;
            positions[p] = std::uint8_t(4 * row + column);
        }
        window = std::int32_t(first);
        return true;
    }

    // A distance in the source as rows and columns; false when it is too far for a window.
    bool split(std::int64_t distance, int& rows, int& columns) const
    {
        const std::int64_t fromThreeUp = distance + 3 * std::int64_t(stride_) + stride_ / 2;
        if (fromThreeUp < 0 || fromThreeUp >= 7 * std::int64_t(stride_)) return false;
        rows = int(float(fromThreeUp) * perRow_) - 3;
        columns = int(distance - rows * std::int64_t(stride_));
        return true;
    }

    // Moves both tiles' pixels to a window that begins where the first of their own begin.
    bool share(PlanBlock& block, std::size_t tile) const
    {
        int rows, columns;
        if (!split(std::int64_t(block.window[tile + 1]) - block.window[tile], rows, columns))
            return false;
        const int top = std::min(rows, 0), left = std::min(columns, 0);
        const std::int64_t window = block.window[tile] + top * std::int64_t(stride_) + left;
        if (window < 0 || !move(block.position + PlanBlock::firstPixel(tile), -top, -left) ||
            !move(block.position + PlanBlock::firstPixel(tile + 1), rows - top, columns - left))
            return false;
        block.window[tile] = std::int32_t(window);
        return true;
    }

    static bool move(std::uint8_t* positions, int rows, int columns)
    {
        for (int p = 0; p < 4; ++p) {
            const int row = positions[p] / 4 + rows, column = positions[p] % 4 + columns;
            if (row > kFarthest || column > kFarthest) return false;
            positions[p] = std::uint8_t(4 * row + column);
        }
        return true;
    }

    int stride_;
    float perRow_;
    std::int64_t last_; // highest index of a window
};

// A window that can be read, for tiles that are mapped by the table afterwards.
void blankTile(PlanBlock& block, std::size_t tile)
{
    block.window[tile] = 0;
    block.lower[tile] = 0;
    const std::size_t first = PlanBlock::firstPixel(tile);
    std::memset(block.position + first, 0, 4);
    std::memset(block.fx + first, 0, 4);
    std::memset(block.fy + first, 0, 4);
}

// Copies the samples with these indices to a row of chroma and on, `column` samples from its start.
void copyChroma(const std::int32_t* indices, std::size_t count, const PlanarSource& src,
                const PlanarPicture& dst, std::size_t row, std::size_t column)
{
    const std::ptrdiff_t offset = std::ptrdiff_t(row) * dst.chromaPitch;
    if (dst.chromaPlanes == 1) {
        copyPairs(indices, count, src.chroma[0], dst.chroma[0] + offset + 2 * column);
    } else {
        for (int plane = 0; plane < 2; ++plane)
            for (std::size_t t = 0; t < count; ++t)
                dst.chroma[plane][offset + std::ptrdiff_t(column + t)] =
                    src.chroma[plane][indices[t]];
    }
}

// Collects the tiles' entries, so that the kernel has enough of them at a time.
void mapOddTiles(const RemapPlan& plan, const std::uint32_t* tiles, const int* table,
                 const RemapOps& ops, const unsigned char* src, const PlanarPicture& dst)
{
    constexpr std::size_t kTiles = 64;
    MapEntry entries[kTiles][4];
    unsigned char pixels[kTiles][4];
    const std::size_t w = std::size_t(plan.w);
    for (std::size_t first = 0; first < plan.oddTiles; first += kTiles) {
        const std::size_t count = std::min(kTiles, plan.oddTiles - first);
        for (std::size_t t = 0; t < count; ++t) {
            const int* top = table + 2 * std::size_t(tiles[first + t]);
            std::memcpy(entries[t], top, 2 * kMapEntryBytes);
            std::memcpy(entries[t] + 2, top + 2 * w, 2 * kMapEntryBytes);
        }
        ops.luma(src, pixels[0], reinterpret_cast<const int*>(entries), 4 * count, plan.stride,
                 reachOf(plan), 0);
        for (std::size_t t = 0; t < count; ++t) {
            const std::size_t row = tiles[first + t] / w, column = tiles[first + t] % w;
            unsigned char* top = dst.luma + std::ptrdiff_t(row) * dst.lumaPitch + column;
            std::memcpy(top, pixels[t], 2);
            std::memcpy(top + dst.lumaPitch, pixels[t] + 2, 2);
        }
    }
}

// The columns that no block covers.
void mapLeftColumns(const RemapPlan& plan, const int* table, const RemapOps& ops,
                    const PlanarSource& src, const PlanarPicture& dst)
{
    const std::size_t w = std::size_t(plan.w), left = w % kPlanBlockW;
    if (left == 0) return;
    std::int32_t samples[kTilesInBlock];
    const Divider stride(plan.stride);
    for (std::size_t y = 0; y < std::size_t(plan.h); ++y) {
        const int* entries = table + 2 * ((y + 1) * w - left);
        ops.luma(src.luma, dst.luma + std::ptrdiff_t(y) * dst.lumaPitch + (w - left), entries, left,
                 plan.stride, reachOf(plan), 0);
        if (y % 2 != 0) continue;
        ops.chromaIndices(samples, entries, left / 2, stride);
        copyChroma(samples, left / 2, src, dst, y / 2, (w - left) / 2);
    }
}

} // namespace

std::size_t planBytes(int w, int h)
{
    if (w < int(kPlanBlockW) || h < int(kPlanBlockH) || w % 2 != 0 || h % 2 != 0) return 0;
    const Blocks blocks(w, h, nullptr);
    return 64 + blocks.count() * sizeof(PlanBlock) + blocks.maxOddTiles() * sizeof(std::uint32_t);
}

bool makePlan(RemapPlan& plan, const int* table, const RemapOps& ops, std::size_t rows)
{
    if (plan.stride < kMinStride) return false;
    const Blocks blocks(plan.w, plan.h, plan.memory);
    const Divider stride(plan.stride);
    const WindowFinder finder(plan.stride, plan.sourceBytes);
    const std::size_t w = std::size_t(plan.w);
    const std::size_t last = std::min(plan.rows + rows, blocks.rows());
    for (; plan.rows < last; ++plan.rows)
        for (std::size_t column = 0; column < blocks.columns(); ++column) {
            PlanBlock& block = *blocks.at(column, plan.rows);
            const std::size_t first = plan.rows * kPlanBlockH * w + column * kPlanBlockW;
            ops.chromaIndices(block.chroma, table + 2 * first, kTilesInBlock, stride);
            for (std::size_t t = 0; t < kTilesInBlock; ++t) {
                const std::size_t pixel = first + 2 * t;
                const MapEntry entries[4] = {loadEntry(table, pixel), loadEntry(table, pixel + 1),
                                             loadEntry(table, pixel + w),
                                             loadEntry(table, pixel + w + 1)};
                if (finder.place(entries, block, t)) continue;
                if (plan.oddTiles == blocks.maxOddTiles()) return false;
                blocks.oddTiles()[plan.oddTiles++] = std::uint32_t(pixel);
                blankTile(block, t);
            }
            finder.widen(block);
        }
    return true;
}

bool isComplete(const RemapPlan& plan)
{
    return plan.rows == Blocks(plan.w, plan.h, nullptr).rows();
}

void mapByPlan(const RemapPlan& plan, const int* table, const RemapOps& ops,
               const PlanarSource& src, const PlanarPicture& dst)
{
    const Blocks blocks(plan.w, plan.h, plan.memory);
    for (std::size_t column = 0; column < blocks.columns(); column += kStripBlocks)
        for (std::size_t row = 0; row < blocks.rows(); ++row) {
            const PlanBlock* strip = blocks.at(column, row);
            const std::size_t width = blocks.stripWidth(column);
            unsigned char* top =
                dst.luma + std::ptrdiff_t(row * kPlanBlockH) * dst.lumaPitch + column * kPlanBlockW;
            const std::size_t ahead = row + kRowsAhead < blocks.rows() ? kRowsAhead * width : 0;
            const bool paired = dst.chromaPlanes == 1;
            unsigned char* pairs = paired ? dst.chroma[0] + std::ptrdiff_t(row) * dst.chromaPitch +
                                                column * kPlanBlockW
                                          : nullptr;
            ops.planRow({strip, width, ahead, src.luma, src.chroma[0], plan.stride, top,
                         top + dst.lumaPitch, pairs});
            if (paired) continue;
            for (std::size_t b = 0; b < width; ++b)
                copyChroma(strip[b].chroma, kTilesInBlock, src, dst, row,
                           (column + b) * kTilesInBlock);
        }
    mapLeftColumns(plan, table, ops, src, dst);
    mapOddTiles(plan, blocks.oddTiles(), table, ops, src.luma, dst);
}

} // namespace fe
