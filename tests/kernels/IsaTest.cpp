#include "kernels/Isa.h"

#include <gtest/gtest.h>

using namespace fe;

TEST(Isa, InUseIsTheBestOneUnlessLimited)
{
    EXPECT_EQ(isaInUse(), bestIsa());
    for (const Isa isa : kIsas) {
        limitIsa(isa);
        EXPECT_EQ(isaInUse(), isa < bestIsa() ? isa : bestIsa()) << nameOf(isa);
    }
    EXPECT_EQ(isaInUse(), bestIsa()) << "the last limit was none";
}

TEST(Isa, EachHasItsName)
{
    EXPECT_STREQ(nameOf(Isa::plain), "plain");
    EXPECT_STREQ(nameOf(Isa::sse2), "SSE2");
    EXPECT_STREQ(nameOf(Isa::ssse3), "SSSE3");
    EXPECT_STREQ(nameOf(Isa::avx2), "AVX2");
}
