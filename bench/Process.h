// Programs that the comparison runs.
#ifndef LUMOFE_BENCH_PROCESS_H
#define LUMOFE_BENCH_PROCESS_H

#include <cstdio>
#include <string>
#include <sys/types.h>
#include <vector>

namespace bench {

// Runs a program and waits for it. Returns the seconds of processor time that it took. Throws
// std::runtime_error when it cannot be run or fails.
double processorSeconds(const std::vector<std::string>& command);

// Runs a program and returns the first line that it writes. Throws like processorSeconds.
std::string firstLineOf(const std::vector<std::string>& command);

// A program that answers each line with a line: see Worker.h.
class Worker {
public:
    explicit Worker(const std::string& program);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Throws std::runtime_error with the worker's words when it cannot answer.
    std::string ask(const std::string& request);
    double milliseconds(const std::string& request);

private:
    std::string program_;
    pid_t pid_;
    std::FILE *requests_, *answers_;
};

} // namespace bench

#endif
