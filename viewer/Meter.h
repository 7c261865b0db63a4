// Measures what the status line tells.
#ifndef LUMOFE_VIEWER_METER_H
#define LUMOFE_VIEWER_METER_H

#include "Texts.h"

#include <optional>

namespace lumofe::viewer {

// Times are seconds on one clock.
class Meter {
public:
    // Of a picture that took so long to dewarp.
    void dewarped(double seconds);

    // Of the first input that the next picture on the screen answers.
    void input(double when);

    // A picture is on the screen. True when figures are ready anew, twice a second.
    bool shown(double when);

    // Whether the figures shall be shown anew although no picture comes.
    bool outdated(double when) const;

    const Measured& measured() const { return measured_; }

private:
    static constexpr double kInterval = 0.5;

    Measured measured_;
    std::optional<double> begin_;
    std::optional<double> input_;
    int pictures_ = 0;
    double dewarping_ = 0;
};

} // namespace lumofe::viewer

#endif
