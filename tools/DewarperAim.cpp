// Aiming views at spots of the raw picture.
//
// A view's tilt leans it and moves it towards the rim, the further the more it is zoomed in; what
// its middle shows is only known from the table that the library builds.
#include "Dewarper.h"

#include "Error.h"
#include "TableEntry.h"

#include <FEDSP.h>
#include <algorithm>
#include <cmath>

namespace lumofe {
namespace {

constexpr double kNearEnough = 2; // input pixels
constexpr int kRounds = 8;

// The size of a layout's first view.
Size firstView(View view, Size output)
{
    const auto fours = [](double length) { return int(length / 4) * 4; };
    if (view == View::single) return output;
    if (view == View::quad)
        return {fours(output.width * 0.5 + 0.5), fours(output.height * 0.5 + 0.5)};
    return {4 * int(output.width / 8.0 + 0.5), fours(output.height / kUpperPart + 0.5)};
}

double distance(double x, double y, double toX, double toY)
{
    return std::hypot(toX - x, toY - y);
}

} // namespace

std::optional<Dewarper::Middle> Dewarper::middleOf(const Aim& aim)
{
    const bool larger = setup_.output.width > setup_.input.width ||
                        setup_.output.height > setup_.input.height; // views have other sizes
    if (setup_.view == View::half180 || (larger && setup_.view != View::single)) return {};
    const std::vector<Aim> before = aims();
    std::vector<Aim> aimed = before;
    aimed.front() = aim;
    this->aim(aimed);
    const Aim reached = aims().front();
    try {
        process(in_.data(), out_.data(), RowOrder::bottomFirst);
    } catch (const Error&) {
        this->aim(before);
        throw;
    }
    const FEDSP& engine = *m_FEDSP[slot()];
    const int* table = setup_.view == View::single ? engine.m_pMapTable : engine.m_pSubMapB;
    const Size size = firstView(setup_.view, setup_.output);
    const auto middle = std::ptrdiff_t(size.height / 2) * size.width + size.width / 2;
    const TablePoint point = sourceOf(table + 2 * middle, engine.m_nPitch);
    this->aim(before);
    rendered_ = false;
    if (std::isnan(point.x)) return {};
    Aim told = aim;
    told.offset = reached.offset;
    return Middle{point.x, point.y, told};
}

Aim Dewarper::aimAt(int x, int y, double zoom)
{
    Aim aim = directionOf(x, y);
    aim.zoom = zoom;
    return setup_.mount == Mount::wall ? aimedOnWall(aim, x, y) : aimedByOffset(aim, x, y);
}

// The tilt stays that of the spot; the offset that comes with it moves a zoomed in view too far.
Aim Dewarper::aimedByOffset(Aim aim, int x, int y)
{
    const double wanted = distance(setup_.circle.x, setup_.circle.y, x, y);
    struct Bound {
        double offset, distance;
    } inner{0, 0}, outer{};
    Aim best = aim;
    double nearest = HUGE_VAL;
    for (int round = 0; round < kRounds; ++round) {
        const auto middle = middleOf(aim);
        if (!middle) break;
        const double reached =
            distance(setup_.circle.x, setup_.circle.y, double(middle->x), double(middle->y));
        // Further out is beyond the rim.
        if (round == 0 && reached <= wanted) return aim;
        if (std::abs(reached - wanted) < nearest) {
            nearest = std::abs(reached - wanted);
            best = aim;
        }
        if (nearest <= kNearEnough) break;
        (reached > wanted ? outer : inner) = {double(*middle->aim.offset), reached};
        // Interpolation alone would move one of the bounds only.
        const double part =
            round % 2 == 0 ? (wanted - inner.distance) / (outer.distance - inner.distance) : 0.5;
        aim.offset = int(std::lround(inner.offset + part * (outer.offset - inner.offset)));
    }
    return best;
}

// Pan and tilt move the view by about as much as they say.
Aim Dewarper::aimedOnWall(Aim aim, int x, int y)
{
    Aim best = aim;
    double nearest = HUGE_VAL;
    for (int round = 0; round < kRounds && nearest > kNearEnough; ++round) {
        const auto middle = middleOf(aim);
        if (!middle) break;
        const double right = x - double(middle->x), down = y - double(middle->y);
        if (std::hypot(right, down) < nearest) {
            nearest = std::hypot(right, down);
            best = aim;
        }
        const double degrees = 90.0 / setup_.circle.radius;
        aim.pan = std::clamp(aim.pan + degrees * right, -90.0, 90.0);
        aim.tilt = std::clamp(aim.tilt + degrees * down, -90.0, 90.0);
    }
    return best;
}

} // namespace lumofe
