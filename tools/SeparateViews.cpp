// Each perspective view of a layout as a picture or video of its own.
#include "SeparateViews.h"

#include "Error.h"

#include <algorithm>
#include <filesystem>

namespace lumofe {
namespace {

// Pan 0 of the single view on ceiling and floor, degrees clockwise of the picture's top.
constexpr double kSingleTop = 22.5;

// The aim of a layout's view on ceiling or floor, turned to where the single view counts from.
Aim asSingle(Aim aim, Mount mount)
{
    aim.offset.reset(); // counts in the layout's own steps
    if (mount == Mount::wall) return aim;
    aim.pan -= kSingleTop;
    if (aim.pan < mountRule(mount).panMin) aim.pan += 360;
    return aim;
}

// The camera with a tour of single views, which look where that view of its layout does.
CameraFile withTourOfView(CameraFile camera, std::size_t view)
{
    std::erase_if(camera.presets, [&](const Preset& preset) {
        return std::ranges::find(camera.tour.stops, preset.name, &TourStop::preset) ==
               camera.tour.stops.end();
    });
    for (Preset& preset : camera.presets) {
        preset.layout = View::single;
        preset.position = {{asSingle(preset.position.views[view], camera.mount)}, 0};
    }
    return camera;
}

std::string numbered(const std::string& path, int number)
{
    const std::size_t end = path.size() - std::filesystem::path(path).extension().string().size();
    return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
}

} // namespace

std::vector<RenderOptions> viewsOf(const RenderOptions& options)
{
    if (!options.separate) return {options};
    if (layoutRule(options.view).views < 2)
        throw Error("--views separate: needs several perspective views; add --view quad or 360");
    if (options.output == "-")
        throw Error("--views separate: writes several files; give a name instead of -");
    std::vector<RenderOptions> views;
    for (const Aim& aim : aimsFor(options)) {
        RenderOptions view = options;
        if (options.tour) view.camera = withTourOfView(*options.camera, views.size());
        view.separate = false;
        view.view = View::single;
        view.ptz = {asSingle(aim, options.mount)};
        view.output = numbered(options.output, int(views.size()) + 1);
        views.push_back(view);
    }
    return views;
}

} // namespace lumofe
