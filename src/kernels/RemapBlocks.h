// The remapping loops for x86 vectors of any width, written once. A file of one instruction set
// includes this after nothing else and instantiates it with its vectors; everything has internal
// linkage, so that no other file can end up with its instructions.
//
// In exact integers, with fractions fx, fy in 0..256 and the neighbours P00 P01 / P10 P11:
//
//     top    = 256 * P00 + fx * (P01 - P00)      modulo 2^16, which is enough: it is 0..65280
//     bottom = 256 * P10 + fx * (P11 - P10)
//     value  = (top * (256 - fy) + bottom * fy) >> 16
//
// The last line's products are signed, so top and bottom lose 32768 and the value 128 meanwhile.
//
// The neighbours of a row are the last two of four bytes loaded at once (of eight for packed
// pixels). Blocks whose first index is too low for that, with fractions above 256, or with
// neighbours of weight 0 that may not exist, go to the plain loop.
#include "kernels/CopyPairs.h"
#include "kernels/RemapOps.h"

#include <cstring>

namespace {

constexpr std::size_t kBlock = 16; // entries

inline const int* entryAddress(const int* table, std::size_t k)
{
    return table + 2 * k;
}

inline std::int32_t indexOf(const int* block, int entry)
{
    std::int32_t index;
    std::memcpy(&index, block + 2 * entry + 1, sizeof index);
    return index;
}

// Near the end of an array that is an address behind it, which no pointer may be computed to.
template <class V>
void prefetchAhead(const void* p, std::size_t bytes)
{
    V::prefetch(
        reinterpret_cast<const unsigned char*>(reinterpret_cast<std::uintptr_t>(p) + bytes));
}

template <class V>
void prefetchBlock(const int* entries, std::size_t ahead)
{
    prefetchAhead<V>(entries, ahead);
    prefetchAhead<V>(entries, ahead + 64);
}

// The samples of a few entries, for all that are between them.
template <class V>
void prefetchSamples(const unsigned char* src, const int* entries)
{
    for (int k = 0; k < int(V::kLanes); k += 2)
        V::prefetch(src + indexOf(entries, k));
}

// The block's entries as vectors: mask of those that the vectors must leave to the plain loop.
template <class V>
typename V::Vec hardEntries(typename V::Vec fractions, typename V::Vec indices,
                            typename V::Vec reach)
{
    const auto tooLarge = V::saturatedSub16(fractions, V::all16(256));
    const auto tooLow = V::greater32(V::all32(2), indices);
    const auto weightless = V::equal16(fractions, V::zero());
    return V::bitOr(V::bitOr(tooLarge, tooLow),
                    V::bitAnd(weightless, V::greater32(indices, reach)));
}

// How many entries of whole blocks come before the first hard one.
template <class V>
std::size_t easyEntries(const int* table, std::size_t count, std::int32_t highest)
{
    const auto reach = V::all32(highest);
    std::size_t k = 0;
    for (; k + kBlock <= count; k += kBlock) {
        auto hard = V::zero();
        for (std::size_t i = 0; i < kBlock; i += V::kLanes) {
            typename V::Vec fractions, indices;
            V::loadEntries(entryAddress(table, k + i), fractions, indices);
            hard = V::bitOr(hard, hardEntries<V>(fractions, indices, reach));
        }
        if (V::any(hard)) break;
    }
    return k;
}

// Maps easy blocks by easy(first entry, first behind them) and what is left by plain(first entry,
// count), a block at a time. The two kinds of loop keep their constants in registers.
template <class V, class Easy, class Plain>
void mapRuns(const int* table, std::size_t count, std::int32_t highest, Easy easy, Plain plain)
{
    std::size_t k = 0;
    while (k + kBlock <= count) {
        const std::size_t run = easyEntries<V>(entryAddress(table, k), count - k, highest);
        easy(k, k + run);
        k += run;
        if (k + kBlock > count) break;
        plain(k, kBlock);
        k += kBlock;
    }
    plain(k, count - k);
}

// The weights 256 - fy, fy of each entry in its two words, from fy in both.
template <class V>
typename V::Vec verticalWeights(typename V::Vec fy)
{
    return V::add16(V::bitXor(fy, V::all32(0xFFFF)), V::all32(257));
}

// Interpolates in double words that hold P00 P01 P10 P11, with fx in both words and the vertical
// weights. The values, less 128, are in the upper words.
template <class V>
typename V::Vec interpolate(typename V::Vec samples, typename V::Vec fx, typename V::Vec weights)
{
    const auto left = V::template left16<8>(samples); // times 256
    const auto step = V::differences8(samples);
    const auto rows = V::bitXor(V::add16(left, V::mul16(step, fx)), V::all16(-32768));
    return V::multiplyAdd(rows, weights);
}

// kLanes entries.
template <class V>
typename V::Vec lumaLanes(const unsigned char* src, const int* block, int stride)
{
    typename V::Vec fractions, indices;
    V::loadEntries(block, fractions, indices);
    const auto top = V::gather(src, -2, block);
    const auto bottom = V::gather(src, std::ptrdiff_t(stride) - 2, block);
    return interpolate<V>(V::upperWords(top, bottom), V::bothUpper(fractions),
                          verticalWeights<V>(V::bothLower(fractions)));
}

template <class V>
void mapLuma(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
             int stride, std::int32_t highest, std::size_t ahead)
{
    const auto easy = [=](std::size_t k, std::size_t end) {
        for (; k < end; k += kBlock) {
            const int* block = entryAddress(table, k);
            prefetchBlock<V>(block, 2 * ahead);
            for (std::size_t i = 0; i < kBlock; i += V::kLanes)
                prefetchSamples<V>(src, entryAddress(block, i) + ahead / sizeof(int));
            typename V::Vec values[kBlock / V::kLanes];
            for (std::size_t i = 0; i < kBlock / V::kLanes; ++i)
                values[i] = lumaLanes<V>(src, entryAddress(block, i * V::kLanes), stride);
            V::storeBytes(dst + k, values);
        }
    };
    mapRuns<V>(table, count, highest, easy, [=](std::size_t k, std::size_t n) {
        fe::kRemapPlain.luma(src, dst + k, entryAddress(table, k), n, stride, highest, ahead);
    });
}

enum class Windows { shared, ofTiles, ofRows };

// The vertical weights of each tile's four pixels, from 16 fractions in every 128 bits.
template <class V>
void weightsOfTiles(typename V::Vec fy, typename V::Vec (&weights)[4])
{
    const typename V::Vec words[2] = {V::lowBytes(fy), V::highBytes(fy)};
    for (std::size_t i = 0; i < 2; ++i) {
        const auto rest = V::sub16(V::all16(256), words[i]);
        weights[2 * i] = V::lowWords(rest, words[i]);
        weights[2 * i + 1] = V::highWords(rest, words[i]);
    }
}

// Luma of one block of a plan; srcRows are the source's first four rows. A vector holds one tile of
// a pair or both; the values of tiles 0, 2, 4, 6 come first, with those of 1, 3, 5, 7 in their
// upper lanes or behind them. Inlined, so that the constants stay where they are from block to
// block.
template <class V, Windows kind>
[[gnu::always_inline]] inline void planBlock(const fe::PlanBlock& block,
                                             const unsigned char* const (&srcRows)[4],
                                             unsigned char* top, unsigned char* bottom)
{
    constexpr std::size_t kPairs = 4, kVectors = 8 / V::kLanes; // vectors of a pair
    typename V::Vec values[kPairs * kVectors], weights[kVectors][kPairs];
    for (std::size_t v = 0; v < kVectors; ++v)
        weightsOfTiles<V>(V::loadBytes(block.fy + 16 * v), weights[v]);
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
        const std::ptrdiff_t tiles[2] = {
            block.window[2 * pair], block.window[2 * pair + (kind == Windows::shared ? 0 : 1)]};
        typename V::Vec windows[kVectors], lower[kVectors];
        V::template loadWindows<kind == Windows::shared>(srcRows, tiles, windows);
        if (kind == Windows::ofRows) {
            const std::ptrdiff_t below[2] = {tiles[0] + block.lower[2 * pair],
                                             tiles[1] + block.lower[2 * pair + 1]};
            V::template loadWindows<false>(srcRows, below, lower);
        }
        for (std::size_t v = 0; v < kVectors; ++v) {
            const auto place =
                V::add8(V::eachFourTimes(block.position + 16 * v, pair), V::all32(0x05040100));
            auto samples = V::shuffle8(windows[v], place);
            if (kind == Windows::ofRows)
                samples = V::lowerPixels(samples, V::shuffle8(lower[v], place));
            values[v * kPairs + pair] =
                interpolate<V>(samples, V::eachTwice(block.fx + 16 * v, pair), weights[v][pair]);
        }
    }
    V::storeTiles(top, bottom, values);
}

// The plan itself, and the first and last rows of the windows of the block that comes `ahead`
// blocks later.
template <class V>
void prefetchPlan(const fe::PlanBlock* blocks, std::size_t ahead,
                  const unsigned char* const (&srcRows)[4])
{
    constexpr std::size_t kBlocksAhead = 32;
    for (std::size_t line = 0; line < sizeof(fe::PlanBlock); line += 64)
        prefetchAhead<V>(blocks, kBlocksAhead * sizeof(fe::PlanBlock) + line);
    for (std::size_t tile = 0; tile < fe::kTilesInBlock; tile += 2) {
        const std::ptrdiff_t window = blocks[ahead].window[tile];
        V::prefetch(srcRows[0] + window);
        V::prefetch(srcRows[3] + window);
    }
}

// Chroma follows each block's luma, whose arithmetic hides how long its samples take to come.
template <class V>
void planRow(const fe::PlanRow& row)
{
    const std::ptrdiff_t stride = row.stride;
    const unsigned char* const srcRows[4] = {row.luma, row.luma + stride, row.luma + 2 * stride,
                                             row.luma + 3 * stride};
    // Stores of bytes could change what `row` refers to.
    const std::size_t count = row.count, ahead = row.ahead;
    const fe::PlanBlock* block = row.blocks;
    const unsigned char* chroma = row.chroma;
    unsigned char *top = row.top, *bottom = row.bottom, *pairs = row.pairs;
    for (std::size_t b = 0; b < count; ++b, ++block) {
        prefetchPlan<V>(block, ahead, srcRows);
        if (block->lower[0] != fe::PlanBlock::kNone)
            planBlock<V, Windows::ofRows>(*block, srcRows, top, bottom);
        else if (block->window[1] == fe::PlanBlock::kWide)
            planBlock<V, Windows::shared>(*block, srcRows, top, bottom);
        else
            planBlock<V, Windows::ofTiles>(*block, srcRows, top, bottom);
        top += fe::kPlanBlockW;
        bottom += fe::kPlanBlockW;
        if (!pairs) continue;
        fe::copyPairs(block->chroma, fe::kTilesInBlock, chroma, pairs);
        pairs += fe::kPlanBlockW;
    }
}

template <class V, bool swapped>
void mapPacked(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
               std::ptrdiff_t rowBytes, std::int32_t highest, std::size_t ahead)
{
    const auto easy = [=](std::size_t k, std::size_t end) {
        for (; k < end; k += V::kLanes) {
            const int* lanes = entryAddress(table, k);
            prefetchBlock<V>(lanes, 2 * ahead);
            prefetchSamples<V>(src, lanes + ahead / sizeof(int));
            const auto fractions = V::fractionsInOrder(lanes);
            const auto fx = V::bothUpper(fractions);
            const auto weights = verticalWeights<V>(V::bothLower(fractions));
            // One pixel in each 128-bit lane: a double word for each of its bytes.
            typename V::Vec pixels[4];
            for (int p = 0; p < 4; ++p)
                pixels[p] = interpolate<V>(V::pixelPairs(src, rowBytes, lanes, p),
                                           V::broadcast(fx, p), V::broadcast(weights, p));
            V::template storePixels<swapped>(dst + 3 * k, pixels);
        }
    };
    const auto plain = swapped ? fe::kRemapPlain.packedSwapped : fe::kRemapPlain.packed;
    mapRuns<V>(table, count, highest, easy, [=](std::size_t k, std::size_t n) {
        plain(src, dst + 3 * k, entryAddress(table, k), n, rowBytes, highest, ahead);
    });
}

template <class V>
void chromaIndices(std::int32_t* indices, const int* table, std::size_t count,
                   const fe::Divider& divider)
{
    const int stride = divider.stride;
    const auto m = V::all32(int(divider.multiplier));
    const auto halfStride = V::all32(stride >> 1);
    const auto length = V::all32(stride);
    std::size_t k = 0;
    // The last vector of entries would reach behind the table.
    for (; k + V::kLanes < count; k += V::kLanes) {
        const int* block = entryAddress(table, 2 * k);
        const auto index = V::secondIndices(block);
        if (V::any(V::greater32(V::zero(), index))) {
            fe::kRemapPlain.chromaIndices(indices + k, block, V::kLanes, divider);
            continue;
        }
        const auto row = V::highProduct(index, m, divider.shift);
        const auto column = V::sub32(index, V::mul32(row, length));
        const auto first = V::mul32(V::template right32<1>(row), halfStride);
        V::store(indices + k, V::add32(first, V::template right32<1>(column)));
    }
    fe::kRemapPlain.chromaIndices(indices + k, entryAddress(table, 2 * k), count - k, divider);
}

} // namespace
