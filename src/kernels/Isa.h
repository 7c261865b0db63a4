// The instruction sets that kernels have variants for.
#ifndef LUMOFE_ISA_H
#define LUMOFE_ISA_H

namespace fe {

// In rising order: a processor that has one has all before it.
enum class Isa { plain, sse2, ssse3, avx2 };

inline constexpr Isa kIsas[] = {Isa::plain, Isa::sse2, Isa::ssse3, Isa::avx2};

const char* nameOf(Isa isa);

// The highest set that this processor has.
Isa bestIsa();

// The set that the library uses: the best one, unless it was limited.
Isa isaInUse();

// Lets the whole process use no higher set than this one, for tests and benchmarks: every set gives
// the same bytes. Isa::avx2 lifts the limit.
void limitIsa(Isa highest);

} // namespace fe

#endif
