// Ends a long run in good order on SIGINT and SIGTERM.
#ifndef LUMOFE_TOOLS_INTERRUPTION_H
#define LUMOFE_TOOLS_INTERRUPTION_H

#include "video/Descriptor.h"

#include <csignal>

namespace lumofe {

// While an object lives, the first SIGINT or SIGTERM is only taken note of; the second does what it
// did before. Signals that are ignored stay so. At most one object at a time.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    bool requested() const;

    // Becomes readable with the first signal: for poll().
    int descriptor() const { return event_.number(); }

private:
    Descriptor event_;
};

} // namespace lumofe

#endif
