// How the camera is mounted, and which directions a view can take there.
#include "Mounting.h"

#include "Error.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace lumofe {
namespace {

// clang-format off
constexpr MountRule kRules[] = {
    {Mount::ceiling, "ceiling", -360, 360,   0, 90,  70},
    {Mount::wall,    "wall",     -90,  90, -90, 90,   0},
    {Mount::floor,   "floor",   -360, 360, -90,  0, -70},
};
// clang-format on

void checkRange(const std::string& option, double value, double low, double high,
                const std::string& where)
{
    // Written so that a NaN fails.
    if (value >= low && value <= high) return;
    char text[64];
    std::snprintf(text, sizeof text, ": %g is outside %g to %g", value, low, high);
    throw Error(option + text + where);
}

} // namespace

const MountRule& mountRule(Mount mount)
{
    return kRules[std::size_t(mount)];
}

void checkAim(const Aim& aim, Mount mount, const std::string& option)
{
    const MountRule& rule = mountRule(mount);
    const std::string where = std::string(" degrees, the range of --mount ") + rule.name;
    checkRange(option + "pan", aim.pan, rule.panMin, rule.panMax, where);
    checkRange(option + "tilt", aim.tilt, rule.tiltMin, rule.tiltMax, where);
    checkRange(option + "zoom", aim.zoom, 0, 100, " percent");
}

} // namespace lumofe
