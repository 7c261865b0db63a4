// The command line: the commands, and what becomes of errors.
#include "Cli.h"

#include "Error.h"
#include "ManPage.h"
#include "cli/Commands.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <LumoFESDK.h>
#include <cstdio>
#include <new>
#include <string>

namespace lumofe {
namespace {

constexpr int kBadInput = 2;
constexpr int kInterrupted = 130;
constexpr const char* kName = "lumofe";
constexpr const char* kDescription = "Dewarps the pictures of fisheye surveillance cameras.";

constexpr void (*kCommands[])(CLI::App&) = {addRender, addBench, addScene, addSheet};

std::string version()
{
    return std::to_string(LUMOFESDK_VERSION_MAJOR) + "." + std::to_string(LUMOFESDK_VERSION_MINOR) +
           "." + std::to_string(LUMOFESDK_VERSION_PATCH);
}

void addAll(CLI::App& app)
{
    app.set_version_flag("--version", "lumofe " + version());
    app.require_subcommand(1);
    app.get_formatter()->column_width(28);
    app.footer("\nlumofe COMMAND --help tells more of a command.");
    for (const auto add : kCommands)
        add(app);
}

CommandHelp helpOf(const CLI::App& app)
{
    CommandHelp help{app.get_name(), app.get_description(), {}, {}, app.get_footer()};
    for (const CLI::Option* option : app.get_options()) {
        ArgumentHelp argument;
        argument.positional = option->get_positional();
        if (argument.positional) argument.names = {option->get_name(true)};
        for (const std::string& name : option->get_snames())
            argument.names.push_back("-" + name);
        for (const std::string& name : option->get_lnames())
            argument.names.push_back("--" + name);
        argument.value = option->get_type_name();
        argument.text = option->get_description();
        argument.required = option->get_required();
        argument.repeats = argument.positional && option->get_expected_max() > 1;
        help.arguments.push_back(argument);
    }
    for (const CLI::App* command : app.get_subcommands({}))
        help.subcommands.push_back(helpOf(*command));
    return help;
}

int fail(const std::string& message, int status = kBadInput)
{
    std::fprintf(stderr, "lumofe: %s\n", message.c_str());
    return status;
}

} // namespace

int runTool(int argc, const char* const* argv)
{
    CLI::App app(kDescription, kName);
    addAll(app);
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return fail(std::string(e.what()) + "; see lumofe --help");
    } catch (const Error& e) {
        return fail(e.what());
    } catch (const Interrupted& e) {
        return fail(e.what(), kInterrupted);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; scale the input or choose a smaller --size");
    }
}

std::string toolManPage()
{
    CLI::App app(kDescription, kName);
    addAll(app);
    return manPage(helpOf(app), "LumoFESDK " + version());
}

} // namespace lumofe
