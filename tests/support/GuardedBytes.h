// Byte vectors that notice when somebody writes just before or behind them.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

// Puts guard bytes on both sides and looks at them when the memory is given back. The sanitizer
// does better by itself: it notices reads, too.
template <class T>
struct GuardedAllocator {
    using value_type = T;

    GuardedAllocator() = default;
    template <class U>
    GuardedAllocator(const GuardedAllocator<U>&)
    {
    }

    T* allocate(std::size_t count)
    {
        auto* block = static_cast<unsigned char*>(std::malloc(count * sizeof(T) + 2 * kGuard));
        if (!block) std::abort();
        std::memset(block, kValue, kGuard);
        std::memset(block + kGuard + count * sizeof(T), kValue, kGuard);
        return static_cast<T*>(static_cast<void*>(block + kGuard));
    }
    void deallocate(T* p, std::size_t count)
    {
        auto* block = static_cast<unsigned char*>(static_cast<void*>(p)) - kGuard;
        for (std::size_t i = 0; i < kGuard; ++i)
            if (block[i] != kValue || block[kGuard + count * sizeof(T) + i] != kValue) {
                std::fprintf(stderr, "bytes were written outside a buffer of %zu bytes\n",
                             count * sizeof(T));
                std::abort();
            }
        std::free(block);
    }
    bool operator==(const GuardedAllocator&) const { return true; }

private:
    static constexpr std::size_t kGuard = 64;
    static constexpr unsigned char kValue = 0xC7;
};

#ifdef __SANITIZE_ADDRESS__
using Bytes = std::vector<unsigned char>;
#else
using Bytes = std::vector<unsigned char, GuardedAllocator<unsigned char>>;
#endif
