// The working buffers: one list of them, in the order in which they are obtained.
#ifndef LUMOFE_BUFFERS_H
#define LUMOFE_BUFFERS_H

#include "FEDSP.h"

#include <array>
#include <cstdint>
#include <optional>

namespace fe {

// Index into FEDSP::m_nCapacity.
enum Buffer {
    kStaged,
    kSubMapA,
    kSubMapB,
    kMapTable,
    kPanoImage,
    kViewImage,
    kWorkImageA,
    kMapWork,
    kBufferCount
};

struct BufferSize {
    std::int64_t carved;  // bytes in a host's block
    std::int64_t heap;    // bytes from the heap: with room for every input and screen size
    std::int64_t cleared; // bytes cleared when it comes from the heap; -1 all of it
};

// Sizes for the engine's radius and panorama heights, which are derived and stored first. Nothing
// when a screen side is negative or a buffer would not fit 31 bits.
std::optional<std::array<BufferSize, kBufferCount>> planBuffers(FEDSP& e, int inW, int inH,
                                                                int screenW, int screenH);

// The buffer's address, null when it was not obtained.
void* bufferAddress(const FEDSP& e, Buffer buffer);

// Sets min(bytes, capacity) bytes of the buffer to `value`; a missing buffer is skipped.
void fillBuffer(FEDSP& e, Buffer buffer, std::int64_t bytes, unsigned char value);

// True when all working buffers are there.
bool hasBuffers(const FEDSP& e);

} // namespace fe

#endif
