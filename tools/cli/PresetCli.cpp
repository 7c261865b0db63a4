// The options of `lumofe preset`.
#include "cli/Commands.h"

#include "PresetCommand.h"
#include "RenderCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kSaveFooter = R"(
Views that no option steers look where render has them look: see lumofe render --help.

Examples:
  lumofe preset save hall.json door --pan 67.5 --tilt 60
  lumofe preset save hall.json all --view quad --ptz 0,70,0 --ptz 90,70,0
  lumofe preset save hall.json round --view 180 --pano-offset 45)";

constexpr const char* kListFooter = R"(
A line for each preset: its name, its layout, and the views as --ptz takes them or the 180 layout's
--pano-offset, with tabs between.

Example:
  lumofe preset list hall.json | cut -f 1)";

constexpr const char* kApplyFooter = R"(
The same as lumofe render INPUT -o FILE --camera CAMERA --preset NAME, which takes more options.

Example:
  lumofe preset apply hall.json door hall.jpg -o door.png)";

constexpr const char* kRemoveFooter = R"(
Example:
  lumofe preset remove hall.json door)";

void addCameraPath(CLI::App& command, std::string& path)
{
    command.add_option("CAMERA", path, "File of the camera (see lumofe camera init --help)")
        ->required()
        ->type_name("");
}

void addName(CLI::App& command, std::string& name, const char* help)
{
    command.add_option("NAME", name, help)->required()->type_name("");
}

void addSave(CLI::App& preset)
{
    const auto options = std::make_shared<PresetOptions>();
    PresetOptions& o = *options;
    CLI::App& save = *preset.add_subcommand("save", "Keep a position of the views");
    save.footer(kSaveFooter);
    addCameraPath(save, o.steering.cameraPath);
    addName(save, o.name, "1 to 64 bytes, not beginning with a dash; e.g. door");
    addView(save, o.steering.view, "single, quad, 360 or 180: its layout (default: the camera's)");
    addSteering(save, o.steering);
    save.add_flag("--force", o.force, "Replace an older preset of that name");
    save.callback([options, &save] {
        options->steering.viewGiven = save.count("--view") > 0;
        savePreset(*options);
    });
}

void addRemove(CLI::App& preset)
{
    const auto options = std::make_shared<PresetOptions>();
    CLI::App& remove = *preset.add_subcommand("remove", "Forget a position of the views");
    remove.footer(kRemoveFooter);
    addCameraPath(remove, options->steering.cameraPath);
    addName(remove, options->name, "Of the preset; the tour must not stop at it");
    remove.callback([options] { removePreset(*options); });
}

void addList(CLI::App& preset)
{
    const auto path = std::make_shared<std::string>();
    CLI::App& list = *preset.add_subcommand("list", "Show the positions that are kept");
    list.footer(kListFooter);
    addCameraPath(list, *path);
    list.callback([path] { listPresets(*path); });
}

void addApply(CLI::App& preset)
{
    const auto options = std::make_shared<RenderOptions>();
    CLI::App& apply = *preset.add_subcommand("apply", "Dewarp with a position that is kept");
    apply.footer(kApplyFooter);
    addCameraPath(apply, options->cameraPath);
    addName(apply, options->preset, "Of the preset");
    addInputAndOutput(apply, *options);
    addForce(apply, options->force);
    addFfmpeg(apply, options->ffmpeg);
    apply.callback([options] { runRender(*options); });
}

} // namespace

void addPreset(CLI::App& app)
{
    CLI::App& preset =
        *app.add_subcommand("preset", "Keep positions of the views in a camera's file");
    preset.require_subcommand(1);
    preset.footer("\nExample:\n  lumofe preset save hall.json door --pan 90 --tilt 60");
    addSave(preset);
    addList(preset);
    addApply(preset);
    addRemove(preset);
}

} // namespace lumofe
