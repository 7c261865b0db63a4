// The window and what is drawn in it, by way of SDL.
#ifndef LUMOFE_VIEWER_WINDOW_H
#define LUMOFE_VIEWER_WINDOW_H

#include "FrameQueue.h"
#include "Geometry.h"
#include "Texts.h"
#include "video/VideoFormat.h"

#include <SDL.h>
#include <array>
#include <memory>
#include <string>

namespace lumofe::viewer {

class Window {
public:
    // Opens a window for pictures of that size, smaller where the screen is. format: that of the
    // input, whose colours count. Throws Error when there is no screen.
    Window(const std::string& title, Size picture, const VideoFormat& format);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    Size size() const;
    void setTitle(const std::string& title);

    // Takes over NV12 frames; they are drawn until others come.
    void setPicture(const Frame& frame, Size size) { picture_.set(*renderer_, frame, size); }
    void setRaw(const Frame& frame, Size size) { raw_.set(*renderer_, frame, size); }

    // Each draws over what was drawn since clear(); nothing is seen before present().
    void clear();
    void drawPicture(const Rect& area) { picture_.draw(*renderer_, area); }
    void drawRaw(const Rect& area);
    void markView(const Rect& area);
    // The circle of a raw picture of that size that fills the area.
    void drawCircle(const Circle& circle, Size raw, const Rect& area);
    enum class Place { topLeft, bottomLeft, middle };
    void drawPanel(Place place, const Lines& lines);
    void present() { SDL_RenderPresent(renderer_.get()); }

private:
    struct Closer {
        void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
        void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
        void operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }
    };
    using Texture = std::unique_ptr<SDL_Texture, Closer>;

    // A streaming NV12 texture, which frames are copied to once.
    class FrameTexture {
    public:
        void set(SDL_Renderer& renderer, const Frame& frame, Size size);
        void draw(SDL_Renderer& renderer, const Rect& area) const;

    private:
        Texture texture_;
        Size size_;
    };

    // Lettering is drawn anew only when it changes.
    struct Panel {
        Lines lines;
        int scale = 0;
        int room = 0; // pixels of width that there were for it
        Size size;
        Texture texture;
    };

    struct System {
        System();
        ~System() { SDL_Quit(); }
    };

    void renew(Panel& panel, const Lines& lines, int scale, int width);

    System system_;
    std::unique_ptr<SDL_Window, Closer> window_;
    std::unique_ptr<SDL_Renderer, Closer> renderer_;
    FrameTexture picture_, raw_;
    std::array<Panel, 3> panels_; // one for each Place
};

// How the colours of NV12 pictures of that input look, as 24-bit pixels.
Image screenColours(const Frame& frame, Size size);

} // namespace lumofe::viewer

#endif
