// The option table.
#include "CommandHelp.h"

namespace lumofe {

std::vector<CommandHelp> runnable(const CommandHelp& tool)
{
    std::vector<CommandHelp> all;
    for (const CommandHelp& command : tool.subcommands) {
        if (command.subcommands.empty()) all.push_back(command);
        for (CommandHelp& below : runnable(command)) {
            below.name = command.name + " " + below.name;
            all.push_back(std::move(below));
        }
    }
    return all;
}

} // namespace lumofe
