// The option table: what the help, the manual page and the completions of shells are made from.
#ifndef LUMOFE_TOOLS_COMMAND_HELP_H
#define LUMOFE_TOOLS_COMMAND_HELP_H

#include <string>
#include <vector>

namespace lumofe {

// One option or positional argument, as the help shows it.
struct ArgumentHelp {
    std::vector<std::string> names; // "-o", "--output"; a positional has one without dashes
    std::string value;              // what the option takes: "FILE"; empty for none
    std::string text;
    bool positional = false;
    bool required = false;
    bool repeats = false;                  // a positional that takes several words
    std::vector<std::string> choices = {}; // all that it takes; empty for anything else
};

struct CommandHelp {
    std::string name, description;
    std::vector<ArgumentHelp> arguments;
    std::vector<CommandHelp> subcommands;
    // Paragraphs; "Heading:" lines; lists of "  term  text" whose further lines are indented
    // deeper; what stands below a heading "Example" or "Examples" is kept line by line.
    std::string footer;
};

// The commands that can be run, in order, each under its whole name: "preset save".
std::vector<CommandHelp> runnable(const CommandHelp& tool);

} // namespace lumofe

#endif
