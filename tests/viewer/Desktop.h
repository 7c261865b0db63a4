// A private X server, and hands on its keyboard and mouse.
#ifndef LUMOFE_TESTS_VIEWER_DESKTOP_H
#define LUMOFE_TESTS_VIEWER_DESKTOP_H

#include "media/Image.h"

#include <memory>
#include <string>

namespace lumofe::test {

// Points are pixels of the window that was found last, from its top left corner.
class Desktop {
public:
    // Starts Xvfb and has the programs that are started from now on show their windows there. At
    // most one at a time. Throws when it does not start.
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // Looks for a window whose title begins so, and gives it the keyboard. False when there is
    // none.
    bool findWindow(const std::string& title);
    Size windowSize() const;

    // key: X11's name: "q", "Escape", "plus".
    void press(const std::string& key, bool shift = false);
    void move(int x, int y);
    void pressButton();
    void releaseButton();
    void click();
    // Notches; positive: away from the user.
    void turnWheel(int notches);
    void closeWindow();
    void resizeWindow(Size size);

    // What is on the screen in the window's place.
    Image picture() const;
    // A row of it.
    Image row(int y) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace lumofe::test

#endif
