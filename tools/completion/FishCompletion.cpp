// Completion for fish.
#include "completion/Completion.h"

#include <sstream>

namespace lumofe {
namespace {

constexpr const char* kHead =
    R"sh(# Completion of lumofe for fish, written by lumofe completion fish.

# Those of the file after --camera, or of that of the preset commands.
function __lumofe_presets
    set -l words (commandline -opc)
    set -l camera
    if test "$words[2]" = preset
        set camera $words[4]
    end
    for i in (seq 2 (count $words))
        if test "$words[$i]" = --camera
            set camera $words[(math $i + 1)]
        else if string match -q -- '--camera=*' $words[$i]
            set camera (string replace -- --camera= '' $words[$i])
        end
    end
    $words[1] preset list "$camera" 2>/dev/null | cut -f 1
end

complete -c lumofe -f
)sh";

std::string shellWord(const std::string& text)
{
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') result += '\\';
        result += c;
    }
    return result + "'";
}

// The words that the argument takes, or the way to files.
std::string actionOf(const ArgumentHelp& argument)
{
    switch (completes(argument)) {
    case Completes::choices:
        return " -a " + shellWord(joined(argument.choices, " "));
    case Completes::files:
        return " -F";
    case Completes::presets:
        return " -a '(__lumofe_presets)'";
    case Completes::nothing:
        break;
    }
    return {};
}

void writeArgument(std::ostream& script, const ArgumentHelp& argument, const std::string& start)
{
    const std::string action = actionOf(argument);
    if (argument.positional) {
        if (!action.empty()) script << start << action << '\n';
        return;
    }
    script << start;
    for (const std::string& name : argument.names)
        script << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    if (!argument.value.empty())
        script << (completes(argument) == Completes::files ? " -r" : " -x") << action;
    script << " -d " << shellWord(summary(argument)) << '\n';
}

// `condition` holds where the command was given.
void writeCommand(std::ostream& script, const CommandHelp& command, const std::string& condition)
{
    std::vector<std::string> names;
    for (const CommandHelp& below : command.subcommands)
        names.push_back(below.name);
    const std::string given = condition.empty() ? "" : condition + "; and ";
    const std::string some = "__fish_seen_subcommand_from ";
    std::string here = condition;
    if (!names.empty()) here = given + "not " + some + joined(names, " ");

    const std::string start = "complete -c lumofe -n " + shellWord(here);
    for (const ArgumentHelp& argument : command.arguments)
        writeArgument(script, argument, start);
    for (const CommandHelp& below : command.subcommands)
        script << start << " -a " << below.name << " -d " << shellWord(below.description) << '\n';
    for (const CommandHelp& below : command.subcommands)
        writeCommand(script, below, given + some + below.name);
}

} // namespace

std::string fishCompletion(const CommandHelp& tool)
{
    std::ostringstream script;
    script << kHead;
    writeCommand(script, tool, "");
    return script.str();
}

} // namespace lumofe
