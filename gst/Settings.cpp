// What an element is asked to show: the values behind its properties.
#include "Settings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lumofe {

void Settings::takeCamera(const std::string& path, std::shared_ptr<const CameraFile> file)
{
    Settings next = *this;
    next.camera = std::move(file);
    next.cameraPath = path;
    if (next.camera) {
        next.mount = next.camera->mount;
        next.view = next.camera->layout;
        next.circleX = next.camera->circle.x;
        next.circleY = next.camera->circle.y;
        next.circleRadius = next.camera->circle.radius;
        next.showPreset(preset);
    }
    *this = next;
}

void Settings::showPreset(const std::string& name)
{
    if (!name.empty() && camera) {
        const Preset& shown = presetNamed(*camera, name, cameraPath);
        mount = camera->mount;
        view = shown.layout;
        set = {};
        std::ranges::transform(shown.position.views, set.views.begin(),
                               [](const Aim& aim) -> ViewDirection {
                                   return {aim.pan, aim.tilt, aim.zoom, aim.offset};
                               });
        set.panoramaOffset = shown.position.panoOffset;
        now = set;
    }
    preset = name;
}

Aim Settings::aim(int number) const
{
    const MountRule& rule = mountRule(mount);
    const Aim usual = defaultAim(view, mount, number);
    const ViewDirection& asked = now.views[std::size_t(number) - 1];
    return {std::clamp(asked.pan.value_or(usual.pan), rule.panMin, rule.panMax),
            std::clamp(asked.tilt.value_or(usual.tilt), rule.tiltMin, rule.tiltMax),
            std::clamp(asked.zoom.value_or(usual.zoom), 0.0, 100.0), asked.offset};
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
