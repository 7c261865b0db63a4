// The entries of the library's mapping tables.
#ifndef LUMOFE_TOOLS_TABLE_ENTRY_H
#define LUMOFE_TOOLS_TABLE_ENTRY_H

#include <limits>

namespace lumofe {

// A place in the input, pixels.
struct TablePoint {
    float x;
    float y;
};

// Where an entry of a mapping table samples an input of that many pixels a row; not numbers where
// it samples nothing.
inline TablePoint sourceOf(const int* entry, int pitch)
{
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    if (entry[0] == 0 && entry[1] == 0) return {none, none};
    const unsigned fractions = static_cast<unsigned>(entry[0]);
    return {float(entry[1] % pitch) + float(fractions >> 16) / 256,
            float(entry[1] / pitch) + float(fractions & 0xFFFF) / 256};
}

} // namespace lumofe

#endif
