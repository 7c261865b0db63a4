// What an element is asked to show: the values behind its properties.
#ifndef LUMOFE_GST_SETTINGS_H
#define LUMOFE_GST_SETTINGS_H

#include "Dewarper.h"
#include "camera/CameraFile.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumofe {

// What was asked of one view; the rest is the layout's usual aim.
struct ViewDirection {
    std::optional<double> pan, tilt; // degrees
    std::optional<double> zoom;      // percent
    std::optional<int> offset;       // as in Aim; goes with the tilt and zoom beside it
    bool operator==(const ViewDirection&) const = default;
};

// How far views can pan to either side, degrees; view 1 first.
using PanReach = std::array<double, kMaxViews>;
inline constexpr PanReach kUnlimitedReach{360, 360, 360, 360};

struct Settings {
    View view = View::single;
    Mount mount = Mount::ceiling;
    std::optional<int> circleX, circleY, circleRadius; // input pixels

    // `set` is what the application asked for, `now` what is shown: the mouse moves that alone.
    struct Steering {
        std::array<ViewDirection, kMaxViews> views; // view 1 first
        double panoramaOffset = 0;                  // degrees clockwise
        bool operator==(const Steering&) const = default;
    };
    Steering set, now;

    // The camera's file, if there is one; null before. The layout and so on above were taken over
    // from it, and may have been changed since.
    std::shared_ptr<const CameraFile> camera;
    std::string cameraPath;
    std::string preset; // empty: none

    bool operator==(const Settings&) const = default;

    // Takes over mounting, circle and layout of the file, and the preset if one was named before.
    // Null forgets the file. Throws Error when the file has no preset of that name.
    void takeCamera(const std::string& path, std::shared_ptr<const CameraFile> file);

    // Shows that preset of the camera's file, on the file's mounting; without a file, when there is
    // one. Throws Error, and changes nothing, when the file has none of that name.
    void showPreset(const std::string& name);

    // Where view `number` looks, 1 and up; limited to what the mounting accepts.
    Aim aim(int number) const;

    // Of all views of the layout.
    std::vector<Aim> aims() const;

    // The panorama's, whole degrees clockwise.
    int panoramaOffset() const;

    // The circle in an input of that size, by default the largest centred one. Its centre may lie
    // outside.
    Circle circle(Size input) const;
};

} // namespace lumofe

#endif
