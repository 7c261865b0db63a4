// A private X server, and hands on its keyboard and mouse.
#include "Desktop.h"

#include "video/ChildProcess.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <stdexcept>

namespace lumofe::test {
namespace {

constexpr int kPatience = 2000; // milliseconds

// What Xvfb writes when it is ready.
std::string displayNumber(const ChildProcess& server)
{
    std::string number;
    while (number.find('\n') == std::string::npos) {
        pollfd waiting{server.output(), POLLIN, 0};
        char c = 0;
        if (poll(&waiting, 1, 5 * kPatience) != 1 || read(server.output(), &c, 1) != 1)
            throw std::runtime_error("Xvfb does not start");
        number += c;
    }
    return number.substr(0, number.find('\n'));
}

std::string titleOf(Display* display, Window window)
{
    char* name = nullptr;
    if (!XFetchName(display, window, &name)) return {};
    const std::string title = name;
    XFree(name);
    return title;
}

// Windows come and go while they are looked at.
int ignoreError(Display*, XErrorEvent*)
{
    return 0;
}

} // namespace

struct Desktop::Impl {
    ChildProcess server{
        {"Xvfb", "-displayfd", "1", "-screen", "0", "2200x1300x24", "-nolisten", "tcp", "-noreset"},
        {.output = true}};
    Display* display = nullptr;
    Window window = 0;
    int x = 0, y = 0;
    Size size;

    Impl()
    {
        const std::string name = ":" + displayNumber(server);
        setenv("DISPLAY", name.c_str(), 1);
        setenv("SDL_VIDEODRIVER", "x11", 1);
        setenv("SDL_RENDER_DRIVER", "software", 1);
        XSetErrorHandler(ignoreError);
        display = XOpenDisplay(name.c_str());
        if (!display) throw std::runtime_error("Xvfb cannot be reached");
    }

    ~Impl()
    {
        XCloseDisplay(display);
        server.signal(SIGTERM);
        server.wait(kPatience);
    }

    void key(KeySym symbol, bool down)
    {
        XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), down, CurrentTime);
    }

    void button(unsigned number, bool down)
    {
        XTestFakeButtonEvent(display, number, down, CurrentTime);
        XFlush(display);
    }

    void measure()
    {
        XWindowAttributes attributes{};
        Window child = 0;
        XGetWindowAttributes(display, window, &attributes);
        XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &x, &y, &child);
        size = {attributes.width, attributes.height};
    }

    Image grab(int top, int height)
    {
        Image image({size.width, height});
        XImage* grabbed = XGetImage(display, DefaultRootWindow(display), x, y + top,
                                    unsigned(size.width), unsigned(height), AllPlanes, ZPixmap);
        if (!grabbed) return image;
        for (int row = 0; row < height; ++row) {
            for (int column = 0; column < size.width; ++column) {
                const unsigned long rgb = XGetPixel(grabbed, column, row);
                std::uint8_t* p = image.pixel(column, row);
                p[0] = std::uint8_t(rgb >> 16);
                p[1] = std::uint8_t(rgb >> 8);
                p[2] = std::uint8_t(rgb);
            }
        }
        XDestroyImage(grabbed);
        return image;
    }
};

Desktop::Desktop() : impl_(std::make_unique<Impl>()) {}

Desktop::~Desktop() = default;

bool Desktop::findWindow(const std::string& title)
{
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XQueryTree(impl_->display, DefaultRootWindow(impl_->display), &root, &parent, &children,
               &count);
    impl_->window = 0;
    for (unsigned i = 0; i < count; ++i) {
        XWindowAttributes attributes{};
        if (titleOf(impl_->display, children[i]).starts_with(title) &&
            XGetWindowAttributes(impl_->display, children[i], &attributes) &&
            attributes.map_state == IsViewable)
            impl_->window = children[i];
    }
    if (children) XFree(children);
    if (impl_->window == 0) return false;
    XSetInputFocus(impl_->display, impl_->window, RevertToParent, CurrentTime);
    impl_->measure();
    return true;
}

Size Desktop::windowSize() const
{
    return impl_->size;
}

void Desktop::press(const std::string& key, bool shift)
{
    const KeySym symbol = XStringToKeysym(key.c_str());
    if (shift) impl_->key(XK_Shift_L, true);
    impl_->key(symbol, true);
    impl_->key(symbol, false);
    if (shift) impl_->key(XK_Shift_L, false);
    XFlush(impl_->display);
}

void Desktop::move(int x, int y)
{
    XTestFakeMotionEvent(impl_->display, -1, impl_->x + x, impl_->y + y, CurrentTime);
    XFlush(impl_->display);
}

void Desktop::pressButton()
{
    impl_->button(1, true);
}

void Desktop::releaseButton()
{
    impl_->button(1, false);
}

void Desktop::click()
{
    pressButton();
    releaseButton();
}

void Desktop::turnWheel(int notches)
{
    const unsigned button = notches > 0 ? 4 : 5;
    for (int i = 0; i < std::abs(notches); ++i) {
        impl_->button(button, true);
        impl_->button(button, false);
    }
}

void Desktop::closeWindow()
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = impl_->window;
    event.xclient.message_type = XInternAtom(impl_->display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(impl_->display, "WM_DELETE_WINDOW", False));
    XSendEvent(impl_->display, impl_->window, False, NoEventMask, &event);
    XFlush(impl_->display);
}

void Desktop::resizeWindow(Size size)
{
    XResizeWindow(impl_->display, impl_->window, unsigned(size.width), unsigned(size.height));
    XSync(impl_->display, False);
    impl_->measure();
}

Image Desktop::picture() const
{
    return impl_->grab(0, impl_->size.height);
}

Image Desktop::row(int y) const
{
    return impl_->grab(y, 1);
}

} // namespace lumofe::test
