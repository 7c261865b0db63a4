// The data: how each layout computes, and how each view departs from the rule.
#include "views/ViewRules.h"

#include "engine/Numeric.h"

#include <algorithm>

namespace fe {

namespace {

int plus(std::int64_t a, std::int64_t b)
{
    return saturate32(a + b);
}

// ---- quad and 360 views ----

int growth(const ViewFrame& frame, int steps)
{
    return trunc32(double(float(steps) * float(frame.zoomGain)));
}

int largeInputRadius(const FEDSP& e, int zoom, double perStep)
{
    return trunc32(e.m_nRadius * 1.04 + zoom * perStep);
}

int quadRadius(const FEDSP& e, const ViewFrame& frame, int& zoom)
{
    if (e.m_nCamPos == 1) {
        zoom = std::max(zoom, 10);
        return wallRadius(e, frame, zoom, growth);
    }
    return e.m_bLargeInput ? largeInputRadius(e, zoom, 3) : plus(e.m_nRadius, growth(frame, zoom));
}

int ptz360Radius(const FEDSP& e, const ViewFrame& frame, int& zoom)
{
    // Kept: both views grow by the first one's zoom, and the wall is no exception until it is
    // steered.
    return e.m_bLargeInput ? largeInputRadius(e, zoom, 3) : plus(e.m_nRadius, frame.zoomTerm);
}

float viewAuxTop(const ViewFrame& frame, int zoom)
{
    return float(frame.base + zoom * 3.0 * 3.5);
}

AxisGain quadAxisGain(const FEDSP& e, const ViewFrame& frame, int zoom)
{
    const float top = viewAuxTop(frame, zoom);
    return {top, top / float(e.m_nAngleLimit + 10)};
}

AxisGain ptz360AxisGain(const FEDSP& e, const ViewFrame& frame, int zoom)
{
    const float top = viewAuxTop(frame, zoom);
    return {top, e.m_fScreenScaleY * (top / float(e.m_nAngleLimit))};
}

WallGain viewWallGain(const FEDSP& e, int zoom)
{
    const float top = float((double(zoom) - 10) * 3.0 * 3.5);
    const int bottom = trunc32((30 - 3 * double(zoom)) * 3.0);
    return {top, bottom, top / float(e.m_nAngle30 + 2 * e.m_nAngleLimit), -e.m_nAngleLimit};
}

double viewAxisPan(const FEDSP& e, int step, float gain)
{
    return double(float(4 * step) * e.m_fScreenScaleX) / (double(gain) * 0.25 + 1);
}

double viewWallPanRoom(int zoom)
{
    return 2 * (double(zoom) - 10);
}

// ---- the single view ----

int singleWallGrowth(const ViewFrame& frame, int steps)
{
    return trunc32(steps * frame.zoomGain);
}

int singleRadius(const FEDSP& e, const ViewFrame& frame, int& zoom)
{
    if (e.m_bLargeInput) return largeInputRadius(e, zoom, 3 * 0.5);
    double grown = zoom * frame.zoomGain * 0.4;
    if (e.m_fScaleX > 1) grown *= double(e.m_fScaleX);
    return plus(e.m_nRadius, trunc32(grown));
}

AxisGain singleAxisGain(const FEDSP& e, const ViewFrame& frame, int zoom)
{
    const float top = float(std::int64_t(zoom) * 9 + frame.base);
    return {top, top / float(e.m_nAngleLimit)};
}

WallGain singleWallGain(const FEDSP& e, int zoom)
{
    const float top = float((double(zoom) * 3 - 30) * 3);
    const int bottom = trunc32(-(zoom * 0.5 - 10) * 3.0 * 3);
    return {top, bottom, top / float(e.m_nAngleLimit * 4), -45};
}

double singleAxisPan(const FEDSP& e, int step, float gain)
{
    return double(float(2 * 4 * step) * e.m_fScreenScaleX / (gain + 1));
}

double singleWallPanRoom(int zoom)
{
    return (zoom * 0.5 - 10) * 3.0;
}

} // namespace

int wallRadius(const FEDSP& e, const ViewFrame& frame, int zoom,
               int (*wallGrowth)(const ViewFrame&, int))
{
    if (e.m_bLargeInput) return plus(std::int64_t(zoom) * 3 - 30, e.m_nRadius);
    return plus(e.m_nRadius, wallGrowth(frame, plus(zoom, -10)));
}

const SubViewFields& fieldsOf(const ViewRule& rule)
{
    return allViews()[rule.id];
}

const ViewLaw kQuadLaw{.radius = quadRadius,
                       .wallGrowth = growth,
                       .axisGain = quadAxisGain,
                       .wallGain = viewWallGain,
                       .axisPan = viewAxisPan,
                       .wallPanRoom = viewWallPanRoom,
                       .areaShift = 1};

const ViewLaw k360Law{.radius = ptz360Radius,
                      .wallGrowth = growth,
                      .axisGain = ptz360AxisGain,
                      .wallGain = viewWallGain,
                      .axisPan = viewAxisPan,
                      .wallPanRoom = viewWallPanRoom,
                      .areaShift = 1,
                      .wholeRows = true,
                      .flag3IsKeyed = true};

const ViewLaw kSingleLaw{.radius = singleRadius,
                         .wallGrowth = singleWallGrowth,
                         .axisGain = singleAxisGain,
                         .wallGain = singleWallGain,
                         .axisPan = singleAxisPan,
                         .wallPanRoom = singleWallPanRoom,
                         .areaShift = 0,
                         .topNotNegative = false,
                         .panIsKeyed = true,
                         .panStepIsWhole = true};

const ViewRule kQuad12Rules[2] = {
    {.id = kQuad1,
     .number = 1,
     .angleOffset = 0,
     .position = 0,
     .table = &FEDSP::m_pSubMapB,
     .key = &FEDSP::m_nQuad1Key,
     .panBuilt = &FEDSP::m_nQuad1PanBuilt,
     .auxOnCeiling = AuxLimit::afterPan,
     .clearsTable = true},
    // Kept: the key is stored where the single view keeps its own.
    {.id = kQuad2,
     .number = 2,
     .angleOffset = 90,
     .position = 1,
     .table = &FEDSP::m_pSubMapA,
     .key = &FEDSP::m_nSingleKey,
     .tiltLimit = TiltLimit::beforeStep,
     .auxOnFloor = AuxLimit::never,
     .clearsTable = true},
};

// Kept: both share one table, so a view that is not rebuilt shows what the other left in it.
const ViewRule kQuad34Rules[2] = {
    {.id = kQuad3,
     .number = 3,
     .angleOffset = 180,
     .position = 2,
     .table = &FEDSP::m_pMapTable,
     .key = &FEDSP::m_nQuad3Key,
     .panBuilt = &FEDSP::m_nQuad3PanBuilt},
    // Kept: rebuilt when view 2 moves, not when it moves itself.
    {.id = kQuad4,
     .number = 4,
     .angleOffset = 270,
     .position = 3,
     .table = &FEDSP::m_pMapTable,
     .key = &FEDSP::m_nQuad4Key,
     .panBuilt = &FEDSP::m_nQuad4PanBuilt,
     .keyFrom = kQuad2},
};

const ViewRule k360Rules[2] = {
    {.id = k360View1,
     .number = 1,
     .angleOffset = 468,
     .position = 0,
     .table = &FEDSP::m_pSubMapB,
     .key = &FEDSP::m_n360View1Key,
     .panBuilt = &FEDSP::m_n360View1PanBuilt},
    {.id = k360View2,
     .number = 2,
     .angleOffset = 468,
     .position = 1,
     .table = &FEDSP::m_pSubMapA,
     .key = &FEDSP::m_n360View2Key,
     .panBuilt = &FEDSP::m_n360View2PanBuilt,
     .wallPanLimit = &FEDSP::m_f360PanLimit},
};

const ViewRule kSingleRule{.id = kSingle,
                           .number = kAnyNumber,
                           .angleOffset = 90,
                           .position = 0,
                           .table = &FEDSP::m_pMapTable,
                           .key = &FEDSP::m_nSingleKey,
                           .panBuilt = &FEDSP::m_nSinglePanBuilt};

} // namespace fe
