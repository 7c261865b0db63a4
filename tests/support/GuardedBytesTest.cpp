#include "GuardedBytes.h"

#include <gtest/gtest.h>

#ifndef __SANITIZE_ADDRESS__

namespace {

void writeAt(std::ptrdiff_t offset)
{
    Bytes bytes(24);
    unsigned char* volatile data = bytes.data(); // the compiler shall not see through this
    data[offset] = 1;
}

} // namespace

TEST(GuardedBytesDeathTest, WritesOutsideAreNoticed)
{
    writeAt(0);
    writeAt(23);
    EXPECT_DEATH(writeAt(24), "outside a buffer of 24 bytes");
    EXPECT_DEATH(writeAt(-1), "outside a buffer of 24 bytes");
}

#endif
