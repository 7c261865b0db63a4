// What an element is asked to show: the values behind its properties.
#include "Settings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lumofe {

Aim Settings::aim(int number) const
{
    const MountRule& rule = mountRule(mount);
    const Aim usual = defaultAim(view, mount, number);
    const ViewDirection& asked = now.views[std::size_t(number) - 1];
    return {std::clamp(asked.pan.value_or(usual.pan), rule.panMin, rule.panMax),
            std::clamp(asked.tilt.value_or(usual.tilt), rule.tiltMin, rule.tiltMax),
            std::clamp(asked.zoom.value_or(usual.zoom), 0.0, 100.0)};
}

std::vector<Aim> Settings::aims() const
{
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(view).views; ++number)
        aims.push_back(aim(number));
    return aims;
}

int Settings::panoramaOffset() const
{
    return int(std::lround(now.panoramaOffset));
}

Circle Settings::circle(Size input) const
{
    return {circleX.value_or(input.width / 2), circleY.value_or(input.height / 2),
            circleRadius.value_or(std::min(input.width, input.height) / 2)};
}

} // namespace lumofe
