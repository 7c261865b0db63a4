// The window and what is drawn in it, by way of SDL.
#include "Window.h"

#include "Error.h"
#include "media/Y4m.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string_view>
#include <vector>

namespace lumofe::viewer {
namespace {

constexpr double kScreenShare = 0.9; // that a new window takes at most
constexpr Size kSmallestWindow{320, 240};
constexpr int kLargeLetters = 600; // pixels of the window's height from which they are doubled
constexpr Uint8 kPanelOpacity = 215;
constexpr int kPanelMargin = 8;
constexpr int kLargestStandardHeight = 576; // of television before high definition

[[noreturn]] void fail(const std::string& what)
{
    throw Error(what + " (" + SDL_GetError() + "); start it on a desktop, with DISPLAY set");
}

SDL_Rect sdlRect(const Rect& r)
{
    return {int(r.x), int(r.y), int(r.width), int(r.height)};
}

// Untagged video has the matrix that is usual at its size.
SDL_YUV_CONVERSION_MODE conversionOf(const VideoFormat& format)
{
    const Colours& colours = format.colours;
    if (colours.range == "pc" || tagValue(format.tags, "XCOLORRANGE=") == "FULL")
        return SDL_YUV_CONVERSION_JPEG;
    if (colours.space == "bt709") return SDL_YUV_CONVERSION_BT709;
    const bool tagged = !colours.space.empty() && colours.space != "unknown";
    return !tagged && format.size.height > kLargestStandardHeight ? SDL_YUV_CONVERSION_BT709
                                                                  : SDL_YUV_CONVERSION_BT601;
}

Size initialSize(Size picture)
{
    SDL_Rect screen{0, 0, picture.width, picture.height};
    SDL_GetDisplayUsableBounds(0, &screen);
    const double shrink = std::min(
        {1.0, kScreenShare * screen.w / picture.width, kScreenShare * screen.h / picture.height});
    return {std::max(kSmallestWindow.width, int(picture.width * shrink)),
            std::max(kSmallestWindow.height, int(picture.height * shrink))};
}

} // namespace

Window::System::System()
{
    // Signals are taken note of elsewhere.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
    // What the processor draws need not take a detour by the graphics processor.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    if (SDL_Init(SDL_INIT_VIDEO) != 0) fail("no window can be opened");
    // What SDL takes without a display, unless it is asked for.
    const std::string_view driver = SDL_GetCurrentVideoDriver();
    if (!std::getenv("SDL_VIDEODRIVER") &&
        (driver == "offscreen" || driver == "dummy" || driver == "evdev")) {
        SDL_SetError("there is no display");
        fail("no window can be opened");
    }
}

Window::Window(const std::string& title, Size picture, const VideoFormat& format)
{
    SDL_SetYUVConversionMode(conversionOf(format));
    const Size size = initialSize(picture);
    window_.reset(SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                                   size.width, size.height, SDL_WINDOW_RESIZABLE));
    if (!window_) fail("no window can be opened");
    SDL_StopTextInput(); // input methods take keys away
    SDL_SetWindowMinimumSize(window_.get(), kSmallestWindow.width, kSmallestWindow.height);
    renderer_.reset(SDL_CreateRenderer(window_.get(), -1, SDL_RENDERER_PRESENTVSYNC));
    if (!renderer_) fail("nothing can be drawn in the window");
    // Without a graphics processor there is no screen to be in step with, only a delay.
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(renderer_.get(), &info);
    if (info.flags & SDL_RENDERER_SOFTWARE) SDL_RenderSetVSync(renderer_.get(), 0);
    SDL_SetRenderDrawBlendMode(renderer_.get(), SDL_BLENDMODE_BLEND);
}

Window::~Window() = default;

Size Window::size() const
{
    Size size;
    SDL_GetRendererOutputSize(renderer_.get(), &size.width, &size.height);
    return size;
}

void Window::setTitle(const std::string& title)
{
    SDL_SetWindowTitle(window_.get(), title.c_str());
}

void Window::FrameTexture::set(SDL_Renderer& renderer, const Frame& frame, Size size)
{
    if (!texture_ || size != size_) {
        texture_.reset(SDL_CreateTexture(&renderer, SDL_PIXELFORMAT_NV12,
                                         SDL_TEXTUREACCESS_STREAMING, size.width, size.height));
        if (!texture_) fail("the screen takes no picture of this size");
        size_ = size;
    }
    const Uint8* luma = frame.data();
    const Uint8* chroma = luma + Frame420::lumaBytes(size);
    SDL_UpdateNVTexture(texture_.get(), nullptr, luma, size.width, chroma, size.width);
}

void Window::FrameTexture::draw(SDL_Renderer& renderer, const Rect& area) const
{
    const SDL_Rect target = sdlRect(area);
    if (texture_) SDL_RenderCopy(&renderer, texture_.get(), nullptr, &target);
}

void Window::clear()
{
    SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, 255);
    SDL_RenderClear(renderer_.get());
}

void Window::drawRaw(const Rect& area)
{
    raw_.draw(*renderer_, area);
    const SDL_Rect frame = sdlRect({area.x - 1, area.y - 1, area.width + 2, area.height + 2});
    SDL_SetRenderDrawColor(renderer_.get(), 200, 200, 200, 255);
    SDL_RenderDrawRect(renderer_.get(), &frame);
}

void Window::markView(const Rect& area)
{
    SDL_SetRenderDrawColor(renderer_.get(), 255, 210, 60, 150);
    for (double inset : {0, 1}) {
        const SDL_Rect frame = sdlRect(
            {area.x + inset, area.y + inset, area.width - 2 * inset, area.height - 2 * inset});
        SDL_RenderDrawRect(renderer_.get(), &frame);
    }
}

void Window::drawCircle(const Circle& circle, Size raw, const Rect& area)
{
    constexpr int kCorners = 360;
    constexpr float kCross = 8; // half a side
    const double across = area.width / raw.width, down = area.height / raw.height;
    const double x = area.x + (circle.x + 0.5) * across, y = area.y + (circle.y + 0.5) * down;
    SDL_SetRenderDrawColor(renderer_.get(), 255, 60, 60, 255);
    // Two lines beside one another, to be seen on any ground.
    for (double radius : {circle.radius - 0.5 / across, circle.radius + 0.5 / across}) {
        std::vector<SDL_FPoint> line;
        for (int i = 0; i <= kCorners; ++i) {
            const double angle = 2 * std::numbers::pi * i / kCorners;
            line.push_back({float(x + radius * across * std::cos(angle)),
                            float(y + radius * down * std::sin(angle))});
        }
        SDL_RenderDrawLinesF(renderer_.get(), line.data(), int(line.size()));
    }
    SDL_RenderDrawLineF(renderer_.get(), float(x) - kCross, float(y), float(x) + kCross, float(y));
    SDL_RenderDrawLineF(renderer_.get(), float(x), float(y) - kCross, float(x), float(y) + kCross);
}

void Window::renew(Panel& panel, const Lines& lines, int scale, int width)
{
    if (panel.texture && panel.lines == lines && panel.scale == scale && panel.room == width)
        return;
    const Image image = textPanel(lines, scale, width);
    panel.texture.reset(SDL_CreateTexture(renderer_.get(), SDL_PIXELFORMAT_RGB24,
                                          SDL_TEXTUREACCESS_STATIC, image.size.width,
                                          image.size.height));
    if (!panel.texture) fail("no text can be drawn");
    SDL_UpdateTexture(panel.texture.get(), nullptr, image.bytes.data(), 3 * image.size.width);
    SDL_SetTextureBlendMode(panel.texture.get(), SDL_BLENDMODE_BLEND);
    SDL_SetTextureAlphaMod(panel.texture.get(), kPanelOpacity);
    panel.lines = lines;
    panel.scale = scale;
    panel.room = width;
    panel.size = image.size;
}

void Window::drawPanel(Place place, const Lines& lines)
{
    const Size window = size();
    Panel& panel = panels_[std::size_t(place)];
    renew(panel, lines, window.height >= kLargeLetters ? 2 : 1, window.width - 2 * kPanelMargin);
    SDL_Rect target{kPanelMargin, kPanelMargin, panel.size.width, panel.size.height};
    if (place == Place::bottomLeft) target.y = window.height - kPanelMargin - panel.size.height;
    if (place == Place::middle) {
        target.x = (window.width - panel.size.width) / 2;
        target.y = (window.height - panel.size.height) / 2;
    }
    SDL_RenderCopy(renderer_.get(), panel.texture.get(), nullptr, &target);
}

Image screenColours(const Frame& frame, Size size)
{
    Image image(size);
    if (SDL_ConvertPixels(size.width, size.height, SDL_PIXELFORMAT_NV12, frame.data(), size.width,
                          SDL_PIXELFORMAT_RGB24, image.bytes.data(), 3 * size.width) != 0)
        throw Error(std::string("the picture cannot be converted (") + SDL_GetError() +
                    "); choose another --size");
    return image;
}

} // namespace lumofe::viewer
