// One camera slot of the library, for a fixed circle, mounting, size and format.
#ifndef LUMOFE_TOOLS_DEWARPER_H
#define LUMOFE_TOOLS_DEWARPER_H

#include "Layout.h"
#include "media/Image.h"

#include <LumoFESDK.h>
#include <span>
#include <vector>

namespace lumofe {

// The fisheye circle in the input, pixels: x from the left, y from the top.
struct Circle {
    int x = 0;
    int y = 0;
    int radius = 0;
};

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

// Occupies slot 0: at most one object at a time. Every failure of the library becomes an Error.
class Dewarper {
public:
    explicit Dewarper(const DewarperSetup& setup);

    // Steers the layout's views, one aim for each; holds from the next frame on. The aims must be
    // in the mounting's range. On ceiling and floor a pan of 0 looks to the top of the raw picture,
    // in the single view 22.5 degrees clockwise of it.
    void aim(std::span<const Aim> aims);
    void aim(const Aim& aim) { this->aim({&aim, 1}); }

    // Dewarps a picture of the set-up's input size. Converts to and from the fed format as needed.
    Image dewarp(const Image& input);
    Frame420 dewarp(const Frame420& input);

    // Has the library render the last picture again. Returns the milliseconds it took.
    double renderAgain();

private:
    struct Slot {
        Slot() = default;
        ~Slot();
        Slot(const Slot&) = delete;
        Slot& operator=(const Slot&) = delete;
    };

    void steer(const Aim& aim, int number);
    void turnPanorama();
    bool turnsOver() const;
    void feed(const Image& input);
    void feed(const Frame420& input);
    void process();
    Image resultRgb() const;
    Frame420 result420() const;

    Slot slot_; // closed even when the constructor throws
    DewarperSetup setup_;
    IFishEye fishEye_;
    std::vector<std::uint8_t> in_; // in the library's layout
    std::vector<std::uint8_t> out_;
    bool aimed_ = false; // since the last frame
};

} // namespace lumofe

#endif
