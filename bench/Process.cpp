#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace bench {

namespace {

constexpr int kCannotRun = 127;

struct Pipe {
    int read, write;

    Pipe()
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
        read = ends[0];
        write = ends[1];
    }
};

// Starts a program; -1 for an input or output leaves it as it is.
pid_t start(const std::vector<std::string>& command, int in, int out)
{
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    const pid_t pid = fork();
    if (pid < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (pid != 0) return pid;
    std::signal(SIGPIPE, SIG_DFL);
    if (in >= 0) dup2(in, STDIN_FILENO);
    if (out >= 0) dup2(out, STDOUT_FILENO);
    execvp(arguments[0], arguments.data());
    std::perror(arguments[0]);
    _exit(kCannotRun);
}

// Waits for a program and returns what it used.
rusage finish(const std::string& program, pid_t pid)
{
    int status = 0;
    rusage usage{};
    if (wait4(pid, &status, 0, &usage) != pid)
        throw std::system_error(errno, std::generic_category(), "wait4");
    if (WIFEXITED(status) && WEXITSTATUS(status) == kCannotRun)
        throw std::runtime_error(program + " cannot be run; scripts/setup_bench.sh installs what "
                                           "the comparison needs");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error(program + " failed");
    return usage;
}

} // namespace

double processorSeconds(const std::vector<std::string>& command)
{
    const rusage usage = finish(command[0], start(command, -1, -1));
    const auto seconds = [](const timeval& time) {
        return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

std::string firstLineOf(const std::vector<std::string>& command)
{
    const Pipe output;
    const pid_t pid = start(command, -1, output.write);
    close(output.write);
    std::string text;
    char buffer[4096];
    for (ssize_t n; (n = read(output.read, buffer, sizeof buffer)) > 0;)
        text.append(buffer, std::size_t(n));
    close(output.read);
    finish(command[0], pid);
    return text.substr(0, text.find('\n'));
}

Worker::Worker(const std::string& program) : program_(program)
{
    std::signal(SIGPIPE, SIG_IGN); // a program that has stopped is told of by ask
    const Pipe in, out;
    pid_ = start({program}, in.read, out.write);
    close(in.read);
    close(out.write);
    requests_ = fdopen(in.write, "w");
    answers_ = fdopen(out.read, "r");
}

Worker::~Worker()
{
    std::fclose(requests_); // ends the program
    std::fclose(answers_);
    waitpid(pid_, nullptr, 0);
}

std::string Worker::ask(const std::string& request)
{
    char answer[512];
    if (std::fprintf(requests_, "%s\n", request.c_str()) < 0 || std::fflush(requests_) != 0 ||
        !std::fgets(answer, sizeof answer, answers_))
        throw std::runtime_error(program_ + " has stopped at " + request);
    std::string text = answer;
    text.resize(text.find('\n'));
    const std::string prefix = "error: ";
    if (text.starts_with(prefix)) throw std::runtime_error(text.substr(prefix.size()));
    return text;
}

double Worker::milliseconds(const std::string& request)
{
    return std::strtod(ask(request).c_str(), nullptr);
}

} // namespace bench
