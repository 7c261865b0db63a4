// The unit of a remapping plan, see RemapPlan.h. Data only: variant files include it.
#ifndef LUMOFE_PLANBLOCK_H
#define LUMOFE_PLANBLOCK_H

#include <cstddef>
#include <cstdint>

namespace fe {

inline constexpr std::size_t kPlanBlockW = 16, kPlanBlockH = 2, kTilesInBlock = 8;

// 16 x 2 output pixels: eight tiles of 2 x 2, from left to right. A tile's pixels are top left, top
// right, bottom left, bottom right; those of tile t begin at byte firstPixel(t) of the arrays.
struct PlanBlock {
    // Index of each tile's window in the luma plane. When window[1] is kWide, tiles 0 and 1 share
    // window[0], 2 and 3 window[2], and so on.
    std::int32_t window[8];
    // How far behind that window the one of the tile's lower pixels is. When lower[0] is kNone, all
    // tiles have one window.
    std::int16_t lower[8];
    std::int32_t chroma[8]; // index of each tile's chroma sample
    // Of each pixel's top-left neighbour in the window: 4 * row + column, both 0..2.
    std::uint8_t position[32];
    std::uint8_t fx[32]; // fractions, as in the table
    std::uint8_t fy[32];

    static constexpr std::int32_t kWide = -1;
    static constexpr std::int16_t kNone = INT16_MIN;
    // The even tiles, then the odd ones: two neighbours make a vector of 256 bits.
    static constexpr std::size_t firstPixel(std::size_t tile)
    {
        return tile % 2 * 16 + tile / 2 * 4;
    }
};
static_assert(sizeof(PlanBlock) == 176);

// Neighbouring blocks, and what is made of them.
struct PlanRow {
    const PlanBlock* blocks;
    std::size_t count;
    std::size_t ahead; // samples are fetched for the block so many after each, which must exist
    const unsigned char *luma, *chroma; // the source; chroma when there are pairs
    int stride;                         // of luma
    unsigned char *top, *bottom;        // two rows of luma
    unsigned char* pairs;               // a row of chroma; null where the picture has none in pairs
};

// Byte shuffles for each 128 bits: bytes 4 * i to 4 * i + 3, each four times, or twice with a zero
// behind it.
alignas(32) inline constexpr unsigned char kFourTimes[4][32] = {
    {0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,
     0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3},
    {4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7,
     4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7},
    {8, 8, 8, 8, 9, 9, 9, 9, 10, 10, 10, 10, 11, 11, 11, 11,
     8, 8, 8, 8, 9, 9, 9, 9, 10, 10, 10, 10, 11, 11, 11, 11},
    {12, 12, 12, 12, 13, 13, 13, 13, 14, 14, 14, 14, 15, 15, 15, 15,
     12, 12, 12, 12, 13, 13, 13, 13, 14, 14, 14, 14, 15, 15, 15, 15}};
alignas(32) inline constexpr unsigned char kTwice[4][32] = {
    {0, 255, 0, 255, 1, 255, 1, 255, 2, 255, 2, 255, 3, 255, 3, 255,
     0, 255, 0, 255, 1, 255, 1, 255, 2, 255, 2, 255, 3, 255, 3, 255},
    {4, 255, 4, 255, 5, 255, 5, 255, 6, 255, 6, 255, 7, 255, 7, 255,
     4, 255, 4, 255, 5, 255, 5, 255, 6, 255, 6, 255, 7, 255, 7, 255},
    {8, 255, 8, 255, 9, 255, 9, 255, 10, 255, 10, 255, 11, 255, 11, 255,
     8, 255, 8, 255, 9, 255, 9, 255, 10, 255, 10, 255, 11, 255, 11, 255},
    {12, 255, 12, 255, 13, 255, 13, 255, 14, 255, 14, 255, 15, 255, 15, 255,
     12, 255, 12, 255, 13, 255, 13, 255, 14, 255, 14, 255, 15, 255, 15, 255}};

} // namespace fe

#endif
