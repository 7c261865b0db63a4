// Each perspective view of a layout as a picture or video of its own.
#include "SeparateViews.h"

#include "Error.h"

#include <filesystem>

namespace lumofe {
namespace {

// Pan 0 of the single view on ceiling and floor, degrees clockwise of the picture's top.
constexpr double kSingleTop = 22.5;

// The aim of a layout's view on ceiling or floor, turned to where the single view counts from.
Aim asSingle(Aim aim, Mount mount)
{
    if (mount == Mount::wall) return aim;
    aim.pan -= kSingleTop;
    if (aim.pan < mountRule(mount).panMin) aim.pan += 360;
    return aim;
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
        view.separate = false;
        view.view = View::single;
        view.ptz = {asSingle(aim, options.mount)};
        view.output = numbered(options.output, int(views.size()) + 1);
        views.push_back(view);
    }
    return views;
}

} // namespace lumofe
