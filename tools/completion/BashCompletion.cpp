// Completion for bash.
#include "completion/Completion.h"

#include <sstream>

namespace lumofe {
namespace {

// $command is the command as far as it goes, $option the option whose value is being written,
// $position the number of positional arguments before the word.
constexpr const char* kHead =
    R"sh(# Completion of lumofe for bash, written by lumofe completion bash.

_lumofe_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}

_lumofe_files()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$cur")
}

# Those of the file after --camera, or of that of the preset commands.
_lumofe_presets()
{
    local i camera= name
    [[ ${COMP_WORDS[1]} == preset ]] && camera=${COMP_WORDS[3]}
    for ((i = 1; i < COMP_CWORD; i++)); do
        [[ ${COMP_WORDS[i]} == --camera ]] || continue
        camera=${COMP_WORDS[i + 1]}
        [[ $camera == = ]] && camera=${COMP_WORDS[i + 2]}
    done
    while IFS= read -r name; do
        [[ $name == "$cur"* ]] && COMPREPLY+=("$(printf %q "$name")")
    done < <("${COMP_WORDS[0]}" preset list "${camera//\\/}" 2>/dev/null | cut -f 1)
}

_lumofe()
{
    local cur=${COMP_WORDS[COMP_CWORD]} command= option= position=0 i word
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        # Bash takes --option=value for three words.
        [[ $word == = ]] && continue
        if [[ -n $option ]]; then
            option=
            continue
        fi
        case "$command${command:+ }$word" in
)sh";

constexpr const char* kAfterCommands = R"sh(                command+="${command:+ }$word"
                continue
                ;;
        esac
        case "$command $word" in
)sh";

constexpr const char* kAfterOptions = R"sh(                option=$word
                ;;
            *" -"?*) ;;
            *) position=$((position + 1)) ;;
        esac
    done
    [[ $cur == = ]] && cur=
    if [[ -z $option && $cur == -* ]]; then
        case $command in
)sh";

constexpr const char* kAfterNames = R"sh(        esac
        return
    fi
    case "$command ${option:-#$position}" in
)sh";

constexpr const char* kTail = R"sh(    esac
}

complete -F _lumofe lumofe
)sh";

// A command and its whole name; "" is the tool itself.
struct Node {
    std::string name;
    const CommandHelp* command;
};

std::vector<Node> nodesOf(const CommandHelp& command, const std::string& name)
{
    std::vector<Node> all{{name, &command}};
    for (const CommandHelp& below : command.subcommands)
        for (const Node& node : nodesOf(below, name.empty() ? below.name : name + " " + below.name))
            all.push_back(node);
    return all;
}

std::string shellWord(const std::string& text)
{
    return "'" + text + "'";
}

std::string actionOf(const ArgumentHelp& argument)
{
    switch (completes(argument)) {
    case Completes::choices:
        return "_lumofe_words " + shellWord(joined(argument.choices, " "));
    case Completes::files:
        return "_lumofe_files";
    case Completes::presets:
        return "_lumofe_presets";
    case Completes::nothing:
        break;
    }
    return {};
}

std::string subcommandNames(const CommandHelp& command)
{
    std::vector<std::string> names;
    for (const CommandHelp& below : command.subcommands)
        names.push_back(below.name);
    return joined(names, " ");
}

std::string optionNames(const CommandHelp& command)
{
    std::vector<std::string> names;
    for (const ArgumentHelp& argument : command.arguments)
        if (!argument.positional)
            names.insert(names.end(), argument.names.begin(), argument.names.end());
    return joined(names, " ");
}

// The patterns of "command option" for one option.
std::string patternOf(const Node& node, const ArgumentHelp& argument)
{
    std::vector<std::string> patterns;
    for (const std::string& name : argument.names)
        patterns.push_back(shellWord(node.name + " " + name));
    return joined(patterns, " | ");
}

void writeValues(std::ostream& script, const Node& node)
{
    if (!node.command->subcommands.empty())
        script << "        " << shellWord(node.name + " #0") << ") _lumofe_words "
               << shellWord(subcommandNames(*node.command)) << " ;;\n";
    int position = 0;
    for (const ArgumentHelp& argument : node.command->arguments) {
        const std::string number = argument.positional ? std::to_string(position++) : "";
        const std::string action = actionOf(argument);
        if (action.empty()) continue;
        script << "        ";
        if (!argument.positional)
            script << patternOf(node, argument);
        else if (argument.repeats)
            script << shellWord(node.name + " #") << "*";
        else
            script << shellWord(node.name + " #" + number);
        script << ") " << action << " ;;\n";
    }
}

} // namespace

std::string bashCompletion(const CommandHelp& tool)
{
    const std::vector<Node> nodes = nodesOf(tool, "");
    std::vector<std::string> commands, takers;
    for (const Node& node : nodes) {
        if (!node.name.empty()) commands.push_back(shellWord(node.name));
        for (const ArgumentHelp& argument : node.command->arguments)
            if (!argument.positional && !argument.value.empty())
                takers.push_back(patternOf(node, argument));
    }
    std::ostringstream script;
    script << kHead << "            " << joined(commands, " | ") << ")\n"
           << kAfterCommands << "            " << joined(takers, " | \\\n                ") << ")\n"
           << kAfterOptions;
    for (const Node& node : nodes)
        script << "            " << shellWord(node.name) << ") _lumofe_words "
               << shellWord(optionNames(*node.command)) << " ;;\n";
    script << kAfterNames;
    for (const Node& node : nodes)
        writeValues(script, node);
    script << kTail;
    return script.str();
}

} // namespace lumofe
