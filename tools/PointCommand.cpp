// The command that tells where a spot of the raw picture lies.
#include "PointCommand.h"

#include "Error.h"
#include "LibraryOutput.h"
#include "OutputFile.h"
#include "RenderPlan.h"
#include "camera/NearestView.h"
#include "media/Pixels.h"

#include <cmath>
#include <cstdio>

namespace lumofe {
namespace {

CameraFile cameraOf(const PointOptions& options)
{
    if (!options.cameraPath.empty()) {
        if (options.size || options.circle || options.mount)
            throw Error(
                "--camera: its file tells size, circle and mounting; leave out these options");
        return readCameraFile(options.cameraPath);
    }
    if (!options.size) throw Error("--size: is missing; give the input's size, or --camera");
    CameraFile camera;
    camera.input = evenSize(*options.size);
    camera.mount = options.mount.value_or(Mount::ceiling);
    camera.circle = options.circle.value_or(centredCircle(camera.input));
    return camera;
}

void checkPoint(const PointOptions& options, const CameraFile& camera)
{
    const auto [x, y, radius] = camera.circle;
    if (std::hypot(options.x - x, options.y - y) <= radius && options.x >= 0 && options.y >= 0 &&
        options.x < camera.input.width && options.y < camera.input.height)
        return;
    char text[200];
    std::snprintf(text, sizeof text,
                  "%d %d: is outside the picture's circle (%dx%d pixels; centre %d,%d, radius %d); "
                  "choose a spot in it",
                  options.x, options.y, camera.input.width, camera.input.height, x, y, radius);
    throw Error(text);
}

Aim singleAim(const PointOptions& options, const CameraFile& camera)
{
    DewarperSetup setup;
    setup.input = camera.input;
    setup.output = kSmallestInput;
    setup.circle = camera.circle;
    setup.mount = camera.mount;
    return Dewarper(setup).directionOf(options.x, options.y);
}

// Turns the views' aims into the directions that the middles of their pictures show.
void lookAtMiddles(Preset& preset, const CameraFile& camera)
{
    DewarperSetup setup;
    setup.input = camera.input;
    setup.circle = camera.circle;
    setup.mount = camera.mount;
    setup.view = preset.layout;
    setup.output = defaultOutputSize(setup.view, setup.mount, setup.input);
    Dewarper dewarper(setup);
    std::vector<Aim> shown = preset.position.views;
    for (Aim& aim : shown)
        if (const auto middle = dewarper.middleOf(aim))
            aim = dewarper.directionOf(int(std::lround(middle->x)), int(std::lround(middle->y)));
    preset.position.views = shown;
}

// The camera with the directions that its presets' views show in place of those that they are told.
CameraFile withMiddles(CameraFile camera)
{
    for (Preset& preset : camera.presets) {
        if (preset.position.views.empty()) continue;
        try {
            lookAtMiddles(preset, camera);
        } catch (const Error&) {
            // A layout that this circle is too large for: what its views are told has to do.
        }
    }
    return camera;
}

std::string lineOf(const char* what, const Aim& aim)
{
    char text[100];
    std::snprintf(text, sizeof text, "%-11s pan %.1f, tilt %.1f degrees\n", what, aim.pan,
                  aim.tilt);
    return text;
}

std::string lineOf(const NearestView& nearest)
{
    char degrees[40];
    std::snprintf(degrees, sizeof degrees, ", %.1f degrees away\n", nearest.degrees);
    const bool several = layoutRule(nearest.preset->layout).views > 1;
    return "nearest:    preset " + nearest.preset->name +
           (several ? ", view " + std::to_string(nearest.number) : "") + degrees;
}

} // namespace

void runPoint(const PointOptions& options)
{
    const LibraryOutput libraryOutput(LibraryOutput::Target::discard);
    const CameraFile camera = cameraOf(options);
    checkPoint(options, camera);
    const Aim single = singleAim(options, camera);

    OutputFile output("-", libraryOutput.ownOutput());
    if (camera.mount == Mount::wall) {
        output.write(lineOf("all views:", single));
    } else {
        output.write(lineOf("single:", single));
        output.write(
            lineOf("quad, 360:", convertedAim(single, View::single, View::quad, camera.mount)));
    }
    const CameraFile shown = withMiddles(camera);
    if (const auto nearest = nearestView(shown, single)) output.write(lineOf(*nearest));
    output.commit();
}

} // namespace lumofe
