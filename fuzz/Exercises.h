// What the exercises of the kernels fuzzer share, and the exercises themselves: each draws
// arguments and calls something with buffers of just the bytes that the headers ask for.
#pragma once

#include "Draw.h"
#include "ExactBuffer.h"
#include "FEDSP.h"
#include "kernels/Isa.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

// A side of a small picture; now and then one that there is none of.
inline int drawSide(Draw& draw)
{
    return draw.chance(16) ? draw.of({0, -1, INT_MIN}) : draw.between(1, 24);
}

inline std::size_t bytes(std::int64_t count)
{
    return std::size_t(std::max<std::int64_t>(count, 0));
}

inline std::int64_t area(int w, int h)
{
    return w > 0 && h > 0 ? std::int64_t(w) * h : 0;
}

// A buffer with drawn contents.
struct Source : ExactBuffer {
    Source(Draw& draw, std::int64_t size) : ExactBuffer(bytes(size))
    {
        draw.fill(data(), this->size());
    }
};

// Calls run(output) with each instruction set that the processor has: all must write the same
// bytes.
template <class Run>
void withEveryIsa(std::int64_t size, Run run)
{
    ExactBuffer plain(bytes(size));
    std::memset(plain.data(), 0xA5, plain.size());
    fe::limitIsa(fe::Isa::plain);
    run(plain.data());
    for (const fe::Isa isa : {fe::Isa::sse2, fe::Isa::ssse3, fe::Isa::avx2}) {
        if (isa > fe::bestIsa()) break;
        ExactBuffer other(bytes(size));
        std::memset(other.data(), 0xA5, other.size());
        fe::limitIsa(isa);
        run(other.data());
        if (std::memcmp(plain.data(), other.data(), plain.size()) != 0) std::abort();
    }
    fe::limitIsa(fe::Isa::avx2);
}

struct Engine : FEDSP {
    explicit Engine(Draw& draw)
    {
        m_nFormat = FORMAT(draw.below(5));
        m_nPitch = draw.between(1, 40);
    }
};

void wholeFrameKernels(Draw& draw);
void packedKernels(Draw& draw);
void bandKernels(Draw& draw);
void conversions(Draw& draw);
void affine(Draw& draw);
void matrices(Draw& draw);
void resizing(Draw& draw);
void composition(Draw& draw);
void builders(Draw& draw);
void carvedBuffers(Draw& draw);
