// The command line: the commands, and what becomes of errors.
#include "Cli.h"

#include "Error.h"
#include "ManPage.h"
#include "Parse.h"
#include "cli/Commands.h"
#include "completion/Completion.h"

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

constexpr const char* kExitStatus = R"(
  0    done
  2    a bad input or option, said in one line on standard error; no output is left but what
       came before an error in a video, and the other pictures of a folder
  3    calibrate is not sure of the circle it found
  130  interrupted, as by Ctrl-C; a video is left complete up to there, else no output
)";

constexpr void (*kCommands[])(CLI::App&) = {addRender, addCalibrate, addCamera,
                                            addPreset, addPoint,     addBench,
                                            addScene,  addSheet,     addCompletion};

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
    app.footer(std::string("\nlumofe COMMAND --help tells more of a command.\n\nExit status:") +
               kExitStatus);
    for (const auto add : kCommands)
        add(app);
}

// What options and positionals of that value take.
std::vector<std::string> choicesOf(const std::string& value)
{
    if (value == "LAYOUT") return viewNames();
    if (value == "MOUNT") return mountNames();
    if (value == "FORMAT") return pixelFormatNames();
    if (value == "SHELL") return shellNames();
    if (value == "HOW") return viewsNames();
    return {};
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
        argument.choices = choicesOf(argument.positional ? argument.names.front() : argument.value);
        argument.repeats = argument.positional && option->get_expected_max() > 1;
        help.arguments.push_back(argument);
    }
    for (const CLI::App* command : app.get_subcommands({}))
        help.subcommands.push_back(helpOf(*command));
    return help;
}

// The command that was given, as far as there is one, with its parents.
std::string commandOf(const CLI::App& app)
{
    std::string name = app.get_name();
    for (const CLI::App* command : app.get_subcommands())
        name += " " + commandOf(*command);
    return name;
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
    } catch (const CLI::RuntimeError& e) { // a status that the command documents
        return e.get_exit_code();
    } catch (const CLI::ParseError& e) {
        return fail(std::string(e.what()) + "; see " + commandOf(app) + " --help");
    } catch (const Error& e) {
        return fail(e.what());
    } catch (const Interrupted& e) {
        return fail(e.what(), kInterrupted);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; scale the input or choose a smaller --size");
    }
}

CommandHelp toolHelp()
{
    CLI::App app(kDescription, kName);
    addAll(app);
    return helpOf(app);
}

std::string toolManPage()
{
    return manPage(toolHelp(), "LumoFESDK " + version(), kExitStatus);
}

} // namespace lumofe
