// Frames, slots and patterns that the tests share.
#pragma once

#include "FEDSP.h"
#include "GuardedBytes.h"
#include "LumoFESDK.h"

#include <cstdint>
#include <vector>

// Bytes of a frame; formats other than RGB count as 4:2:0.
std::size_t frameBytes(int w, int h, FORMAT format);

// A frame of deterministic noise that is smooth enough to be interpolated.
Bytes patternFrame(int w, int h, FORMAT format, std::uint32_t seed = 1);

// A frame with all luma, or all bytes of a packed frame, of one value and neutral chroma.
Bytes constantFrame(int w, int h, FORMAT format, unsigned char value);

// FNV-1a, 64 bits.
std::uint64_t hashOf(const unsigned char* data, std::size_t size);
std::uint64_t hashOf(const Bytes& bytes);

// An output frame with guard bytes on both sides, filled with `fill`. Whoever writes to the guards
// ends the program with a message.
class OutputFrame {
public:
    OutputFrame(int w, int h, FORMAT format = FORMAT_NV12, unsigned char fill = 0xA5);
    ~OutputFrame() { checkGuards(); }
    OutputFrame(const OutputFrame&) = default;
    OutputFrame& operator=(const OutputFrame&) = default;

    unsigned char* data() { return bytes_.data() + kGuard; }
    const unsigned char* data() const { return bytes_.data() + kGuard; }
    std::size_t size() const { return bytes_.size() - 2 * kGuard; }
    unsigned char operator[](std::size_t i) const { return data()[i]; }
    Bytes bytes() const { return Bytes(data(), data() + size()); }
    void checkGuards() const;

private:
    static constexpr std::size_t kGuard = 4096;
    Bytes bytes_;
};

// A camera slot for the duration of a test.
class TestSlot {
public:
    TestSlot(int inW, int inH, int screenW, int screenH, int slot = 0);
    ~TestSlot();
    TestSlot(const TestSlot&) = delete;
    TestSlot& operator=(const TestSlot&) = delete;

    FEDSP& engine() { return *m_FEDSP[slot_]; }
    int slot() const { return slot_; }
    int status() const { return status_; }

    // A record for the slot's centred circle.
    FE_ViewParams view(int mode, int camPos, int subView = 0) const;
    int update(int mode, int camPos, int subView = 0, int pan = 0, int tilt = 0, int zoom = 0);

    // Feeds one frame of the slot's input size; the output's guards are checked.
    int frame(Bytes& in, OutputFrame& out, FORMAT format = FORMAT_NV12, bool flip = false);

private:
    int slot_, inW_, inH_, status_;
};
