// Keeps the library's diagnostic lines away from the tool's own output.
#include "LibraryOutput.h"

#include "Error.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace lumofe {

LibraryOutput::LibraryOutput(Target target)
{
    std::fflush(stdout);
    own_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    const int sink = target == Target::standardError ? fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)
                                                     : open("/dev/null", O_WRONLY | O_CLOEXEC);
    const bool redirected = sink >= 0 && dup2(sink, STDOUT_FILENO) >= 0;
    if (sink >= 0 && sink != STDOUT_FILENO) close(sink);
    if (redirected) return;
    if (own_ >= 0) close(own_);
    throw Error("standard output cannot be redirected; is standard error open?");
}

LibraryOutput::~LibraryOutput()
{
    std::fflush(stdout);
    if (own_ < 0) return;
    dup2(own_, STDOUT_FILENO);
    close(own_);
}

} // namespace lumofe
