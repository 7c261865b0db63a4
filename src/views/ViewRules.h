// The one rule of the seven perspective views (steer, form the key, choose the area, build the
// table, map, flip, compose) and, as data, how each view and layout departs from it.
#ifndef LUMOFE_VIEWRULES_H
#define LUMOFE_VIEWRULES_H

#include "engine/SubViews.h"
#include "views/Compose.h"

namespace fe {

// Index into allViews().
enum ViewId { kQuad1, kQuad2, kQuad3, kQuad4, k360View1, k360View2, kSingle };

// Per-frame values of a layout; they depend on the engine's state, not on the view.
struct ViewFrame {
    int viewW, viewH; // size of a view, pixels
    int screenH;      // height of the frame that the views are placed in
    double zoomGain;  // growth of the lens radius per zoom step
    int base;         // what the circle's radius allows the offset at zoom 0
    int zoomTerm = 0; // growth of the lens radius of both 360 views
    // What comes after the pair in this frame writes over the work images of its last view.
    bool imagesAreTemporary = false;
};

// What steering on the ceiling and the floor depends on.
struct AxisGain {
    float auxTop; // highest offset
    float gain;   // offset per tilt step
};

// The same on the wall.
struct WallGain {
    float auxTop;
    int auxBottom;
    float gain;
    int lowestTilt;
};

enum class TiltLimit { afterStep, beforeStep };
enum class AuxLimit { always, afterPan, never };

struct ViewRule {
    ViewId id;
    int number;      // FE_ViewParams::nSubView that steers it, kAnyNumber for every one
    int angleOffset; // quarter degrees, added to the pan
    int position;    // in the composed frame, and of the view's image while it is mapped in bands
    int* FEDSP::*table;
    int FEDSP::*key;                      // rebuild key of the last build
    int FEDSP::*panBuilt = nullptr;       // pan of the last build
    float FEDSP::*wallPanLimit = nullptr; // keeps the wall's pan limit of the last build
    ViewId keyFrom = id;                  // whose position forms the key
    TiltLimit tiltLimit = TiltLimit::afterStep;
    AuxLimit auxOnCeiling = AuxLimit::always;
    AuxLimit auxOnFloor = AuxLimit::always;
    bool clearsTable = false; // the first half of it, before a build
};

inline constexpr int kAnyNumber = -1;

// Perspective views are mapped for the published formats only.
inline bool isKnown(FORMAT format)
{
    return format >= FORMAT_YUYV && format <= FORMAT_YV12;
}

// How a layout's views compute what the rule needs.
struct ViewLaw {
    // Lens radius for the view's zoom, which the wall mounting may raise.
    int (*radius)(const FEDSP& e, const ViewFrame& frame, int& zoom);
    // Growth of the lens radius for so many zoom steps on the wall.
    int (*wallGrowth)(const ViewFrame& frame, int steps);
    AxisGain (*axisGain)(const FEDSP& e, const ViewFrame& frame, int zoom);
    WallGain (*wallGain)(const FEDSP& e, int zoom);
    // Pan of a step of that size on ceiling and floor, quarter degrees.
    double (*axisPan)(const FEDSP& e, int step, float gain);
    // What the zoom adds to the wall's pan limit, before scaling.
    double (*wallPanRoom)(int zoom);
    int areaShift;          // the area is the reference screen over 2 to the power of this
    bool wholeRows = false; // the zoom moves the area by whole rows
    bool topNotNegative = true;
    bool panIsKeyed = false;     // a pan rebuilds the table, and m_bKeyFlag3 does on every frame
    bool panStepIsWhole = false; // a pan step is truncated by itself, not with the pan
    bool flag3IsKeyed = false;   // m_bKeyFlag3 counts in the key
};

extern const ViewLaw kQuadLaw, k360Law, kSingleLaw;
extern const ViewRule kQuad12Rules[2], kQuad34Rules[2], k360Rules[2], kSingleRule;

// A view's fields.
const SubViewFields& fieldsOf(const ViewRule& rule);

// Lens radius on the wall.
int wallRadius(const FEDSP& e, const ViewFrame& frame, int zoom,
               int (*wallGrowth)(const ViewFrame& frame, int steps));

// Applies the pending step to the view and returns its lens radius. `radius` is that of the view
// before the step.
int steerView(FEDSP& e, const ViewRule& rule, const ViewLaw& law, ViewFrame& frame, int radius);

// Rebuilds the view's table when its key changed or a set-up frame asks for it. True when it did.
bool updateTable(FEDSP& e, const ViewRule& rule, const ViewLaw& law, const ViewFrame& frame,
                 int radius);

// Renders two views one after the other: all of the rule. `placeOf` says where a view goes.
// True when the frame is complete.
using PlaceOf = Placement (*)(int position, const ViewFrame& frame);
bool renderPair(FEDSP& e, const ViewRule (&rules)[2], const ViewLaw& law, ViewFrame& frame,
                PlaceOf placeOf, unsigned char* in, unsigned char* out);

} // namespace fe

#endif
