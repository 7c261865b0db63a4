// The commands that keep positions of the views in a camera's file.
#ifndef LUMOFE_TOOLS_PRESET_COMMAND_H
#define LUMOFE_TOOLS_PRESET_COMMAND_H

#include "RenderPlan.h"

#include <string>

namespace lumofe {

struct PresetOptions {
    std::string name;
    RenderOptions steering; // cameraPath; to save, also where the views look, and viewGiven
    bool force = false;     // to save: replace an older one of that name
};

// Each throws Error for whatever cannot be done; then the file stays as it was.

void savePreset(const PresetOptions& options);

// An error for one that the tour needs.
void removePreset(const PresetOptions& options);

// A line for each preset on standard output: name, layout, and "pan,tilt,zoom" of each view or the
// turn of the 180 layout, with tabs between.
void listPresets(const std::string& cameraPath);

} // namespace lumofe

#endif
