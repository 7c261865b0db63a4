// Rendering two views: steer, build, map, flip, compose.
#include "views/ViewRules.h"

#include "views/TableForms.h"

namespace fe {

namespace {

// Where a view's image lies in m_pViewImage while it is mapped in bands; whole views use its start
// in turn.
std::size_t bandImageOffset(int position, const ViewFrame& frame)
{
    const std::size_t three = 3 * std::size_t(frame.viewW) * std::size_t(frame.viewH);
    const std::size_t offsets[] = {0, three / 2, three & ~std::size_t(1), three / 2 * 3};
    return offsets[position];
}

} // namespace

bool renderPair(FEDSP& e, const ViewRule (&rules)[2], const ViewLaw& law, ViewFrame& frame,
                Compose compose, unsigned char* in, unsigned char* out)
{
    const bool wholeFrame = e.m_nLineIndex < 0;
    const bool setting = e.m_FishSetting.bEnabled != 0;
    int done = 0;
    for (const ViewRule& rule : rules) {
        int radius = law.radius(e, frame, e.*fieldsOf(rule).zoom);
        if (rule.number == e.m_ViewParams.nSubView) radius = steerView(e, rule, law, frame, radius);
        updateTable(e, rule, law, frame, radius);

        unsigned char* image =
            e.m_pViewImage + (wholeFrame ? 0 : bandImageOffset(rule.position, frame));
        int* table = e.*rule.table;
        if (isKnown(e.m_nFormat) && wholeFrame)
            mapByTable(e, in, image, table, 0, frame.viewW, frame.viewH);
        else if (isKnown(e.m_nFormat))
            done = e.FCMapping_line(e.m_nFormat, in, image, table, e.m_nInputW, e.m_nInputH,
                                    frame.viewW, frame.viewH, setting, e.m_nLineIndex);

        if (!wholeFrame && e.m_nLineIndex != frame.viewH - 1 && done != frame.viewH) continue;
        if (e.m_nCamPos != 0) {
            e.TransferButtomToUpPlanar(image, e.m_pWorkImageA, frame.viewW, frame.viewH, true);
            image = e.m_pWorkImageA;
        }
        compose(e, image, rule.position, out, frame);
    }
    return wholeFrame || done >= frame.viewH;
}

} // namespace fe
