// What an element is asked to show: the values behind its properties.
#ifndef LUMOFE_GST_SETTINGS_H
#define LUMOFE_GST_SETTINGS_H

#include "Dewarper.h"

#include <array>
#include <optional>
#include <vector>

namespace lumofe {

// What was asked of one view; the rest is the layout's usual aim.
struct ViewDirection {
    std::optional<double> pan, tilt; // degrees
    std::optional<double> zoom;      // percent
    bool operator==(const ViewDirection&) const = default;
};

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

    bool operator==(const Settings&) const = default;

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
