// What the viewer writes on the screen.
#ifndef LUMOFE_VIEWER_TEXTS_H
#define LUMOFE_VIEWER_TEXTS_H

#include "camera/CameraFile.h"
#include "media/Image.h"

#include <optional>
#include <string>
#include <vector>

namespace lumofe::viewer {

// A tab divides a line into two columns.
using Lines = std::vector<std::string>;

// The keys.
Lines helpLines();

// The list of presets from `first` on; cameraPath: empty without a file of the camera.
Lines presetLines(const std::vector<Preset>& presets, int first, const std::string& cameraPath);

// What adjusts the circle, and where it is.
Lines circleLines(const Circle& circle);

struct Measured {
    double rate = 0;                // pictures a second
    double dewarping = 0;           // milliseconds a picture
    std::optional<double> response; // milliseconds from the last input to its picture on screen
};

struct Status {
    View view;
    Mount mount;
    Measured measured;
    bool ended = false; // no more frames come
    bool paused = false;
    std::optional<int> recordedSeconds = {}; // nothing: not recording
};

// The small line that is always there.
std::string statusLine(const Status& status);

// The text with no name and password in the addresses in it.
std::string withoutPasswords(std::string text);

// Text on a dark ground. scale: screen pixels of a font pixel, 1 and up. Lines that are wider
// than `width` pixels are cut off.
Image textPanel(const Lines& lines, int scale, int width);

} // namespace lumofe::viewer

#endif
