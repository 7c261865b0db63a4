// The kernels, warpers, conversions, composition methods and table builders, one exercise an input.
#include "Exercises.h"

#include <cstdio>
#include <iterator>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The library reports on standard output.
    return std::freopen("/dev/null", "w", stdout) ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Exercise = void (*)(Draw&);
    constexpr Exercise all[] = {
        wholeFrameKernels, packedKernels, bandKernels, conversions, affine,
        matrices,          resizing,      composition, builders,    carvedBuffers};
    Draw draw(data, size);
    all[draw.below(int(std::size(all)))](draw);
    return 0;
}
