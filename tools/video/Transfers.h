// Moves whole frames through several pipes at once.
#ifndef LUMOFE_TOOLS_TRANSFERS_H
#define LUMOFE_TOOLS_TRANSFERS_H

#include "video/ChildProcess.h"
#include "video/Stopwatch.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumofe {

// Bytes on their way into or out of a pipe that does not block.
struct Transfer {
    enum class Direction { read, write };

    int descriptor = -1;
    Direction direction = Direction::read;
    std::uint8_t* bytes = nullptr; // of a writing one, only read
    std::size_t count = 0;
    std::size_t done = 0;
    bool ended = false; // the other end was closed, or reading was called off

    bool pending() const { return done < count && !ended; }
};

// Where the time of transfers went.
struct TransferTimes {
    double waitingToRead = 0; // seconds with nothing to do, while only reads were pending
    double waitingToWrite = 0;
    double waitingForEither = 0;
    Elapsed calls; // reads and writes; processor time of polls too
};

// Carries on until no transfer is pending, and meanwhile takes in what the programs write on
// standard error and descriptor 3, so that they never wait for that. As soon as `interruption`, a
// descriptor, is readable, reading is called off; -1: never.
void carryOut(std::span<Transfer* const> transfers, std::span<ChildProcess* const> programs,
              int interruption, TransferTimes& times);

} // namespace lumofe

#endif
