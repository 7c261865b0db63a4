// SIGINT, SIGTERM and SIGHUP close the viewer like its window.
#ifndef LUMOFE_VIEWER_SIGNALS_H
#define LUMOFE_VIEWER_SIGNALS_H

#include <algorithm>
#include <csignal>

namespace lumofe::viewer {

inline constexpr int kClosingSignals[] = {SIGINT, SIGTERM, SIGHUP};

// From now on they wait to be asked for, in all threads that start later. So they never interrupt a
// file that is being written.
inline void holdSignals()
{
    sigset_t held;
    sigemptyset(&held);
    for (int signal : kClosingSignals)
        sigaddset(&held, signal);
    pthread_sigmask(SIG_BLOCK, &held, nullptr);
}

inline bool signalWaits()
{
    sigset_t waiting;
    sigpending(&waiting);
    return std::ranges::any_of(kClosingSignals,
                               [&](int signal) { return sigismember(&waiting, signal) == 1; });
}

} // namespace lumofe::viewer

#endif
