// A program that runs beside the tool, connected by pipes.
#ifndef LUMOFE_TOOLS_CHILD_PROCESS_H
#define LUMOFE_TOOLS_CHILD_PROCESS_H

#include "video/Descriptor.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace lumofe {

// Which of a program's descriptors are pipes. It reads nothing from the others and what it writes
// there is lost.
struct ChildPipes {
    bool input = false;      // to its standard input
    bool output = false;     // from its standard output
    bool third = false;      // from its descriptor 3
    int standardOutput = -1; // without `output`: what its standard output is to be
};

// Standard error is always a pipe, and kept as log(). The program is in a process group of its own,
// so that a terminal's Ctrl-C does not reach it, and ends with the tool, however that ends.
class ChildProcess {
public:
    // Throws Error when the program cannot be run. From now on a write to a pipe that nobody reads
    // fails in this process instead of ending it.
    ChildProcess(const std::vector<std::string>& command, const ChildPipes& pipes);
    // Kills the program when it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The tool's ends of the pipes, which do not block; -1 when there is none.
    int input() const { return input_.number(); }
    int output() const { return output_.number(); }
    int third() const { return third_.number(); }
    int errors() const { return errors_.number(); }

    void closeInput() { input_.close(); }
    void signal(int number) const;

    // Takes over what is there on standard error and descriptor 3.
    void takeIn();
    // What came on standard error; of a long text, a piece in the middle is left out.
    const std::string& log() const { return log_; }
    // What came on descriptor 3; of a long text, the beginning.
    const std::string& head() const { return head_; }

    // Closes the pipes but standard error's, waits for the end of the program and returns its exit
    // status, 128 and more when a signal ended it. After so many milliseconds it is killed; -1:
    // never.
    int wait(int patience = -1);

    // Processor time that it took, seconds; after wait().
    double processorSeconds() const { return processorSeconds_; }

private:
    pid_t pid_ = -1;
    int status_ = 0;
    double processorSeconds_ = 0;
    Descriptor input_, output_, third_, errors_;
    std::string log_, head_;
};

} // namespace lumofe

#endif
