// Draws arguments from the fuzzer's bytes, weighted to the edges.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <initializer_list>

class Draw {
public:
    Draw(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    bool more() { return bytes_.remaining_bytes() > 0; }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    // 0 .. count - 1
    int below(int count) { return bytes_.ConsumeIntegralInRange(0, count - 1); }
    int between(int low, int high) { return bytes_.ConsumeIntegralInRange(low, high); }
    int any() { return bytes_.ConsumeIntegral<int>(); }

    int of(std::initializer_list<int> values) { return values.begin()[below(int(values.size()))]; }
    short shortValue()
    {
        switch (below(4)) {
        case 0:
            return static_cast<short>(of({0, 1, -1, 44, 45, 46, -45, 88, 89, 720, 1439, 1440, -1440,
                                          -20, -70, 900, 3599, SHRT_MAX, SHRT_MIN}));
        case 1:
            return bytes_.ConsumeIntegral<short>();
        default:
            return static_cast<short>(between(-60, 90));
        }
    }
    unsigned short unsignedShort() { return static_cast<unsigned short>(shortValue()); }

    int extremeInt()
    {
        return of({0, 1, -1, INT_MAX, INT_MIN, 0xFFFF, 0x10000, 46341, 0x8000, -0x8000, 30000});
    }
    float anyFloat()
    {
        switch (below(4)) {
        case 0:
            return float(any());
        case 1:
            return bytes_.ConsumeFloatingPoint<float>();
        case 2:
            return float(of({0, 1, -1, 2}));
        default:
            return float(between(-3000, 3000)) / 256.0f;
        }
    }
    void fill(unsigned char* data, std::size_t size)
    {
        // A few bytes of the input say what a whole frame holds.
        const auto first = bytes_.ConsumeIntegral<unsigned char>();
        const auto step = bytes_.ConsumeIntegral<unsigned char>();
        for (std::size_t i = 0; i < size; ++i)
            data[i] = static_cast<unsigned char>(first + i * step);
    }

private:
    FuzzedDataProvider bytes_;
};
