// A file that appears under its name only when it is complete.
#include "OutputFile.h"

#include "Error.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lumofe {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Path of the temporary file while there is one, for the signal handler.
char temporaryPath[4096];
volatile std::sig_atomic_t temporaryExists = 0;

void removeAndDie(int signal)
{
    if (temporaryExists) unlink(temporaryPath);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

// Handlers only replace the default: a host that ignores a signal keeps ignoring it.
void guardTemporary(const std::string& path)
{
    if (path.size() >= sizeof temporaryPath) return;
    std::memcpy(temporaryPath, path.c_str(), path.size() + 1);
    temporaryExists = 1;
    for (int signal : kSignals)
        if (std::signal(signal, removeAndDie) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void forgetTemporary()
{
    temporaryExists = 0;
    for (int signal : kSignals)
        if (std::signal(signal, SIG_DFL) == SIG_IGN) std::signal(signal, SIG_IGN);
}

bool isSpecial(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode);
}

} // namespace

OutputFile::OutputFile(const std::string& path, int standardOutput)
    : name_(path == "-" ? "standard output" : path)
{
    if (path == "-") {
        const int copy = dup(standardOutput);
        file_ = copy < 0 ? nullptr : fdopen(copy, "wb");
    } else if (isSpecial(path)) {
        file_ = std::fopen(path.c_str(), "wb");
    } else {
        target_ = path;
        createTemporary();
    }
    if (!file_) fail("cannot be written");
}

void OutputFile::createTemporary()
{
    std::error_code ignored;
    // A link stays a link: the file it points to is replaced.
    if (std::filesystem::is_symlink(target_, ignored))
        target_ = std::filesystem::weakly_canonical(target_, ignored).string();
    if (std::filesystem::is_directory(target_, ignored))
        throw Error(name_ + ": is a directory; give a file name");

    std::string pattern = target_ + ".XXXXXX";
    const int descriptor = mkstemp(pattern.data());
    if (descriptor < 0) fail("cannot be created");
    temporary_ = std::move(pattern);
    guardTemporary(temporary_);

    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    file_ = fdopen(descriptor, "wb");
}

OutputFile::~OutputFile()
{
    if (file_) std::fclose(file_);
    if (temporary_.empty()) return;
    unlink(temporary_.c_str());
    forgetTemporary();
}

void OutputFile::fail(const char* what) const
{
    throw Error(name_ + ": " + what + " (" + std::strerror(errno) +
                "); check the path and the free space");
}

void OutputFile::write(const std::uint8_t* bytes, std::size_t count)
{
    if (std::fwrite(bytes, 1, count, file_) != count) fail("cannot be written");
}

void OutputFile::write(std::string_view text)
{
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail("cannot be written");
}

void OutputFile::flush()
{
    if (std::fflush(file_) != 0) fail("cannot be written");
}

void OutputFile::commit()
{
    if (std::fclose(std::exchange(file_, nullptr)) != 0) fail("cannot be written");
    if (temporary_.empty()) return;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail("cannot be replaced");
    forgetTemporary();
    temporary_.clear();
}

} // namespace lumofe
