#include "kernels/CopyPairs.h"

#include "GuardedBuffer.h"

#include <gtest/gtest.h>
#include <vector>

using namespace fe;

// The source and the destination end at unreadable pages.
TEST(CopyPairs, CopiesAnyNumberOfPairsAndTouchesNothingElse)
{
    constexpr std::size_t kPairs = 40;
    GuardedBuffer source(2 * kPairs);
    for (std::size_t i = 0; i < 2 * kPairs; ++i)
        source.data()[i] = static_cast<unsigned char>(i);
    for (std::size_t count = 0; count <= 27; ++count) {
        std::vector<std::int32_t> indices(count);
        std::vector<unsigned char> expected;
        for (std::size_t k = 0; k < count; ++k) {
            // From the last pair down to the first ones, not one after the other.
            const std::size_t pair = kPairs - 1 - (7 * k) % kPairs;
            indices[k] = std::int32_t(pair);
            expected.push_back(static_cast<unsigned char>(2 * pair));
            expected.push_back(static_cast<unsigned char>(2 * pair + 1));
        }
        GuardedBuffer out(2 * count + 1);
        out.data()[0] = 0xA5;
        copyPairs(indices.data(), count, source.data(), out.data() + 1);
        EXPECT_EQ(out.data()[0], 0xA5) << count;
        EXPECT_EQ(std::vector<unsigned char>(out.data() + 1, out.data() + out.size()), expected)
            << count;
    }
}
