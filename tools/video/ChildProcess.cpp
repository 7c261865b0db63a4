// A program that runs beside the tool, connected by pipes.
#include "video/ChildProcess.h"

#include "Error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace lumofe {
namespace {

constexpr int kPipeBytes = 1 << 20; // the most that every user may have
constexpr std::size_t kLogBytes = 1 << 16;
constexpr std::size_t kHeadBytes = 1 << 12;
constexpr int kAboveStandard = 10;

struct Pipe {
    Descriptor read, write;

    Pipe()
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw Error(std::string("no pipe can be opened (") + std::strerror(errno) +
                        "); close other programs");
        read = Descriptor(ends[0]);
        write = Descriptor(ends[1]);
    }
};

// Each end has its own flags: the program's keeps blocking.
Descriptor ourEnd(Descriptor end)
{
    fcntl(end.number(), F_SETFL, fcntl(end.number(), F_GETFL) | O_NONBLOCK);
    fcntl(end.number(), F_SETPIPE_SZ, kPipeBytes);
    return end;
}

// What becomes of the child between fork and exec: only calls that are safe there.
[[noreturn]] void become(char* const* arguments, const std::array<int, 4>& descriptors, int report,
                         pid_t parent)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    for (int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Out of the way first: any of them may have one of the numbers that are assigned.
    std::array<int, 4> moved = descriptors;
    for (int& descriptor : moved)
        if (descriptor >= 0) descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, kAboveStandard);
    report = fcntl(report, F_DUPFD_CLOEXEC, kAboveStandard);
    for (int number = 0; number < int(moved.size()); ++number)
        if (moved[std::size_t(number)] >= 0) dup2(moved[std::size_t(number)], number);
    execvp(arguments[0], arguments);
    const int error = errno;
    [[maybe_unused]] const ssize_t told = write(report, &error, sizeof error);
    _exit(1);
}

// Reads all that is there, and closes the descriptor at the end.
template <class Take>
void readAway(Descriptor& from, Take take)
{
    char buffer[1 << 14];
    ssize_t got = -1;
    while (from.number() >= 0 && (got = read(from.number(), buffer, sizeof buffer)) > 0)
        take(buffer, std::size_t(got));
    if (got == 0) from.close();
}

double seconds(const timeval& time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const ChildPipes& pipes)
{
    std::signal(SIGPIPE, SIG_IGN);
    Pipe in, out, third, errors, report;
    const Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
    const int lost = pipes.standardOutput >= 0 ? pipes.standardOutput : nothing.number();
    const std::array<int, 4> descriptors{
        pipes.input ? in.read.number() : nothing.number(),
        pipes.output ? out.write.number() : lost,
        errors.write.number(),
        pipes.third ? third.write.number() : -1,
    };
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);

    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) become(arguments.data(), descriptors, report.write.number(), parent);
    report.write.close();
    int error = pid_ < 0 ? errno : 0;
    if (pid_ > 0 && read(report.read.number(), &error, sizeof error) == sizeof error) wait();
    if (error != 0)
        throw Error(command[0] + ": cannot be run (" + std::strerror(error) +
                    "); install ffmpeg, or say where it is with --ffmpeg");

    if (pipes.input) input_ = ourEnd(std::move(in.write));
    if (pipes.output) output_ = ourEnd(std::move(out.read));
    if (pipes.third) third_ = ourEnd(std::move(third.read));
    errors_ = ourEnd(std::move(errors.read));
}

ChildProcess::~ChildProcess()
{
    if (pid_ < 0) return;
    kill(pid_, SIGKILL);
    errors_.close();
    wait();
}

void ChildProcess::signal(int number) const
{
    if (pid_ > 0) kill(pid_, number);
}

void ChildProcess::takeIn()
{
    readAway(errors_, [this](const char* bytes, std::size_t count) {
        log_.append(bytes, count);
        if (log_.size() > kLogBytes) log_.erase(kLogBytes / 2, log_.size() - kLogBytes);
    });
    readAway(third_, [this](const char* bytes, std::size_t count) {
        head_.append(bytes, std::min(count, kHeadBytes - head_.size()));
    });
}

int ChildProcess::wait(int patience)
{
    input_.close();
    output_.close();
    third_.close();
    while (errors() >= 0) {
        pollfd waiting{errors(), POLLIN, 0};
        if (poll(&waiting, 1, patience) == 0) signal(SIGKILL);
        takeIn();
    }
    if (pid_ < 0) return status_;
    rusage usage{};
    int status = 0;
    while (wait4(pid_, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    processorSeconds_ = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return status_;
}

} // namespace lumofe
