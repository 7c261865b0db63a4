// Steering: applying the steps of the last update to a view's position.
#include "views/ViewRules.h"

#include "engine/Numeric.h"

#include <algorithm>
#include <cstdlib>

namespace fe {

namespace {

// A view's position while it is steered.
struct Position {
    int &pan, &tilt, &zoom, &aux;

    Position(FEDSP& e, const SubViewFields& view)
        : pan(e.*view.pan), tilt(e.*view.tilt), zoom(e.*view.zoom), aux(e.*view.aux)
    {
    }

    void movePan(double amount, const ViewLaw& law)
    {
        pan = law.panStepIsWhole ? saturate32(std::int64_t(pan) + trunc32(amount))
                                 : trunc32(pan + amount);
    }
    void moveTilt(int amount) { tilt = saturate32(std::int64_t(tilt) + amount); }
    void moveAux(float amount) { aux = trunc32(double(float(aux) + amount)); }
    void limitAux(int bottom, float top)
    {
        if (float(aux) > top) aux = trunc32(double(top));
        aux = std::max(aux, bottom);
    }
};

void stepTiltUp(Position& view, int size, int limit, TiltLimit when)
{
    if (when == TiltLimit::beforeStep) {
        // Kept: the step may pass the limit; the next one comes back to it.
        if (view.tilt > limit)
            view.tilt = limit;
        else
            view.moveTilt(size);
        return;
    }
    if (view.tilt < limit) view.moveTilt(size);
    view.tilt = std::min(view.tilt, limit);
}

void stepTiltDown(Position& view, int size, TiltLimit when)
{
    if (when == TiltLimit::beforeStep) {
        if (view.tilt < 1)
            view.tilt = 0;
        else
            view.moveTilt(-size);
        return;
    }
    if (view.tilt > 0) view.moveTilt(-size);
    view.tilt = std::max(view.tilt, 0);
}

// On the ceiling and the floor, which is its mirror image.
void steerOnAxis(FEDSP& e, const ViewRule& rule, const ViewLaw& law, const ViewFrame& frame)
{
    Position view(e, fieldsOf(rule));
    const int panStep = e.m_nEventPan, panSize = std::abs(panStep);
    const int tiltStep = e.m_nEventTilt, tiltSize = std::abs(tiltStep);
    const bool floor = e.m_nCamPos == 2;
    const AxisGain gain = law.axisGain(e, frame, view.zoom);
    const AuxLimit auxLimit = floor ? rule.auxOnFloor : rule.auxOnCeiling;

    const bool tilts = tiltSize > panSize;
    if (tilts) {
        const bool up = (tiltStep < 0) != floor;
        if (up)
            stepTiltUp(view, tiltSize, e.m_nAngleLimit, rule.tiltLimit);
        else
            stepTiltDown(view, tiltSize, rule.tiltLimit);
        const float offset = float(tiltSize) * gain.gain;
        view.moveAux(up ? offset : -offset);
    } else if (panStep != 0) {
        const double amount = law.axisPan(e, panSize, gain.gain);
        view.movePan((panStep > 0) != floor ? amount : -amount, law);
    }
    if (auxLimit == AuxLimit::always || (auxLimit == AuxLimit::afterPan && !tilts))
        view.limitAux(0, gain.auxTop);
}

void steerOnWall(FEDSP& e, const ViewRule& rule, const ViewLaw& law)
{
    Position view(e, fieldsOf(rule));
    const int panStep = e.m_nEventPan, panSize = std::abs(panStep);
    const int tiltStep = e.m_nEventTilt, tiltSize = std::abs(tiltStep);
    const WallGain wall = law.wallGain(e, view.zoom);

    if (tiltSize > panSize) {
        const bool up = tiltStep < 0;
        const bool steps = up ? view.tilt >= wall.lowestTilt : view.tilt <= e.m_nAngleLimit;
        if (steps) {
            const float gain = std::max(wall.gain, 1.0f);
            const float sign = up ? -1.0f : 1.0f;
            view.tilt = trunc32(double(float(view.tilt) + sign * (float(tiltSize) / gain)));
            view.moveAux(sign * (float(tiltSize) * gain));
        }
        if (!up)
            view.tilt = std::min(view.tilt, e.m_nAngleLimit);
        else if (!steps || rule.tiltLimit == TiltLimit::afterStep)
            view.tilt = std::max(view.tilt, wall.lowestTilt);
    } else if (panStep != 0) {
        const double amount =
            double(float(2 * panSize) * e.m_fScreenScaleX) / (double(wall.gain) * 0.25 + 1);
        view.movePan(panStep > 0 ? amount : -amount, law);
    }
    view.limitAux(wall.auxBottom, wall.auxTop);
}

} // namespace

int steerView(FEDSP& e, const ViewRule& rule, const ViewLaw& law, ViewFrame& frame, int radius)
{
    if (e.m_nCamPos == 0 || e.m_nCamPos == 2) {
        steerOnAxis(e, rule, law, frame);
    } else if (e.m_nCamPos == 1) {
        const int zoom = e.*fieldsOf(rule).zoom;
        radius = wallRadius(e, frame, zoom, law.wallGrowth);
        if (rule.id == k360View1)
            frame.zoomTerm = law.wallGrowth(frame, saturate32(std::int64_t(zoom) - 10));
        steerOnWall(e, rule, law);
    }
    return radius;
}

} // namespace fe
