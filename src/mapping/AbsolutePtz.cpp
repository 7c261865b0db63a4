// Absolute pan, tilt and zoom, and looking up a point of the raw picture.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "engine/SubViews.h"

#include <algorithm>
#include <cmath>

using fe::trunc32;

namespace {

constexpr double kInversePi = 0.31831; // hosts rely on results made with these digits
constexpr double kRadians = 0.0175;    // per degree, likewise

// Where an input pixel lies about the circle's centre.
struct Polar {
    double angle; // degrees, counter-clockwise from the picture's top, or from its bottom
    double ratio; // distance from the centre over the radius, at most 1
};

enum class From { top, bottom };

double angleOf(double dX, double dY, From from)
{
    if (dX == 0) return dY != 0 && (dY < 0) == (from == From::bottom) ? 180 : 0;
    const double t = std::atan(double(float(std::fabs(dY) / std::fabs(dX)))) * 180 * kInversePi;
    const double side = (dX < 0) == (from == From::top) ? 90 : 270;
    return (dX < 0) == (dY < 0) ? side - t : side + t;
}

Polar polarOf(const FEDSP& e, int x, int y, From from)
{
    // Kept: x counts columns, and m_nCenterY is the centre's column.
    const double dX = double(x) - e.m_nCenterY;
    const double dY = double(y) - e.m_nCenterX;
    const double r = std::trunc(std::sqrt(dX * dX + dY * dY));
    float ratio = r > 0 ? 1.0f : 0.0f;
    if (e.m_nRadius != 0) ratio = std::min(float(r) / float(e.m_nRadius), 1.0f);
    // Products with the ratio are double, so that they truncate alike in every build.
    return {angleOf(dX, dY, from), double(ratio)};
}

short toShort(double x)
{
    return static_cast<short>(trunc32(x));
}

// How a view of a layout is steered by absolute positions.
struct AbsoluteRule {
    double maxZoom;
    int tiltReserve; // added to the tilt limit in the slope
    int panOffset;   // quarter degrees
    bool setsZoom = true;
    bool ceilingPanAlways = false; // Kept: also on the wall mounting
};

constexpr AbsoluteRule kSingleRule{88, 6, 0};
constexpr AbsoluteRule k360Rules[] = {
    {.maxZoom = 44, .tiltReserve = 16, .panOffset = 0, .ceilingPanAlways = true},
    {.maxZoom = 44, .tiltReserve = 16, .panOffset = 90},
};
// Kept: the fourth view's zoom is not set.
constexpr AbsoluteRule kQuadRules[] = {
    {.maxZoom = 44, .tiltReserve = 16, .panOffset = 0},
    {.maxZoom = 44, .tiltReserve = 16, .panOffset = 90},
    {.maxZoom = 44, .tiltReserve = 16, .panOffset = 180},
    {.maxZoom = 44,
     .tiltReserve = 16,
     .panOffset = 270,
     .setsZoom = false,
     .ceilingPanAlways = true},
};

const AbsoluteRule& ruleOf(int mode, std::size_t view)
{
    if (mode == fe::kModeQuad) return kQuadRules[view];
    if (mode == fe::kMode360) return k360Rules[view];
    return kSingleRule;
}

// A tenth of what the circle's radius exceeds half a view by, pixels.
int radiusReserve(const FEDSP& e)
{
    const bool fits = e.m_nScreenW <= e.m_nInputW && e.m_nScreenH <= e.m_nInputH;
    const int size = fits ? trunc32(e.m_nScreenH * 0.5 + 0.5) & ~3 : e.m_nInputH / 2;
    const int half = size / 2;
    return trunc32((double(e.m_nRadius) - half) * 0.1);
}

void steer(FEDSP& e, const AbsoluteRule& rule, const fe::SubViewFields& view, bool single, int pan,
           int tilt, int zoom)
{
    const bool wall = e.m_nCamPos == 1;
    const int limit = e.m_nAngleLimit;
    int& zoomField = e.*view.zoom;
    if (zoom >= 0) {
        if (rule.setsZoom) zoomField = trunc32(zoom / 800.0 * rule.maxZoom);
        // Kept: these look at the argument, not at the zoom that came out of it.
        if (wall && zoom <= 9) zoomField = 10;
        if (wall && single && zoom > 69) zoomField = 70;
    }

    const double z = zoomField;
    double top, slope;
    if (wall) {
        top = z * 12 - 120;
        slope = top / (single ? limit * 4 : e.m_nAngle30 + limit * 2);
    } else {
        top = z * 9 + radiusReserve(e);
        slope = top / (limit + rule.tiltReserve) + 0.5;
    }
    e.*view.pan = wall && !rule.ceilingPanAlways ? trunc32(pan / 900.0 * 360)
                                                 : trunc32(pan / 3600.0 * 1440 - rule.panOffset);

    const int tiltField = trunc32(tilt / 900.0 * limit);
    e.*view.tilt = tiltField;
    const double L = limit;
    int aux = trunc32(tiltField / L * L * slope);
    if (aux > top) aux = trunc32(top);
    e.*view.aux = std::max(aux, 0);
}

} // namespace

void FEDSP::GetAbsolutePositionFromInputVideoPoint(int nX, int nY, short& nPan, short& nTilt)
{
    const auto [a, ratio] = polarOf(*this, nX, nY, m_nCamPos == 0 ? From::top : From::bottom);
    switch (m_nCamPos) {
    case 0:
        nPan = static_cast<short>((3600 - trunc32(a * 10)) % 3600);
        nTilt = toShort(-900 * ratio);
        break;
    case 1:
        nPan = toShort(std::sin(a * kRadians) * ratio * 900);
        nTilt = toShort(std::cos(a * kRadians) * ratio * 900);
        break;
    case 2:
        nPan = static_cast<short>(trunc32(a * 10) % 3600);
        nTilt = toShort(900 * ratio);
        break;
    default:
        break;
    }
}

void FEDSP::GetAbsolutePositionFromInputVideoPointCPU(int nX, int nY, short& nPan, short& nTilt)
{
    const auto [a, ratio] = polarOf(*this, nX, nY, From::top);
    const double L = m_nAngleLimit;
    switch (m_nCamPos) {
    case 0:
    case 2:
        nPan = toShort((1440 - trunc32(a * 4)) % 1440 / 1440.0 * 3600);
        // Kept: the sign is the other way round than in the variant above.
        nTilt = toShort(m_nCamPos == 0 ? ratio * 900 : ratio * -900);
        break;
    case 1:
        nPan = toShort(std::sin(a * kRadians) * -ratio * 900);
        nTilt = toShort(std::cos(a * kRadians) * -ratio * L / L * 900);
        break;
    default:
        break;
    }
}

void FEDSP::SetAbsolutePTZCPU(int, short nPan, short nTilt, short nZoom, unsigned short nSubView)
{
    const int mode = m_ViewParams.nViewMode;
    const auto views = fe::viewsOfMode(mode);
    const bool single = mode == fe::kModeSingle;
    const bool known = nSubView >= 1 && nSubView <= views.size();
    if (known || single) m_ViewParams.nSubView = nSubView;
    if (!known) return;

    const int tilt = m_nCamPos == 2 ? -nTilt : nTilt;
    const std::size_t index = nSubView - 1u;
    steer(*this, ruleOf(mode, index), views[index], single, nPan, tilt, nZoom);
}
