// Deciding whether a view's table must be rebuilt, and rebuilding it.
#include "views/ViewRules.h"

#include "engine/Numeric.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cstring>

namespace fe {

namespace {

constexpr int kWallAngle = 720; // quarter degrees: wall views are turned by half a turn

int rebuildKey(const FEDSP& e, const ViewRule& rule, const ViewLaw& law, int viewW)
{
    const SubViewFields& from = allViews()[rule.keyFrom];
    return wrappingSum(e.*from.zoom, e.*from.aux, viewW, e.*from.tilt, e.m_nCamPos, e.m_nScreenRes,
                       int(e.m_bKeyFlag2), int(e.m_bKeyFlag1),
                       law.flag3IsKeyed ? int(e.m_bKeyFlag3) : 0);
}

bool needsRebuild(const FEDSP& e, const ViewRule& rule, const ViewLaw& law, int key)
{
    if (key != e.*rule.key || e.m_bSetup) return true;
    return law.panIsKeyed && (e.*fieldsOf(rule).pan != e.*rule.panBuilt || e.m_bKeyFlag3);
}

// On the wall the pan shifts the view sideways instead of turning it. Limits it to what the zoom
// allows and returns the shift in input pixels.
int limitWallPan(FEDSP& e, const ViewRule& rule, const ViewLaw& law)
{
    const SubViewFields& view = fieldsOf(rule);
    const double scale = double(e.m_fScaleX + e.m_fScaleY) * 0.5;
    const float limit = float((scale * 90 + law.wallPanRoom(e.*view.zoom)) * double(e.m_fScaleX));
    int& pan = e.*view.pan;
    if (float(pan) > limit) pan = trunc32(double(limit));
    if (float(pan) < -limit) pan = trunc32(double(-limit));
    if (rule.wallPanLimit) e.*rule.wallPanLimit = limit;
    return pan;
}

FEDSP::ClonefishRect viewedArea(const FEDSP& e, const ViewRule& rule, const ViewLaw& law,
                                int radius, int shift)
{
    const SubViewFields& view = fieldsOf(rule);
    const double zoom = e.*view.zoom;
    const double rowsPerZoom = e.m_nScreenRes == 16 ? 2.25 : 3.0;
    const double rows = law.wholeRows ? double(trunc32(zoom * rowsPerZoom)) : zoom * rowsPerZoom;
    const int w = e.m_nRefW >> law.areaShift, h = e.m_nRefH >> law.areaShift;
    const int halfW = e.m_nRefW >> (law.areaShift + 1), halfH = e.m_nRefH >> (law.areaShift + 1);

    const int top = trunc32(double(radius) - halfH - e.*view.aux + rows);
    return {trunc32(double(radius) - halfW + 4 * zoom - shift * 0.5),
            law.topNotNegative ? std::max(top, 0) : top, trunc32(w - 2 * 4 * zoom),
            trunc32(h - 2 * rows)};
}

} // namespace

bool updateTable(FEDSP& e, const ViewRule& rule, const ViewLaw& law, const ViewFrame& frame,
                 int radius)
{
    const int key = rebuildKey(e, rule, law, frame.viewW);
    if (!needsRebuild(e, rule, law, key)) return false;

    const SubViewFields& view = fieldsOf(rule);
    const bool wall = e.m_nCamPos == 1;
    const int shift = wall ? limitWallPan(e, rule, law) : 0;
    int* table = e.*rule.table;
    // Kept: an entry has 8 bytes, so this is half of the table.
    if (table && rule.clearsTable)
        std::memset(table, 0, std::size_t(frame.viewW) * std::size_t(frame.viewH) * 4);
    if (e.m_nCamPos >= 0 && e.m_nCamPos <= 2)
        e.Fisheye_calibration_Init_byArea(
            e.m_nCenterX, saturate32(std::int64_t(e.m_nCenterY) + shift), radius, radius,
            viewedArea(e, rule, law, radius, shift),
            float(wall ? kWallAngle : wrapAngle(e.*view.pan, rule.angleOffset)), e.*view.zoom,
            frame.viewW, frame.viewH, table, e.*view.tilt, wall ? 2 : e.m_nCamPos);
    if (rule.panBuilt) e.*rule.panBuilt = e.*view.pan;
    e.*rule.key = key;
    tableChanged(e, table);
    return true;
}

} // namespace fe
