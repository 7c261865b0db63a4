// Measures what the status line tells.
#include "Meter.h"

namespace lumofe::viewer {

void Meter::dewarped(double seconds)
{
    ++pictures_;
    dewarping_ += seconds;
    if (!begin_) measured_.dewarping = 1000 * seconds;
}

void Meter::input(double when)
{
    if (!input_) input_ = when;
}

bool Meter::shown(double when)
{
    if (input_) measured_.response = 1000 * (when - *input_);
    input_.reset();
    if (!begin_) begin_ = when;
    const double passed = when - *begin_;
    if (passed < kInterval) return false;
    measured_.rate = pictures_ / passed;
    if (pictures_ > 0) measured_.dewarping = 1000 * dewarping_ / pictures_;
    begin_ = when;
    pictures_ = 0;
    dewarping_ = 0;
    return true;
}

bool Meter::outdated(double when) const
{
    return begin_ && when - *begin_ >= kInterval && (pictures_ > 0 || measured_.rate > 0);
}

} // namespace lumofe::viewer
