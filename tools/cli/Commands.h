// What the commands' option tables share.
#ifndef LUMOFE_TOOLS_CLI_COMMANDS_H
#define LUMOFE_TOOLS_CLI_COMMANDS_H

#include "Dewarper.h"
#include "video/Ffmpeg.h"

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace lumofe {

// Each adds one command with its options and help; parsing a command line that chooses it runs it.
void addBench(CLI::App& app);
void addRender(CLI::App& app);
void addScene(CLI::App& app);
void addSheet(CLI::App& app);

// An option whose text `parse` turns into the target's type; it throws Error for a bad one.
template <class Target, class Parse>
CLI::Option* addParsed(CLI::App& app, const char* name, Target& target, Parse parse,
                       const char* help, const char* values)
{
    return app
        .add_option_function<std::string>(
            name, [&target, parse](const std::string& text) { target = parse(text); }, help)
        ->type_name(values);
}

// --mount and --circle.
void addMount(CLI::App& app, Mount& mount);
void addCircle(CLI::App& app, std::optional<Circle>& circle);

// --force, for commands that write a file.
void addForce(CLI::App& app, bool& force);

// --ffmpeg and --decode.
void addFfmpeg(CLI::App& app, FfmpegOptions& ffmpeg);

// Words as a shell takes them apart, with quotes.
std::vector<std::string> words(const std::string& text);

// An option that is left empty when it is not given.
template <class Number>
void addNumber(CLI::App& app, const char* name, std::optional<Number>& target, const char* help,
               const char* values)
{
    app.add_option_function<Number>(
           name, [&target](const Number& number) { target = number; }, help)
        ->type_name(values);
}

} // namespace lumofe

#endif
