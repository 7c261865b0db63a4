// A running lumofe-view, and what to expect on the screen.
#include "ViewerRun.h"

#include "RenderPlan.h"
#include "media/Drawing.h"
#include "scene/Camera.h"
#include "scene/FisheyeLens.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>
#include <thread>

namespace lumofe::test {
namespace {

using namespace std::chrono_literals;

constexpr double kAlike = 28; // dB; the marked view's frame costs some, other positions much more
constexpr int kTextRows = 32; // at the top and the bottom of a small window
constexpr int kBright = 180;  // of letters
constexpr const char* kTitle = "lumofe-view";
constexpr int kMargin = 8; // around panels

// The window of the run before may still be there.
std::vector<std::string> commandOf(Desktop& desktop, std::vector<std::string> arguments)
{
    if (!eventually([&] { return !desktop.findWindow(kTitle); }))
        throw std::runtime_error("another viewer is still there");
    arguments.insert(arguments.begin(), LUMOFE_TOOL);
    return arguments;
}

// SDL may make its window anew before it draws the first time.
bool isDrawn(const Desktop& desktop)
{
    // Not the middle, which the 180 layout leaves black.
    const Image row = desktop.row(desktop.windowSize().height * 3 / 8);
    return std::ranges::any_of(row.bytes, [](std::uint8_t byte) { return byte > 0; });
}

Image withoutText(const Image& image)
{
    Image part({image.size.width, image.size.height - 2 * kTextRows});
    paste(part, image, 0, -kTextRows);
    return part;
}

} // namespace

bool eventually(const std::function<bool()>& holds)
{
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (std::chrono::steady_clock::now() < deadline) {
        if (holds()) return true;
        std::this_thread::sleep_for(2ms);
    }
    return holds();
}

ViewerRun::ViewerRun(Desktop& desktop, std::vector<std::string> arguments)
    : desktop_(desktop), process_(commandOf(desktop, std::move(arguments)), {})
{
    if (!eventually([&] { return desktop.findWindow(kTitle) && isDrawn(desktop); })) {
        process_.signal(9);
        process_.wait();
        throw std::runtime_error("no window: " + errors());
    }
}

bool ViewerRun::shows(const Image& expected) const
{
    const Image seen = desktop_.picture();
    return seen.size == expected.size && psnr(withoutText(seen), withoutText(expected)) > kAlike;
}

bool ViewerRun::comesToShow(const Image& expected) const
{
    return eventually([&] { return shows(expected); });
}

bool ViewerRun::comesToShow(viewer::Window::Place place, const viewer::Lines& lines) const
{
    const Size window = desktop_.windowSize();
    const Image panel = viewer::textPanel(lines, 1, window.width - 2 * kMargin);
    int x = kMargin, y = kMargin;
    if (place == viewer::Window::Place::bottomLeft) y = window.height - kMargin - panel.size.height;
    if (place == viewer::Window::Place::middle) {
        x = (window.width - panel.size.width) / 2;
        y = (window.height - panel.size.height) / 2;
    }
    return eventually([&] {
        const Image seen = desktop_.picture();
        for (int row = 0; row < panel.size.height; ++row)
            for (int column = 0; column < panel.size.width; ++column) {
                const bool letter = panel.pixel(column, row)[1] > kBright;
                const bool bright = seen.pixel(x + column, y + row)[1] > kBright;
                if (letter != bright) return false;
            }
        return true;
    });
}

const Image& smallScene(Mount mount)
{
    static std::map<Mount, Image> scenes;
    Image& image = scenes[mount];
    if (image.bytes.empty()) image = renderFisheye(Room(), cameraFor(mount), 640);
    return image;
}

DewarperSetup setupOf(const Shown& shown)
{
    DewarperSetup setup;
    setup.input = shown.input.size;
    setup.output = defaultOutputSize(shown.view, shown.mount, setup.input);
    setup.circle = shown.circle.value_or(centredCircle(setup.input));
    setup.view = shown.view;
    setup.mount = shown.mount;
    if (shown.position) setup.panoOffset = shown.position->panoOffset;
    return setup;
}

Image dewarped(const Shown& shown)
{
    Dewarper dewarper(setupOf(shown));
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(shown.view).views; ++number)
        aims.push_back(defaultAim(shown.view, shown.mount, number));
    dewarper.aim(shown.position ? shown.position->views : aims);
    const Image before = dewarper.dewarp(shown.input);
    if (shown.step.zoom == 0) return before;
    dewarper.step(1, shown.step);
    return dewarper.dewarp(shown.input);
}

} // namespace lumofe::test
