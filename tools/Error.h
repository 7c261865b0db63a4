// The one exception type of the tool: bad input, with a message for the person at the terminal.
#ifndef LUMOFE_TOOLS_ERROR_H
#define LUMOFE_TOOLS_ERROR_H

#include <stdexcept>

namespace lumofe {

// The message is one line, names the file or option and says what to do. The tool exits with 2.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lumofe

#endif
