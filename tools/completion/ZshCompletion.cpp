// Completion for zsh.
#include "completion/Completion.h"

#include <sstream>

namespace lumofe {
namespace {

constexpr const char* kHead = R"sh(#compdef lumofe
# Completion of lumofe for zsh, written by lumofe completion zsh.

# Those of the file after --camera, or of that of the preset commands.
_lumofe_presets() {
  local camera i
  local -a names
  [[ $all[2] == preset ]] && camera=$all[4]
  for ((i = 2; i < $#all; i++)); do
    [[ $all[i] == --camera ]] && camera=$all[i+1]
    [[ $all[i] == --camera=* ]] && camera=${all[i]#--camera=}
  done
  names=("${(@f)$($all[1] preset list "${(Q)camera}" 2>/dev/null | cut -f 1)}")
  compadd -- ${names:#}
}
)sh";

constexpr const char* kTail = R"sh(
_lumofe() {
  local -a all
  all=("${words[@]}")
  _lumofe_commands
}

# The first time, zsh calls this file for the function.
if [[ $funcstack[1] == _lumofe ]]; then
  _lumofe
else
  compdef _lumofe lumofe
fi
)sh";

// Text in single quotes, for a place where `special` characters mean something.
std::string escaped(const std::string& text, const char* special)
{
    std::string result;
    for (const char c : text) {
        if (std::string(special).find(c) != std::string::npos) result += '\\';
        if (c == '\'')
            result += "'\\''";
        else
            result += c;
    }
    return result;
}

std::string actionOf(const ArgumentHelp& argument)
{
    switch (completes(argument)) {
    case Completes::choices:
        return std::string("(").append(joined(argument.choices, " ")).append(")");
    case Completes::files:
        return "_files";
    case Completes::presets:
        return "_lumofe_presets";
    case Completes::nothing:
        break;
    }
    return " ";
}

// The argument's lines for _arguments.
void writeSpecs(std::ostream& script, const ArgumentHelp& argument)
{
    constexpr const char* kSpecial = "[]:\\";
    if (argument.positional) {
        script << "    '" << (argument.repeats ? "*" : "") << ':' << argument.names.front() << ':'
               << actionOf(argument) << "' \\\n";
        return;
    }
    for (const std::string& name : argument.names) {
        script << "    '*" << name;
        if (!argument.value.empty()) script << (name.starts_with("--") ? '=' : '+');
        script << '[' << escaped(summary(argument), kSpecial) << ']';
        if (!argument.value.empty())
            script << ':' << escaped(argument.value, kSpecial) << ':' << actionOf(argument);
        script << "' \\\n";
    }
}

void writeFunction(std::ostream& script, const CommandHelp& command, const std::string& function)
{
    for (const CommandHelp& below : command.subcommands)
        writeFunction(script, below, function + "_" + below.name);
    const bool last = command.subcommands.empty();
    script << '\n' << function << "() {\n" << (last ? "" : "  local line state\n");
    script << "  _arguments " << (last ? "" : "-C ") << "\\\n";
    for (const ArgumentHelp& argument : command.arguments)
        writeSpecs(script, argument);
    if (last) {
        script << "    && return 0\n}\n";
        return;
    }
    script << "    '1:command:((";
    for (const CommandHelp& below : command.subcommands)
        script << below.name << "\\:\"" << escaped(below.description, ":\"\\") << "\" ";
    script << "))' \\\n    '*::argument:->arguments' && return 0\n  case $line[1] in\n";
    for (const CommandHelp& below : command.subcommands)
        script << "    " << below.name << ") " << function << '_' << below.name << " ;;\n";
    script << "  esac\n}\n";
}

} // namespace

std::string zshCompletion(const CommandHelp& tool)
{
    std::ostringstream script;
    script << kHead;
    writeFunction(script, tool, "_lumofe_commands");
    script << kTail;
    return script.str();
}

} // namespace lumofe
