// The commands that keep positions of the views in a camera's file.
#include "PresetCommand.h"

#include "Error.h"
#include "OutputFile.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace lumofe {
namespace {

std::string lineOf(const Preset& preset)
{
    std::string line = preset.name + "\t" + layoutRule(preset.layout).name + "\t";
    char text[100];
    for (const Aim& aim : preset.position.views) {
        std::snprintf(text, sizeof text, "%s%.10g,%.10g,%.10g", line.ends_with('\t') ? "" : " ",
                      aim.pan, aim.tilt, aim.zoom);
        line += text;
    }
    if (preset.layout == View::half180) line += std::to_string(preset.position.panoOffset);
    return line + "\n";
}

} // namespace

void savePreset(const PresetOptions& options)
{
    checkPresetName(options.name, "NAME");
    const RenderOptions steering = withCamera(options.steering);
    checkOptions(steering);
    CameraFile camera = *steering.camera;
    Preset preset{options.name, steering.view, positionFor(steering, 0, 1)};

    const auto older = std::ranges::find(camera.presets, options.name, &Preset::name);
    if (older == camera.presets.end())
        camera.presets.push_back(std::move(preset));
    else if (options.force)
        *older = std::move(preset);
    else
        throw Error(steering.cameraPath + ": has a preset '" + options.name +
                    "' already; replace it with --force");
    writeCameraFile(steering.cameraPath, camera);
}

void removePreset(const PresetOptions& options)
{
    const std::string& path = options.steering.cameraPath;
    CameraFile camera = readCameraFile(path);
    presetNamed(camera, options.name, path);
    if (std::ranges::find(camera.tour.stops, options.name, &TourStop::preset) !=
        camera.tour.stops.end())
        throw Error(path + ": the tour stops at '" + options.name +
                    "'; take it out of the tour first");
    std::erase_if(camera.presets,
                  [&](const Preset& preset) { return preset.name == options.name; });
    writeCameraFile(path, camera);
}

void listPresets(const std::string& cameraPath)
{
    OutputFile output("-", STDOUT_FILENO);
    for (const Preset& preset : readCameraFile(cameraPath).presets)
        output.write(lineOf(preset));
    output.commit();
}

} // namespace lumofe
