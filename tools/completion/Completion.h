// Completion of the tool's command line in shells, made from the option table.
#ifndef LUMOFE_TOOLS_COMPLETION_H
#define LUMOFE_TOOLS_COMPLETION_H

#include "CommandHelp.h"

#include <string>
#include <vector>

namespace lumofe {

// What completionFor() takes.
std::vector<std::string> shellNames();

// The script for that shell. Throws Error for another shell.
std::string completionFor(const std::string& shell, const CommandHelp& tool);

// Commands, options, the values of those that take one of a few, presets of the camera that the
// command line names, and files.
std::string bashCompletion(const CommandHelp& tool);
std::string zshCompletion(const CommandHelp& tool);
std::string fishCompletion(const CommandHelp& tool);

// What stands for an argument's value.
enum class Completes { nothing, choices, files, presets };
Completes completes(const ArgumentHelp& argument);

// The first thing that the help says of an argument, on one line.
std::string summary(const ArgumentHelp& argument);

// Words with a separator between.
std::string joined(const std::vector<std::string>& words, const std::string& separator);

} // namespace lumofe

#endif
