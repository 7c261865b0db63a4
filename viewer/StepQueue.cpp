// Steering that waits for the next frames.
#include "StepQueue.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lumofe::viewer {
namespace {

constexpr double kLargestStep = 1000; // far beyond what turns a view to its limit

bool whole(double amount)
{
    return std::abs(amount) >= 1;
}

int takeWhole(double& amount)
{
    const double taken = std::trunc(std::clamp(amount, -kLargestStep, kLargestStep));
    amount -= taken;
    return int(taken);
}

} // namespace

void StepQueue::add(int view, double pan, double tilt, double zoom)
{
    Amount& amount = waiting_[std::size_t(view) - 1];
    amount.pan += pan;
    amount.tilt += tilt;
    amount.zoom += zoom;
}

bool StepQueue::pending() const
{
    return std::ranges::any_of(waiting_, [](const Amount& amount) {
        return whole(amount.pan) || whole(amount.tilt) || whole(amount.zoom);
    });
}

std::optional<StepQueue::ViewStep> StepQueue::next()
{
    for (std::size_t i = 0; i < waiting_.size(); ++i) {
        Amount& amount = waiting_[i];
        if (!whole(amount.pan) && !whole(amount.tilt) && !whole(amount.zoom)) continue;
        ViewStep next{int(i) + 1, {}};
        if (std::abs(amount.tilt) > std::abs(amount.pan))
            next.step.tilt = takeWhole(amount.tilt);
        else
            next.step.pan = takeWhole(amount.pan);
        next.step.zoom = takeWhole(amount.zoom);
        return next;
    }
    return {};
}

} // namespace lumofe::viewer
