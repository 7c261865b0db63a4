// The file that holds what is known of one camera: JSON, see docs/camera-file.md.
#ifndef LUMOFE_TOOLS_CAMERA_FILE_H
#define LUMOFE_TOOLS_CAMERA_FILE_H

#include "Dewarper.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumofe {

// Where all views of a layout look.
struct Position {
    std::vector<Aim> views; // as many as the layout steers
    int panoOffset = 0;     // of the 180 layout of ceiling and floor, as in DewarperSetup
    bool operator==(const Position&) const = default;
};

struct Preset {
    std::string name; // see checkPresetName()
    View layout = View::single;
    Position position;
};

struct TourStop {
    std::string preset;
    double stay = 0;  // seconds at the preset, 0 to 86400
    double glide = 0; // seconds from there to the next stop, 0 to 3600; 0 cuts
};

// All its presets are of one layout. Empty: there is none.
struct Tour {
    std::vector<TourStop> stops;
    bool repeat = true; // after the last stop, go on with the first
};

struct CameraFile {
    Size input; // even, as the library takes it
    Mount mount = Mount::ceiling;
    Circle circle;
    View layout = View::single;  // shown unless a preset says otherwise
    std::vector<Preset> presets; // in the order of the file
    Tour tour;
};

// "-": standard input. Throws Error, which names file and field and says what is allowed, for
// whatever is not such a file.
CameraFile readCameraFile(const std::string& path);

// The file of that text; `name` stands for it in messages. Throws Error as readCameraFile() does.
CameraFile parseCameraFile(std::string_view text, const std::string& name);

// The text of the file, the same for the same camera. Throws Error, with `name` for the file, for a
// camera that parseCameraFile() would refuse.
std::string cameraFileText(const CameraFile& camera, const std::string& name);

// Replaces the file only once all of it is written. Throws Error when it cannot be written, and as
// cameraFileText() does.
void writeCameraFile(const std::string& path, const CameraFile& camera);

// Where the views look now. One that steps took beyond its mounting's range, which the quad allows
// on the wall, is put at the range's end.
Position positionOf(const Dewarper& dewarper);

// Null when there is none of that name.
const Preset* findPreset(const CameraFile& camera, std::string_view name);

// Throws Error, which lists the names, when there is none of that name; `file` stands for the file.
const Preset& presetNamed(const CameraFile& camera, std::string_view name, const std::string& file);

// Throws Error, which starts with `where`, unless the name has 1 to 64 bytes of printable UTF-8 and
// does not begin with a dash.
void checkPresetName(std::string_view name, const std::string& where);

} // namespace lumofe

#endif
