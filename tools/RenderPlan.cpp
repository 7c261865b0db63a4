// From what was asked for to what the library is told.
#include "RenderPlan.h"

#include "Error.h"
#include "media/Pixels.h"

#include <algorithm>
#include <cmath>

namespace lumofe {
namespace {

constexpr int kMaxSweepFrames = 10000;

std::string text(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

const char* name(PixelFormat format)
{
    return format == PixelFormat::rgb ? "RGB" : format == PixelFormat::yv12 ? "YV12" : "NV12";
}

void checkSteering(const RenderOptions& options)
{
    const LayoutRule& rule = layoutRule(options.view);
    const bool plain = options.pan || options.tilt || options.zoom;
    const char* option = options.pan ? "--pan" : options.tilt ? "--tilt" : "--zoom";
    const std::string layout = std::string("--view ") + rule.name;
    if (plain && options.view != View::single)
        throw Error(option + (": steers the single view; " + layout) +
                    (rule.views > 0 ? " takes --ptz pan,tilt,zoom once per view"
                                    : " is turned with --pano-offset"));
    if (plain && !options.ptz.empty())
        throw Error(std::string(option) + ": cannot be combined with --ptz; give one or the other");
    if (int(options.ptz.size()) > rule.views)
        throw Error("--ptz: given " + std::to_string(options.ptz.size()) + " times, but " + layout +
                    " steers " +
                    (rule.views == 0   ? "no view"
                     : rule.views == 1 ? "one view"
                                       : std::to_string(rule.views) + " views"));
    if (!options.panoOffset) return;
    if (options.view != View::half180 || options.mount == Mount::wall)
        throw Error("--pano-offset: turns --view 180 of --mount ceiling and floor only");
    if (*options.panoOffset < -360 || *options.panoOffset > 360)
        throw Error("--pano-offset: " + std::to_string(*options.panoOffset) +
                    " is outside -360 to 360 degrees");
}

void checkSweep(const RenderOptions& options)
{
    if (options.panSweep.has_value() != options.frames.has_value())
        throw Error(options.frames ? "--frames: needs --pan-sweep DEG"
                                   : "--pan-sweep: needs --frames N");
    if (!options.panSweep) return;
    if (options.view != View::single)
        throw Error("--pan-sweep: turns the single view only; leave out --view");
    if (!(std::abs(*options.panSweep) <= 360))
        throw Error("--pan-sweep: is outside -360 to 360 degrees");
    if (*options.frames < 2 || *options.frames > kMaxSweepFrames)
        throw Error("--frames: " + std::to_string(*options.frames) + " is outside 2 to " +
                    std::to_string(kMaxSweepFrames));
    if (options.timeFrames > 0) throw Error("--time: measures a still; leave out --pan-sweep");
    checkAim(sweptAim(options, *options.frames - 1), options.mount);
}

Size outputSize(const RenderOptions& options, Size input, std::vector<std::string>& notes)
{
    if (!options.size) return defaultOutputSize(options.view, options.mount, input);
    const Size asked = *options.size;
    if (options.exactSize || composes(options.view, options.mount, asked, input)) return asked;
    const Size near = nearestComposing(options.view, options.mount, asked, input);
    notes.push_back("--size: --view " + std::string(layoutRule(options.view).name) +
                    " leaves gaps at " + text(asked) + " from this input; using " + text(near) +
                    " (--exact-size insists)");
    return near;
}

} // namespace

void checkOptions(const RenderOptions& options)
{
    checkSteering(options);
    const std::vector<Aim> aims = aimsFor(options);
    for (std::size_t i = 0; i < aims.size(); ++i)
        checkAim(aims[i], options.mount,
                 i < options.ptz.size() ? "--ptz " + std::to_string(i + 1) + ", " : "--");
    checkSweep(options);
}

std::vector<Aim> aimsFor(const RenderOptions& options)
{
    std::vector<Aim> aims = options.ptz;
    for (int number = int(aims.size()) + 1; number <= layoutRule(options.view).views; ++number) {
        const Aim usual = defaultAim(options.view, options.mount, number);
        aims.push_back({options.pan.value_or(usual.pan), options.tilt.value_or(usual.tilt),
                        options.zoom.value_or(usual.zoom)});
    }
    return aims;
}

Aim sweptAim(const RenderOptions& options, int number)
{
    Aim aim = aimsFor(options).front();
    aim.pan += options.panSweep.value_or(0) * number / options.frames.value_or(1);
    if (options.mount != Mount::wall) aim.pan = std::fmod(aim.pan, 360);
    return aim;
}

RenderPlan planFor(const RenderOptions& options, Size input, bool video)
{
    RenderPlan plan;
    DewarperSetup& setup = plan.setup;
    setup.input = input;
    setup.output = outputSize(options, input, plan.notes);
    setup.circle = options.circle.value_or(
        Circle{input.width / 2, input.height / 2, std::min(input.width, input.height) / 2});
    setup.view = options.view;
    setup.mount = options.mount;
    setup.format = options.exactFormat ? options.format : fedFormat(options.view, options.format);
    setup.panoOffset = options.panoOffset.value_or(0);
    setup.upright = options.upright;
    if (setup.format != options.format)
        plan.notes.push_back(std::string("--format: --view ") + layoutRule(options.view).name +
                             " garbles " + name(options.format) + "; feeding " +
                             name(setup.format) + " (--exact-format insists)");
    if (setup.circle.x >= input.width || setup.circle.y >= input.height)
        throw Error("--circle: the centre is outside the " + text(input) +
                    " input; give it in input pixels");
    if (evenSize(setup.output) != setup.output && (video || setup.format != PixelFormat::rgb))
        throw Error("--size: 4:2:0 needs an even width and height; choose even numbers");
    const bool unwraps =
        setup.mount != Mount::wall && (setup.view == View::ptz360 || setup.view == View::half180);
    if (unwraps && !unwrapIsComplete(input, setup.circle.radius))
        plan.notes.push_back("the library cuts off the outer part of the panorama: the circle's " +
                             std::to_string(setup.circle.radius) +
                             " pixels are too much for an input of " + text(input) +
                             "; scale it up first");
    return plan;
}

} // namespace lumofe
