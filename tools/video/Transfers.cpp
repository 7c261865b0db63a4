// Moves whole frames through several pipes at once.
#include "video/Transfers.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <vector>

namespace lumofe {
namespace {

using Direction = Transfer::Direction;

void moveBytes(Transfer& t)
{
    const std::size_t left = t.count - t.done;
    const ssize_t moved = t.direction == Direction::read
                              ? read(t.descriptor, t.bytes + t.done, left)
                              : write(t.descriptor, t.bytes + t.done, left);
    if (moved > 0)
        t.done += std::size_t(moved);
    else if (moved == 0 || (errno != EAGAIN && errno != EINTR))
        t.ended = true;
}

bool anyPending(std::span<Transfer* const> transfers, Direction direction)
{
    return std::ranges::any_of(transfers, [direction](const Transfer* t) {
        return t->pending() && t->direction == direction;
    });
}

// Poll passes over negative descriptors.
std::vector<pollfd> watched(std::span<Transfer* const> transfers,
                            std::span<ChildProcess* const> programs, int interruption)
{
    std::vector<pollfd> list{{interruption, POLLIN, 0}};
    for (const Transfer* t : transfers)
        list.push_back({t->pending() ? t->descriptor : -1,
                        short(t->direction == Direction::read ? POLLIN : POLLOUT), 0});
    for (const ChildProcess* program : programs) {
        list.push_back({program->errors(), POLLIN, 0});
        list.push_back({program->third(), POLLIN, 0});
    }
    return list;
}

// Returns the seconds that passed.
double wait(std::vector<pollfd>& list, Elapsed& calls)
{
    Elapsed waiting;
    {
        const Stopwatch stopwatch(waiting);
        poll(list.data(), list.size(), -1);
    }
    calls.processor += waiting.processor;
    return waiting.wall;
}

} // namespace

void carryOut(std::span<Transfer* const> transfers, std::span<ChildProcess* const> programs,
              int interruption, TransferTimes& times)
{
    for (;;) {
        const bool reads = anyPending(transfers, Direction::read);
        const bool writes = anyPending(transfers, Direction::write);
        if (!reads && !writes) return;
        std::vector<pollfd> list = watched(transfers, programs, interruption);
        double& waiting = !writes  ? times.waitingToRead
                          : !reads ? times.waitingToWrite
                                   : times.waitingForEither;
        waiting += wait(list, times.calls);
        for (ChildProcess* program : programs)
            program->takeIn();
        for (std::size_t i = 0; i < transfers.size(); ++i) {
            Transfer& t = *transfers[i];
            if (list[0].revents != 0 && t.direction == Direction::read) t.ended = true;
            if (list[1 + i].revents == 0 || !t.pending()) continue;
            const Stopwatch stopwatch(times.calls);
            moveBytes(t);
        }
    }
}

} // namespace lumofe
