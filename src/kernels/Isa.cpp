// Which instruction sets this processor has.
#include "kernels/Isa.h"

#include <algorithm>
#include <atomic>

namespace fe {

namespace {

std::atomic<Isa> limit{Isa::avx2};

} // namespace

const char* nameOf(Isa isa)
{
    switch (isa) {
    case Isa::sse2:
        return "SSE2";
    case Isa::ssse3:
        return "SSSE3";
    case Isa::avx2:
        return "AVX2";
    default:
        return "plain";
    }
}

Isa bestIsa()
{
    if (__builtin_cpu_supports("avx2")) return Isa::avx2;
    if (__builtin_cpu_supports("ssse3")) return Isa::ssse3;
    return Isa::sse2; // all code of the library needs it
}

Isa isaInUse()
{
    return std::min(bestIsa(), limit.load(std::memory_order_relaxed));
}

void limitIsa(Isa highest)
{
    limit.store(highest, std::memory_order_relaxed);
}

} // namespace fe
