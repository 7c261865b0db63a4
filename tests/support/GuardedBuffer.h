// A buffer that ends at an unreadable page: one byte too far crashes the test.
#pragma once

#include <cstddef>

class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t size);
    ~GuardedBuffer();
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    unsigned char* data() { return data_; }
    std::size_t size() const { return size_; }
    unsigned char& operator[](std::size_t i) { return data_[i]; }

private:
    unsigned char* base_;
    std::size_t mapped_;
    unsigned char* data_;
    std::size_t size_;
};
