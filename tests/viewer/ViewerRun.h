// A running lumofe-view, and what to expect on the screen.
#ifndef LUMOFE_TESTS_VIEWER_RUN_H
#define LUMOFE_TESTS_VIEWER_RUN_H

#include "Desktop.h"
#include "Dewarper.h"
#include "Texts.h"
#include "ToolTestSupport.h"
#include "Window.h"
#include "camera/CameraFile.h"
#include "video/ChildProcess.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumofe::test {

// Asks again and again, for ten seconds at most. Returns the last answer.
bool eventually(const std::function<bool()>& holds);

class ViewerRun {
public:
    // Starts it and waits for its first picture, which must not be all black. Throws when there is
    // none.
    ViewerRun(Desktop& desktop, std::vector<std::string> arguments);

    // Whether a picture comes to be seen that is much like the expected one, apart from the lines
    // of text at the window's top and bottom.
    bool comesToShow(const Image& expected) const;
    bool shows(const Image& expected) const;

    // Whether those lines are seen there. `window`: the screen's content.
    bool comesToShow(viewer::Window::Place place, const viewer::Lines& lines) const;

    // Waits for its end and returns its exit status.
    int wait() { return process_.wait(10000); }
    void signal(int number) const { process_.signal(number); }
    const std::string& errors() const { return process_.log(); }

    Desktop& desktop() const { return desktop_; }

private:
    Desktop& desktop_;
    ChildProcess process_;
};

// 640 x 640 pixels of the test scene, drawn once for each mounting.
const Image& smallScene(Mount mount = Mount::ceiling);

// What the viewer shows of that input; no position: the usual one.
struct Shown {
    View view = View::single;
    Mount mount = Mount::ceiling;
    std::optional<Position> position = {};
    std::optional<Circle> circle = {};
    Step step = {}; // of view 1, after a frame
    Image input = smallScene();
};
DewarperSetup setupOf(const Shown& shown);
Image dewarped(const Shown& shown);

} // namespace lumofe::test

#endif
