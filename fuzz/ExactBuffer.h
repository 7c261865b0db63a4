// Memory of exactly a stated size, behind which a read or write is caught.
#pragma once

#include "GuardedBuffer.h"

#include <cstddef>
#include <cstring>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LUMOFE_ADDRESS_SANITIZED
#endif
#endif

#ifdef LUMOFE_ADDRESS_SANITIZED

// The sanitizer watches both ends.
class ExactBuffer {
public:
    explicit ExactBuffer(std::size_t size) : data_(new unsigned char[size]), size_(size) {}
    ~ExactBuffer() { delete[] data_; }
    ExactBuffer(const ExactBuffer&) = delete;
    ExactBuffer& operator=(const ExactBuffer&) = delete;

    unsigned char* data() { return data_; }
    std::size_t size() const { return size_; }

private:
    unsigned char* data_;
    std::size_t size_;
};

#else

using ExactBuffer = GuardedBuffer;

#endif
