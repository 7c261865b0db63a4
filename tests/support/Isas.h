// Comparing the variants for instruction sets with the plain code.
#pragma once

#include "Frames.h"
#include "GuardedBuffer.h"
#include "kernels/Isa.h"

#include <algorithm>
#include <gtest/gtest.h>

// Calls run(output) with each instruction set that the processor has, for outputs of so many bytes
// that end at an unreadable page: all must write the same.
template <class Run>
void expectSameWithEveryIsa(std::size_t size, Run run)
{
    GuardedBuffer plain(size);
    std::fill_n(plain.data(), size, static_cast<unsigned char>(0xA5));
    fe::limitIsa(fe::Isa::plain);
    run(plain.data());
    for (const fe::Isa isa : {fe::Isa::sse2, fe::Isa::ssse3, fe::Isa::avx2}) {
        if (isa > fe::bestIsa()) break;
        GuardedBuffer other(size);
        std::fill_n(other.data(), size, static_cast<unsigned char>(0xA5));
        fe::limitIsa(isa);
        run(other.data());
        const auto* differs = std::mismatch(plain.data(), plain.data() + size, other.data()).first;
        EXPECT_EQ(differs - plain.data(), std::ptrdiff_t(size))
            << fe::nameOf(isa) << " differs there";
    }
    fe::limitIsa(fe::Isa::avx2);
}
