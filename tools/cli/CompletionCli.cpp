// The options of `lumofe completion`.
#include "cli/Commands.h"

#include "Cli.h"
#include "OutputFile.h"
#include "completion/Completion.h"

#include <memory>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr const char* kCompletionFooter = R"(
Prints the script that has the shell complete commands, options, values, presets and files of lumofe.
Where lumofe was installed from a package or with cmake --install, it is in place already.

Examples:
  source <(lumofe completion bash)
  lumofe completion zsh >~/.zfunc/_lumofe
  lumofe completion fish >~/.config/fish/completions/lumofe.fish)";

} // namespace

void addCompletion(CLI::App& app)
{
    const auto shell = std::make_shared<std::string>();
    CLI::App& completion =
        *app.add_subcommand("completion", "Print what completes command lines in a shell");
    completion.footer(kCompletionFooter);
    completion.add_option("SHELL", *shell, "bash, zsh or fish")->required()->type_name("");
    completion.callback([shell] {
        OutputFile output("-", STDOUT_FILENO);
        output.write(completionFor(*shell, toolHelp()));
        output.commit();
    });
}

} // namespace lumofe
