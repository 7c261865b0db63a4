// How the camera is mounted, and which directions a view can take there.
#ifndef LUMOFE_TOOLS_MOUNTING_H
#define LUMOFE_TOOLS_MOUNTING_H

#include <optional>
#include <string>

namespace lumofe {

// The values are those of FE_ViewParams::nCamPos.
enum class Mount { ceiling = 0, wall = 1, floor = 2 };

// Direction and zoom of a view: degrees, and percent.
struct Aim {
    double pan = 0;
    double tilt = 0;
    double zoom = 0;
    // How far the viewed area lies towards the circle's rim, input pixels. Steps move it otherwise
    // than aims do; without it, it follows from the tilt and the zoom.
    std::optional<int> offset = {};
    bool operator==(const Aim&) const = default;
};

// What a mounting accepts, degrees.
struct MountRule {
    Mount mount;
    const char* name;
    double panMin, panMax;
    double tiltMin, tiltMax;
    double defaultTilt;
};

const MountRule& mountRule(Mount mount);

// Throws Error, naming the option, for an aim outside the mounting's range. `option` stands before
// each of its three names.
void checkAim(const Aim& aim, Mount mount, const std::string& option = "--");

} // namespace lumofe

#endif
