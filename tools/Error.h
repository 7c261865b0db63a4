// The exceptions of the tool, with messages for the person at the terminal.
#ifndef LUMOFE_TOOLS_ERROR_H
#define LUMOFE_TOOLS_ERROR_H

#include <stdexcept>

namespace lumofe {

// Bad input. The message is one line, names the file or option and says what to do. The tool exits
// with 2.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A long run was ended early by SIGINT or SIGTERM, in good order. The message tells what there is.
class Interrupted : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lumofe

#endif
