// Conversions and integer arithmetic that are defined for every value.
#ifndef LUMOFE_NUMERIC_H
#define LUMOFE_NUMERIC_H

#include <cmath>
#include <cstdint>
#include <limits>

namespace fe {

// Truncates toward zero; values outside the range saturate, NaN gives 0.
inline int trunc32(double x)
{
    if (std::isnan(x)) return 0;
    if (x <= double(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    if (x >= double(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    return int(x);
}

inline int saturate32(std::int64_t x)
{
    if (x < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    if (x > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    return int(x);
}

// Sum modulo 2^32, for keys and counters.
template <class... Ints>
int wrappingSum(Ints... values)
{
    return int((std::uint32_t(values) + ... + 0u));
}

// Angle of the full turn, quarter degrees.
inline constexpr int kFullTurn = 1440;

// angle + offset, both quarter degrees, moved into 0..1439.
inline int wrapAngle(int angle, int offset)
{
    const int wrapped = (angle % kFullTurn + offset) % kFullTurn;
    return wrapped < 0 ? wrapped + kFullTurn : wrapped;
}

} // namespace fe

#endif
