#include "kernels/ReversedCopy.h"

#include "Isas.h"

#include <gtest/gtest.h>

TEST(ReversedCopy, OfAnyLengthIsThatOfThePlainCode)
{
    for (const std::size_t elementBytes : {1u, 2u})
        for (std::size_t count = 0; count <= 67; ++count) {
            const std::size_t bytes = count * elementBytes;
            GuardedBuffer src(bytes);
            for (std::size_t i = 0; i < bytes; ++i)
                src[i] = static_cast<unsigned char>(i * 37 + 11);
            expectSameWithEveryIsa(bytes, [&](unsigned char* dst) {
                fe::copyReversed(src.data(), dst, count, elementBytes);
                for (std::size_t i = 0; i < bytes; ++i) {
                    const std::size_t element = i / elementBytes;
                    ASSERT_EQ(dst[i], src[(count - 1 - element) * elementBytes + i % elementBytes]);
                }
            });
        }
}

// What the plain code makes of buffers that overlap counts.
TEST(ReversedCopy, OfOverlappingBuffersGoesElementByElement)
{
    expectSameWithEveryIsa(100, [](unsigned char* bytes) {
        for (int i = 0; i < 100; ++i)
            bytes[i] = static_cast<unsigned char>(i);
        fe::copyReversed(bytes, bytes + 10, 80, 1);
    });
}
