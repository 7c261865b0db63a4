// Rows of a polar unwrap's mapping table.
#ifndef LUMOFE_POLARROW_H
#define LUMOFE_POLARROW_H

namespace fe {

inline constexpr int kPolarGroup = 8;
inline constexpr int kPolarBlock = 544; // columns, whole groups

// The directions of a block of columns: sine and cosine of their angles, times 256. Columns
// 2, 3, 4 and 5 of each group are stored as 4, 5, 2 and 3; see polarPlace.
struct PolarColumns {
    alignas(32) double sine[kPolarBlock];
    alignas(32) double cosine[kPolarBlock];
};

// Where column c of a block is stored.
constexpr int polarPlace(int c)
{
    const int middle = c >> 1 & 3;
    return middle == 1 || middle == 2 ? c ^ 6 : c;
}

// What the columns of a row have in common. Positions are in 1/256 pixel: the fractions of an entry
// and its whole part are then halves of one integer.
struct PolarRow {
    double radius; // pixels
    double centreRow, centreCol;
    float lastRow, lastCol; // a source must not lie behind them, nor at 0 or before
    int pitch;              // source samples to a row, at most 0x7FFF, as must be all coordinates
    bool inside;            // no column has a source outside
};

// Writes a row's first `count` entries.
using PolarRowWriter = void(const PolarColumns& columns, const PolarRow& row, void* entries,
                            int count);
PolarRowWriter writePolarRowSse2, writePolarRowAvx2;

} // namespace fe

#endif
