// The command line.
#ifndef LUMOFE_TOOLS_CLI_H
#define LUMOFE_TOOLS_CLI_H

#include "ManPage.h"

namespace lumofe {

// Runs the tool. Returns its exit status: 0, or 2 after one line on standard error.
int runTool(int argc, const char* const* argv);

// The manual page of all that runTool() takes.
std::string toolManPage();

} // namespace lumofe

#endif
