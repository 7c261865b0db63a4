// What the commands' option tables share.
#ifndef LUMOFE_TOOLS_CLI_COMMANDS_H
#define LUMOFE_TOOLS_CLI_COMMANDS_H

#include "Parse.h"
#include "RenderPlan.h"

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace lumofe {

// Each adds one command with its options and help; parsing a command line that chooses it runs it.
void addCalibrate(CLI::App& app);
void addBench(CLI::App& app);
void addRender(CLI::App& app);
void addScene(CLI::App& app);
void addSheet(CLI::App& app);
void addCamera(CLI::App& app);
void addPreset(CLI::App& app);
void addPoint(CLI::App& app);
void addCompletion(CLI::App& app);

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

// An option that is left empty when it is not given.
template <class Number>
void addNumber(CLI::App& app, const char* name, std::optional<Number>& target, const char* help,
               const char* values)
{
    app.add_option_function<Number>(
           name, [&target](const Number& number) { target = number; }, help)
        ->type_name(values);
}

// Options that several commands take.
void addView(CLI::App& app, View& view, const char* help);
template <class MountOrNone>
void addMount(CLI::App& app, MountOrNone& mount)
{
    addParsed(app, "--mount", mount, parseMount,
              "ceiling, wall or floor: where the camera hangs\n(default ceiling)", "MOUNT");
}
void addCircle(CLI::App& app, std::optional<Circle>& circle);

// --force, for commands that write a file.
void addForce(CLI::App& app, bool& force);

// --ffmpeg and --decode.
void addFfmpeg(CLI::App& app, FfmpegOptions& ffmpeg);

// Words as a shell takes them apart, with quotes.
std::vector<std::string> words(const std::string& text);

// --pan, --tilt, --zoom, --ptz and --pano-offset.
void addSteering(CLI::App& app, RenderOptions& options);

// --camera and --preset.
void addCameraFile(CLI::App& app, RenderOptions& options);

// INPUT and --output of a command that renders.
void addInputAndOutput(CLI::App& app, RenderOptions& options);

} // namespace lumofe

#endif
