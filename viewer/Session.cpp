// One camera on show.
#include "Session.h"

#include "Error.h"

#include <algorithm>
#include <cmath>

namespace lumofe::viewer {
namespace {

// Steps of a drag over the whole view. What a step moves depends on zoom and size; with these the
// picture keeps near the pointer where it is zoomed in, and turns about as fast where it is not.
constexpr double kSinglePanSteps = 150, kPanSteps = 90;
constexpr double kTiltSteps = 45;
constexpr double kSingleZoomSteps = 2, kZoomSteps = 4; // of a notch
constexpr double kPanoramaTurn = 180;                  // degrees that the 180 layout shows across

std::string unusedName(const std::vector<Preset>& presets)
{
    for (int number = 1;; ++number) {
        const std::string name = "view " + std::to_string(number);
        if (std::ranges::find(presets, name, &Preset::name) == presets.end()) return name;
    }
}

} // namespace

Session::Session(const RenderOptions& options, Size input) : options_(options), input_(input)
{
    if (options_.camera) presets_ = options_.camera->presets;
    const Position position = positionFor(options_, 0, 1);
    options_.preset.clear();
    options_.pan = options_.tilt = options_.zoom = {};
    options_.ptz.clear();
    options_.panoOffset.reset();
    open({options_.view, options_.mount}, position);
}

void Session::open(Scene scene, const Position& position)
{
    RenderOptions options = options_;
    options.view = scene.first;
    options.mount = scene.second;
    const RenderPlan plan = planFor(options, input_, true);
    auto fresh = std::make_unique<Dewarper>(plan.setup);
    if (dewarper_) left_[{setup().view, setup().mount}] = this->position();
    dewarper_ = std::move(fresh);
    options_ = options;
    notes_ = plan.notes;
    apply(position);
}

void Session::apply(const Position& position)
{
    steps_.clear();
    dewarper_->aim(position.views);
    panorama_ = position.panoOffset;
    dewarper_->turnPanorama(position.panoOffset);
    changed_ = true;
}

Position Session::usual(Scene scene) const
{
    Position position;
    for (int number = 1; number <= layoutRule(scene.first).views; ++number)
        position.views.push_back(defaultAim(scene.first, scene.second, number));
    return position;
}

void Session::show(Scene scene)
{
    if (scene == Scene{setup().view, setup().mount}) return;
    const auto left = left_.find(scene);
    open(scene, left == left_.end() ? usual(scene) : left->second);
}

void Session::showLayout(View view)
{
    show({view, setup().mount});
}

void Session::nextMount()
{
    constexpr int kMounts = 3;
    show({setup().view, Mount((int(setup().mount) + 1) % kMounts)});
}

bool Session::turnsPanorama() const
{
    return setup().view == View::half180 && setup().mount != Mount::wall;
}

void Session::turnPanorama(double degrees)
{
    panorama_ = std::fmod(degrees, 360);
    const int whole = int(std::lround(panorama_));
    if (whole == setup().panoOffset) return;
    dewarper_->turnPanorama(whole);
    changed_ = true;
}

void Session::drag(int view, double across, double down)
{
    if (turnsPanorama()) {
        // The floor's panorama runs the other way round.
        const double turn = kPanoramaTurn * across;
        turnPanorama(setup().mount == Mount::floor ? panorama_ + turn : panorama_ - turn);
    }
    if (view > layoutRule(setup().view).views) return;
    const double panSteps = setup().view == View::single ? kSinglePanSteps : kPanSteps;
    steps_.add(view, -across * panSteps, -down * kTiltSteps, 0);
}

void Session::zoom(int view, double notches)
{
    if (view > layoutRule(setup().view).views) return;
    const bool single = setup().view == View::single;
    steps_.add(view, 0, 0, notches * (single ? kSingleZoomSteps : kZoomSteps));
}

void Session::reset(int view)
{
    Position position = this->position();
    const Position usual = this->usual({setup().view, setup().mount});
    position.panoOffset = usual.panoOffset;
    if (view <= int(usual.views.size()))
        position.views[std::size_t(view) - 1] = usual.views[std::size_t(view) - 1];
    apply(position);
}

void Session::aimAt(int view, RawPixel pixel)
{
    if (view > layoutRule(setup().view).views)
        throw Error("the 180 layout has no view to aim; choose another with 1, 2 or 3");
    const Circle& circle = setup().circle;
    if (std::hypot(pixel.x - circle.x, pixel.y - circle.y) > circle.radius)
        throw Error("that is outside of the fisheye circle; click inside it");
    Position position = this->position();
    Aim& aim = position.views[std::size_t(view) - 1];
    aim = dewarper_->aimAt(pixel.x, pixel.y, aim.zoom);
    checkAim(aim, setup().mount, "that spot's ");
    apply(position);
}

void Session::keepCircle(const Circle& circle)
{
    if (hasCameraFile()) {
        // As it is now: another program may have changed it.
        CameraFile camera = readCameraFile(options_.cameraPath);
        camera.circle = circle;
        writeCameraFile(options_.cameraPath, camera);
    }
    options_.circle = circle;
    dewarper_->setCircle(circle);
    changed_ = true;
}

std::string Session::savePreset()
{
    if (!hasCameraFile())
        throw Error("presets need a file of the camera; start with --camera FILE (lumofe camera "
                    "init makes one)");
    CameraFile camera = readCameraFile(options_.cameraPath);
    if (camera.mount != setup().mount)
        throw Error(options_.cameraPath + ": is for the " + mountRule(camera.mount).name +
                    "; choose that mounting with M");
    const std::string name = unusedName(camera.presets);
    camera.presets.push_back({name, setup().view, position()});
    writeCameraFile(options_.cameraPath, camera);
    presets_ = camera.presets;
    options_.camera = camera;
    return name;
}

void Session::recallPreset(int index)
{
    const Preset& preset = presets_.at(std::size_t(index));
    const Scene scene{preset.layout, options_.camera->mount};
    if (scene == Scene{setup().view, setup().mount})
        apply(preset.position);
    else
        open(scene, preset.position);
}

void Session::dewarp(const std::uint8_t* input, std::uint8_t* output)
{
    if (const auto next = steps_.next()) dewarper_->step(next->view, next->step);
    dewarper_->dewarp(input, output);
    changed_ = false;
}

} // namespace lumofe::viewer
