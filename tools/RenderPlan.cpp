// From what was asked for to what the library is told.
#include "RenderPlan.h"

#include "Error.h"
#include "camera/Tour.h"
#include "media/Pixels.h"

#include <algorithm>
#include <cmath>

namespace lumofe {
namespace {

constexpr int kMaxSweepFrames = 10000;
constexpr int kMaxTourFrames = 1000000;

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

void checkFrames(const RenderOptions& options)
{
    if (!options.frames) return;
    if (!moves(options)) throw Error("--frames: needs --pan-sweep DEG or --tour");
    if (*options.frames < 2 || *options.frames > kMaxSweepFrames)
        throw Error("--frames: " + std::to_string(*options.frames) + " is outside 2 to " +
                    std::to_string(kMaxSweepFrames));
}

void checkSweep(const RenderOptions& options)
{
    if (!options.panSweep) return;
    if (!options.frames) throw Error("--pan-sweep: needs --frames N");
    if (options.view != View::single)
        throw Error("--pan-sweep: turns the single view only; leave out --view");
    if (!(std::abs(*options.panSweep) <= 360))
        throw Error("--pan-sweep: is outside -360 to 360 degrees");
    if (options.timeFrames > 0) throw Error("--time: measures a still; leave out --pan-sweep");
    checkAim(sweptAim(options, *options.frames - 1), options.mount);
}

void checkTour(const RenderOptions& options)
{
    if (!options.tour) return;
    const char* other = !options.preset.empty() ? "--preset"
                        : !options.ptz.empty()  ? "--ptz"
                        : options.pan           ? "--pan"
                        : options.tilt          ? "--tilt"
                        : options.zoom          ? "--zoom"
                        : options.panoOffset    ? "--pano-offset"
                        : options.panSweep      ? "--pan-sweep"
                                                : nullptr;
    if (other) throw Error(std::string("--tour: steers by itself; leave out ") + other);
    if (options.timeFrames > 0) throw Error("--time: measures a still; leave out --tour");
}

// Null when none is.
const Preset* presetAsked(const RenderOptions& options)
{
    return options.camera ? findPreset(*options.camera, options.preset) : nullptr;
}

// The layout that what is asked of the camera's file is for.
View layoutAsked(const RenderOptions& options)
{
    const CameraFile& camera = *options.camera;
    if (!options.preset.empty())
        return presetNamed(camera, options.preset, options.cameraPath).layout;
    if (!options.tour) return camera.layout;
    if (camera.tour.stops.empty())
        throw Error(options.cameraPath + ": has no tour; write one, see docs/camera-file.md");
    return findPreset(camera, camera.tour.stops.front().preset)->layout;
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

Circle centredCircle(Size input)
{
    return {input.width / 2, input.height / 2, std::min(input.width, input.height) / 2};
}

RenderOptions withCamera(RenderOptions options)
{
    const bool positions = options.tour || !options.preset.empty();
    const std::string asking = options.tour ? "--tour" : "--preset";
    if (options.cameraPath.empty()) {
        if (positions) throw Error(asking + ": needs the camera's file, give it with --camera");
        return options;
    }
    const CameraFile& camera = options.camera.emplace(readCameraFile(options.cameraPath));
    const View layout = layoutAsked(options);
    if (!options.viewGiven) options.view = layout;
    if (!options.mountGiven) options.mount = camera.mount;
    if (positions && options.view != layout)
        throw Error("--view: the " + asking.substr(2) + " is for the layout " +
                    layoutRule(layout).name + "; leave out --view");
    if (positions && options.mount != camera.mount)
        throw Error("--mount: the " + asking.substr(2) + " is for the " +
                    mountRule(camera.mount).name + "; leave out --mount");
    if (!options.circle) options.circle = camera.circle;
    return options;
}

void checkOptions(const RenderOptions& options)
{
    checkSteering(options);
    const std::vector<Aim> aims = aimsFor(options);
    for (std::size_t i = 0; i < aims.size(); ++i)
        checkAim(aims[i], options.mount,
                 i < options.ptz.size() ? "--ptz " + std::to_string(i + 1) + ", " : "--");
    checkFrames(options);
    checkSweep(options);
    checkTour(options);
}

std::vector<Aim> aimsFor(const RenderOptions& options)
{
    const Preset* preset = presetAsked(options);
    std::vector<Aim> aims = options.ptz;
    for (int number = int(aims.size()) + 1; number <= layoutRule(options.view).views; ++number) {
        Aim aim = preset ? preset->position.views[std::size_t(number) - 1]
                         : defaultAim(options.view, options.mount, number);
        aim.pan = options.pan.value_or(aim.pan);
        aim.tilt = options.tilt.value_or(aim.tilt);
        aim.zoom = options.zoom.value_or(aim.zoom);
        if (options.tilt || options.zoom) aim.offset.reset(); // it follows from these
        aims.push_back(aim);
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

bool moves(const RenderOptions& options)
{
    return options.panSweep || options.tour;
}

int movingFrames(const RenderOptions& options, double rate)
{
    if (options.frames) return *options.frames;
    // A sum of tenths may be a hair more than it should.
    constexpr double kRoundingError = 1e-6;
    const double frames = std::ceil(tourSeconds(options.camera->tour) * rate - kRoundingError);
    if (frames > kMaxTourFrames)
        throw Error(options.cameraPath + ": a round of the tour is more than " +
                    std::to_string(kMaxTourFrames) + " frames; say with --frames how many to make");
    return std::max(int(frames), 1);
}

Position positionFor(const RenderOptions& options, int number, double rate)
{
    if (options.tour) return tourAt(*options.camera, number / rate);
    if (options.panSweep) return {{sweptAim(options, number)}, 0};
    const Preset* preset = presetAsked(options);
    return {aimsFor(options),
            options.panoOffset.value_or(preset ? preset->position.panoOffset : 0)};
}

RenderPlan planFor(const RenderOptions& options, Size input, bool video)
{
    if (options.camera && options.camera->input != input)
        throw Error(options.cameraPath + ": is for an input of " + text(options.camera->input) +
                    ", but this one is " + text(input) +
                    "; scale the input, or make a file for its size");
    RenderPlan plan;
    DewarperSetup& setup = plan.setup;
    setup.input = input;
    setup.output = outputSize(options, input, plan.notes);
    setup.circle = options.circle.value_or(centredCircle(input));
    setup.view = options.view;
    setup.mount = options.mount;
    setup.format = options.exactFormat ? options.format : fedFormat(options.view, options.format);
    setup.panoOffset = positionFor(options, 0, 1).panoOffset;
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
