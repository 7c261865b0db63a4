// What keys and mouse mean, and what of the window's state they change. Knows no window system.
#ifndef LUMOFE_VIEWER_INTERACTION_H
#define LUMOFE_VIEWER_INTERACTION_H

#include "Commands.h"

#include <optional>

namespace lumofe::viewer {

enum class Key {
    other,
    digit,
    c, // letters in either case
    h,
    m,
    p,
    q,
    r,
    s,
    v,
    space,
    escape,
    enter,
    plus,
    minus,
    left,
    right,
    up,
    down
};

struct KeyPress {
    Key key = Key::other;
    int digit = 0; // of Key::digit, 0 to 9
    bool shift = false;
};

// What is on show.
struct Stage {
    Size window;
    Size raw;
    Size picture; // that the library makes
    View view = View::single;
    Circle circle;
    int presets = 0;
};

inline constexpr int kPresetsOnPage = 9;

class Interaction {
public:
    // views: the keys show and steer the picture. circle: they adjust the circle, over the raw
    // picture. presets: they choose from the list.
    enum class Mode { views, circle, presets };

    // The commands must outlive it.
    Interaction(Commands& commands, const Stage& stage);

    // To be told whenever something of it changes.
    void setStage(const Stage& stage);

    void press(const KeyPress& key);
    // The left button; clicks: 2 for the second press of a double click.
    void pressButton(Point p, int clicks);
    void movePointer(Point p);
    void releaseButton() { dragged_.reset(); }
    // Where the pointer is last.
    void turnWheel(double notches);

    Mode mode() const { return mode_; }
    bool showsRaw() const { return showsRaw_; }
    bool showsHelp() const { return showsHelp_; }
    bool paused() const { return paused_; }
    // The view under the pointer last, 1 and up.
    int selected() const { return selected_; }
    // The circle that is adjusted.
    const Circle& circle() const { return circle_; }
    // The first of the presets on show.
    int firstPreset() const { return page_ * kPresetsOnPage; }

    // Where the layout's picture and the raw one are drawn.
    Rect pictureArea() const;
    Rect rawArea() const;

private:
    void pressInViews(const KeyPress& key);
    void pressInCircle(const KeyPress& key);
    void pressInPresets(const KeyPress& key);
    void turnPage(int by);
    bool onInset(Point p) const;
    void select();

    Commands& commands_;
    Stage stage_;
    Mode mode_ = Mode::views;
    bool showsRaw_ = false;
    bool showsHelp_ = false;
    bool paused_ = false;
    int selected_ = 1;
    int page_ = 0;
    Circle circle_;
    std::optional<Point> pointer_;
    std::optional<int> dragged_; // view
    Point pressed_;              // where the button was pressed last
    bool stroke_ = false;        // whether the pointer went away from there then
};

} // namespace lumofe::viewer

#endif
