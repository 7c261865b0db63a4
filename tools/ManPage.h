// The manual page, written from the option table.
#ifndef LUMOFE_TOOLS_MAN_PAGE_H
#define LUMOFE_TOOLS_MAN_PAGE_H

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
    bool repeats = false; // a positional that takes several words
};

struct CommandHelp {
    std::string name, description;
    std::vector<ArgumentHelp> arguments;
    std::vector<CommandHelp> subcommands;
    // Paragraphs; "Heading:" lines; lists of "  term  text" whose further lines are indented
    // deeper; what stands below a heading "Example" or "Examples" is kept line by line.
    std::string footer;
};

// The page in the man macros of roff. `version` is shown in its foot: "LumoFESDK 1.0.0". There is
// no date in it, so that the same sources give the same page.
std::string manPage(const CommandHelp& tool, const std::string& version);

} // namespace lumofe

#endif
