// Steering with the mouse: drag, wheel and double click become changes of the settings.
#ifndef LUMOFE_GST_NAVIGATION_H
#define LUMOFE_GST_NAVIGATION_H

#include "Settings.h"

#include <cstdint>
#include <optional>

namespace lumofe {

// Positions are pixels of an output of the size given, fractions allowed. What is grabbed follows
// the pointer about as fast as it moves: the view under it, in the 180 layout of ceiling and floor
// the panorama. The strip of the 360 layout stays. Only Settings::now changes.
class Navigation {
public:
    // The main button goes down: begins a drag. The second time within kDoubleClick and a few
    // pixels, what is there goes back to what the application set. `time` is in microseconds, from
    // any clock that does not go back.
    void press(Settings& settings, Size output, double x, double y, std::int64_t time);
    void release() { drag_.reset(); }
    void move(Settings& settings, Size output, double x, double y);

    // Where views stopped in the last frame: drags begin there, not at a pan that is out of reach.
    void limitPan(const PanReach& reach) { reach_ = reach; }

    // So many notches of the wheel; up is positive and zooms in.
    static void scroll(Settings& settings, Size output, double x, double y, double notches);

    static constexpr std::int64_t kDoubleClick = 400'000; // microseconds

private:
    struct Drag {
        int view; // 0: the panorama
        double x, y;
    };
    struct Click {
        double x, y;
        std::int64_t time;
    };

    std::optional<Drag> drag_;
    std::optional<Click> lastClick_;
    PanReach reach_ = kUnlimitedReach;
};

} // namespace lumofe

#endif
