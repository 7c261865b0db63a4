// One camera slot of the library, for a fixed circle, mounting, size and format.
#ifndef LUMOFE_TOOLS_DEWARPER_H
#define LUMOFE_TOOLS_DEWARPER_H

#include "Layout.h"
#include "Slot.h"
#include "media/Image.h"

#include <LumoFESDK.h>
#include <optional>
#include <span>
#include <vector>

namespace lumofe {

// The fisheye circle in the input, pixels: x from the left, y from the top.
struct Circle {
    int x = 0;
    int y = 0;
    int radius = 0;
    bool operator==(const Circle&) const = default;
};

inline constexpr int kSmallestRadius = 16, kLargestRadius = 4096;

struct DewarperSetup {
    Size input; // even
    Size output;
    Circle circle;
    View view = View::single;
    Mount mount = Mount::ceiling;
    PixelFormat format = PixelFormat::nv12; // what the library is fed
    int panoOffset = 0;                     // 180 only: turns the unwrap, degrees clockwise
    bool upright = true;                    // turns over what the library leaves upside down
};

// A steering step, as from a joystick or mouse, in the units and directions of FE_EventParams. The
// library takes the larger one of pan and tilt only.
struct Step {
    int pan = 0;
    int tilt = 0;
    int zoom = 0;
};

// Occupies one of the library's sixteen slots. Every failure of the library becomes an Error.
// Calls for one object must not overlap; different objects may be used by different threads.
class Dewarper {
public:
    // Throws Error when no slot is free, too.
    explicit Dewarper(const DewarperSetup& setup);

    const DewarperSetup& setup() const { return setup_; }

    // Steers the layout's views, one aim for each; holds from the next frame on. The aims must be
    // in the mounting's range. On ceiling and floor a pan of 0 looks to the top of the raw picture,
    // in the single view 22.5 degrees clockwise of it.
    void aim(std::span<const Aim> aims);
    void aim(const Aim& aim) { this->aim({&aim, 1}); }

    // Where the views look, as aim() takes it: in steps of 0.25 degrees of pan and, on ceiling and
    // floor, 2 of tilt. The offset is always given, so that the same views come back.
    std::vector<Aim> aims() const;

    // Moves view `number`, 1 and up, with the next frame; one view a frame.
    void step(int number, const Step& step);

    // Turns the 180 layout's unwrap of ceiling and floor to so many degrees clockwise.
    void turnPanorama(int degrees);

    // Moves the fisheye circle; the views keep their positions.
    void setCircle(const Circle& circle);

    // Where a pixel of the raw picture lies: pan and tilt as aim() takes them. On ceiling and floor
    // the layout's own pan: see aim().
    Aim directionOf(int x, int y) const;

    // The spot of the raw picture that is in the middle of a view that is aimed so, and the aim
    // with its offset. Nothing where the layout has no views, or shows nothing there. The views
    // keep their aims; the library renders a frame of its own for it.
    struct Middle {
        float x;
        float y;
        Aim aim;
    };
    std::optional<Middle> middleOf(const Aim& aim);

    // How a view of that zoom, percent, shows a spot of the raw picture in its middle, or as near
    // to it as the library moves the view. Costs some frames of the library's time.
    Aim aimAt(int x, int y, double zoom);

    // Where the last frame's output shows the input: x and y in input pixels, the middle of the
    // first one being 0, 0, for each output pixel in turn; not a number where it shows nothing.
    // Single view only. Throws Error before the first frame, and after setCircle(), middleOf() and
    // aimAt() until the next.
    std::vector<float> sourceMap() const;

    // Bytes of a frame in the set-up's format, without padding.
    std::size_t inputBytes() const { return in_.size(); }
    std::size_t outputBytes() const { return out_.size(); }

    // Dewarps a frame of inputBytes() into one of outputBytes(), laid out as in LumoFESDK.h, top
    // row first. Of RGB, the input's last row is not used, and the output has bytes 0 and 2 of each
    // pixel exchanged.
    void dewarp(const std::uint8_t* input, std::uint8_t* output);

    // Dewarps a picture of the set-up's input size. Converts to and from the fed format as needed.
    Image dewarp(const Image& input);
    Frame420 dewarp(const Frame420& input);

    // Has the library render the last picture again. Returns the milliseconds it took.
    double renderAgain();

private:
    enum class RowOrder { topFirst, bottomFirst }; // of packed pictures

    int slot() const { return slot_.number(); }
    void open();
    FE_CurPosParams position() const;
    void update(int number, const Step& step);
    void steer(const Aim& aim, int number);
    Aim aimedByOffset(Aim aim, int x, int y);
    Aim aimedOnWall(Aim aim, int x, int y);
    bool turnsOver() const;
    void feed(const Image& input);
    void feed(const Frame420& input);
    void process(const std::uint8_t* in, std::uint8_t* out, RowOrder order);
    void turnUpright(std::uint8_t* out) const;
    Image resultRgb() const;
    Frame420 result420() const;

    Slot slot_;
    DewarperSetup setup_;
    mutable IFishEye fishEye_;     // has no state of its own
    std::vector<std::uint8_t> in_; // in the library's layout
    std::vector<std::uint8_t> out_;
    bool aimed_ = false;    // since the last frame
    bool stepped_ = false;  // likewise
    bool rendered_ = false; // a frame, so that there is a table
};

} // namespace lumofe

#endif
