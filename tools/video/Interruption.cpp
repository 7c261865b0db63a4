// Ends a long run in good order on SIGINT and SIGTERM.
#include "video/Interruption.h"

#include <cstdint>
#include <sys/eventfd.h>

namespace lumofe {
namespace {

// What was there before, and what the handler leaves.
struct Handled {
    int number;
    struct sigaction before;
};
Handled handled[] = {{SIGINT, {}}, {SIGTERM, {}}};
volatile std::sig_atomic_t seen = 0;
volatile std::sig_atomic_t event = -1;

void takeNote(int number)
{
    if (seen) {
        for (const Handled& h : handled)
            if (h.number == number) sigaction(number, &h.before, nullptr);
        raise(number);
        return;
    }
    seen = 1;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(event, &one, sizeof one);
}

} // namespace

Interruption::Interruption() : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    seen = 0;
    event = event_.number();
    for (Handled& h : handled) {
        struct sigaction action = {};
        action.sa_handler = takeNote;
        sigaction(h.number, &action, &h.before);
        if (h.before.sa_handler == SIG_IGN) sigaction(h.number, &h.before, nullptr);
    }
}

Interruption::~Interruption()
{
    for (const Handled& h : handled)
        sigaction(h.number, &h.before, nullptr);
}

bool Interruption::requested() const
{
    return seen != 0;
}

} // namespace lumofe
