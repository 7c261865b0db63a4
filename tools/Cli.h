// The command line.
#ifndef LUMOFE_TOOLS_CLI_H
#define LUMOFE_TOOLS_CLI_H

#include "ManPage.h"

namespace lumofe {

// Runs the tool. Returns its exit status: 0, or 2 after a line on standard error, or 130 when a
// video was ended early by SIGINT or SIGTERM.
int runTool(int argc, const char* const* argv);

// The manual page of all that runTool() takes.
std::string toolManPage();

} // namespace lumofe

#endif
