// What keys and mouse mean.
#include "Interaction.h"

#include <algorithm>
#include <cmath>

namespace lumofe::viewer {
namespace {

constexpr View kLayouts[] = {View::single, View::quad, View::ptz360, View::half180};
constexpr int kSmallMove = 1, kLargeMove = 10; // pixels of the raw picture
constexpr double kClickRoom = 4;               // window pixels that a click may move

} // namespace

Interaction::Interaction(Commands& commands, const Stage& stage)
    : commands_(commands), stage_(stage), circle_(stage.circle)
{
}

void Interaction::setStage(const Stage& stage)
{
    if (stage.view != stage_.view) {
        selected_ = 1;
        dragged_.reset();
    }
    stage_ = stage;
    select();
}

void Interaction::press(const KeyPress& key)
{
    if (key.key == Key::q) {
        commands_.quit();
        return;
    }
    switch (mode_) {
    case Mode::views:
        pressInViews(key);
        break;
    case Mode::circle:
        pressInCircle(key);
        break;
    case Mode::presets:
        pressInPresets(key);
        break;
    }
}

void Interaction::pressInViews(const KeyPress& key)
{
    switch (key.key) {
    case Key::digit:
        if (key.digit >= 1 && key.digit <= int(std::size(kLayouts)))
            commands_.showLayout(kLayouts[key.digit - 1]);
        break;
    case Key::m:
        commands_.nextMount();
        break;
    case Key::r:
        showsRaw_ = !showsRaw_;
        break;
    case Key::h:
        showsHelp_ = !showsHelp_;
        break;
    case Key::space:
        paused_ = !paused_;
        break;
    case Key::c:
        mode_ = Mode::circle;
        circle_ = stage_.circle;
        dragged_.reset();
        break;
    case Key::p:
        mode_ = Mode::presets;
        page_ = 0;
        dragged_.reset();
        break;
    case Key::s:
        commands_.savePicture();
        break;
    case Key::v:
        commands_.toggleRecording();
        break;
    case Key::escape:
        commands_.quit();
        break;
    default:
        break;
    }
}

void Interaction::pressInCircle(const KeyPress& key)
{
    const int by = key.shift ? kLargeMove : kSmallMove;
    switch (key.key) {
    case Key::left:
        circle_.x -= by;
        break;
    case Key::right:
        circle_.x += by;
        break;
    case Key::up:
        circle_.y -= by;
        break;
    case Key::down:
        circle_.y += by;
        break;
    case Key::plus:
        circle_.radius += by;
        break;
    case Key::minus:
        circle_.radius -= by;
        break;
    case Key::enter:
        mode_ = Mode::views;
        commands_.keepCircle(circle_);
        break;
    case Key::escape:
        mode_ = Mode::views;
        circle_ = stage_.circle;
        break;
    default:
        break;
    }
    circle_.x = std::clamp(circle_.x, 0, stage_.raw.width - 1);
    circle_.y = std::clamp(circle_.y, 0, stage_.raw.height - 1);
    circle_.radius =
        std::clamp(circle_.radius, kSmallestRadius, std::max(stage_.raw.width, stage_.raw.height));
}

void Interaction::pressInPresets(const KeyPress& key)
{
    const int index = firstPreset() + key.digit - 1;
    switch (key.key) {
    case Key::digit:
        if (key.digit < 1 || index >= stage_.presets) return;
        mode_ = Mode::views;
        commands_.recallPreset(index);
        break;
    case Key::p:
        mode_ = Mode::views;
        commands_.savePreset();
        break;
    case Key::left:
        turnPage(-1);
        break;
    case Key::right:
        turnPage(1);
        break;
    case Key::escape:
        mode_ = Mode::views;
        break;
    default:
        break;
    }
}

void Interaction::turnPage(int by)
{
    const int last = std::max(0, (stage_.presets - 1) / kPresetsOnPage);
    page_ = std::clamp(page_ + by, 0, last);
}

Rect Interaction::pictureArea() const
{
    return fitted(stage_.picture,
                  {0, 0, double(stage_.window.width), double(stage_.window.height)});
}

Rect Interaction::rawArea() const
{
    if (mode_ != Mode::circle) return insetArea(stage_.raw, stage_.window);
    return fitted(stage_.raw, {0, 0, double(stage_.window.width), double(stage_.window.height)});
}

bool Interaction::onInset(Point p) const
{
    return showsRaw_ && rawArea().contains(p);
}

void Interaction::select()
{
    if (mode_ == Mode::circle || !pointer_ || dragged_ || onInset(*pointer_)) return;
    if (const int view = viewAt(stage_.view, pictureArea(), *pointer_)) selected_ = view;
}

void Interaction::pressButton(Point p, int clicks)
{
    if (mode_ == Mode::circle) return;
    movePointer(p);
    if (onInset(p)) {
        commands_.aimAt(selected_, rawPixelAt(stage_.raw, rawArea(), p));
        return;
    }
    // Two short drags one after the other are no double click.
    const bool twice = clicks == 2 && !stroke_;
    pressed_ = p;
    stroke_ = false;
    const int view = viewAt(stage_.view, pictureArea(), p);
    if (view == 0) return;
    if (twice)
        commands_.reset(view);
    else
        dragged_ = view;
}

void Interaction::movePointer(Point p)
{
    if (dragged_ && pointer_) {
        stroke_ = stroke_ || std::hypot(p.x - pressed_.x, p.y - pressed_.y) > kClickRoom;
        const Rect area = viewArea(stage_.view, *dragged_, pictureArea());
        commands_.drag(*dragged_, (p.x - pointer_->x) / area.width,
                       (p.y - pointer_->y) / area.height);
    }
    pointer_ = p;
    select();
}

void Interaction::turnWheel(double notches)
{
    if (mode_ == Mode::circle || !pointer_ || onInset(*pointer_)) return;
    if (const int view = viewAt(stage_.view, pictureArea(), *pointer_))
        commands_.zoom(view, notches);
}

} // namespace lumofe::viewer
