// A file that is written under another name beside its target and takes the target's place at last.
#include "TemporaryFile.h"

#include "Error.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Paths of the temporary files that there are, for the signal handler. Threads take turns.
struct Guarded {
    char path[4096];
    volatile std::sig_atomic_t exists;
};
Guarded guarded[8];
std::mutex guardedMutex;

void removeAndDie(int signal)
{
    for (const Guarded& file : guarded)
        if (file.exists) unlink(file.path);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

// Handlers only replace the default: a host that ignores a signal keeps ignoring it.
void handleSignals(void (*handler)(int))
{
    for (int signal : kSignals)
        if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void guard(const std::string& path)
{
    const std::lock_guard lock(guardedMutex);
    for (Guarded& file : guarded) {
        if (file.exists || path.size() >= sizeof file.path) continue;
        std::memcpy(file.path, path.c_str(), path.size() + 1);
        file.exists = 1;
        handleSignals(removeAndDie);
        return;
    }
}

void forget(const std::string& path)
{
    const std::lock_guard lock(guardedMutex);
    bool others = false;
    for (Guarded& file : guarded) {
        if (file.exists && path == file.path) file.exists = 0;
        others = others || file.exists;
    }
    if (!others) handleSignals(SIG_DFL);
}

[[noreturn]] void fail(const std::string& name, const char* what)
{
    throw Error(name + ": " + what + " (" + std::strerror(errno) +
                "); check the path and the free space");
}

} // namespace

bool isSpecialFile(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode);
}

void checkAbsent(const std::string& path, bool force)
{
    std::error_code ignored;
    if (force || path == "-" || !std::filesystem::is_regular_file(path, ignored)) return;
    throw Error(path + ": exists already; give another name, or --force to replace it");
}

TemporaryFile::TemporaryFile(const std::string& target) : name_(target), target_(target)
{
    std::error_code ignored;
    // A link stays a link: the file it points to is replaced.
    if (std::filesystem::is_symlink(target_, ignored))
        target_ = std::filesystem::weakly_canonical(target_, ignored).string();
    if (std::filesystem::is_directory(target_, ignored))
        throw Error(name_ + ": is a directory; give a file name");

    const std::string extension = std::filesystem::path(target_).extension().string();
    std::string pattern = target_.substr(0, target_.size() - extension.size()) + ".XXXXXX";
    pattern += extension;
    const int descriptor = mkstemps(pattern.data(), int(extension.size()));
    if (descriptor < 0) fail(name_, "cannot be created");
    path_ = pattern;
    guard(path_);

    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    close(descriptor);
}

TemporaryFile::~TemporaryFile()
{
    if (path_.empty()) return;
    unlink(path_.c_str());
    forget(path_);
}

void TemporaryFile::commit()
{
    if (std::rename(path_.c_str(), target_.c_str()) != 0) fail(name_, "cannot be replaced");
    forget(path_);
    path_.clear();
}

} // namespace lumofe
