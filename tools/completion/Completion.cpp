// What the completions of all shells share.
#include "completion/Completion.h"

#include "Error.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumofe {
namespace {

struct Shell {
    const char* name;
    std::string (*completion)(const CommandHelp& tool);
};

constexpr Shell kShells[] = {
    {"bash", bashCompletion}, {"zsh", zshCompletion}, {"fish", fishCompletion}};

constexpr std::array<std::string_view, 6> kFiles = {"FILE",  "INPUT",  "OUT",
                                                    "IMAGE", "CAMERA", "PICTURE"};

} // namespace

std::vector<std::string> shellNames()
{
    std::vector<std::string> names;
    for (const Shell& shell : kShells)
        names.emplace_back(shell.name);
    return names;
}

std::string completionFor(const std::string& shell, const CommandHelp& tool)
{
    for (const Shell& known : kShells)
        if (shell == known.name) return known.completion(tool);
    throw Error("SHELL: '" + shell + "' is unknown; choose one of " + joined(shellNames(), ", "));
}

Completes completes(const ArgumentHelp& argument)
{
    if (!argument.choices.empty()) return Completes::choices;
    const std::string& value = argument.positional ? argument.names.front() : argument.value;
    if (std::ranges::find(kFiles, value) != kFiles.end()) return Completes::files;
    return value == "NAME" ? Completes::presets : Completes::nothing;
}

std::string summary(const ArgumentHelp& argument)
{
    std::string text = argument.text;
    std::ranges::replace(text, '\n', ' ');
    for (const char* end : {";", ". ", " (default"})
        text.resize(std::min(text.find(end), text.size()));
    return text;
}

std::string joined(const std::vector<std::string>& words, const std::string& separator)
{
    std::string all;
    for (const std::string& word : words)
        all += (&word == &words.front() ? "" : separator) + word;
    return all;
}

} // namespace lumofe
