// Fast approximations of the lens model. The pictures depend on their exact results.
#include "FEDSP.h"

#include <cmath>
#include <cstdint>
#include <cstring>

float FastInvSqrt(float x)
{
    std::int32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    const std::uint32_t estimate = 0x5F3759DFu - std::uint32_t(bits >> 1);
    float y;
    std::memcpy(&y, &estimate, sizeof y);
    return y * (1.5f - 0.5f * x * y * y);
}

double FastAtan(double t)
{
    const auto polynomial = [](double x) {
        const double a = std::fabs(x);
        return x * 0.7853981633974483 - (a - 1) * x * (0.2447 + 0.0663 * a);
    };
    return std::fabs(t) <= 1 ? polynomial(t) : 1.5707963267948966 - polynomial(1 / t);
}
