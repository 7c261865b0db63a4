// The command line.
#ifndef LUMOFE_TOOLS_CLI_H
#define LUMOFE_TOOLS_CLI_H

#include "CommandHelp.h"

#include <string>

namespace lumofe {

// Runs the tool. Returns its exit status: 0, or 2 after one line on standard error, or 130 when a
// video was ended early by SIGINT or SIGTERM, or another that the command's help names.
int runTool(int argc, const char* const* argv);

// All that runTool() takes, and the manual page of it.
CommandHelp toolHelp();
std::string toolManPage();

} // namespace lumofe

#endif
