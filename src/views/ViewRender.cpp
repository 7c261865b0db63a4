// Rendering two views: steer, build, map, flip, compose.
#include "views/ViewRules.h"

#include "kernels/Sampling.h"
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

// The place of a view that may be mapped straight into the frame, because no one can see that its
// image was not left in the work images. Turned upside down where views are.
std::optional<PlanarPicture> directPlace(const FEDSP& e, const Placement& place, unsigned char* out)
{
    std::optional<PlanarPicture> direct = placeIn(OutputWindow(e, out), e.m_nFormat, place);
    if (direct && e.m_nCamPos != 0) {
        direct->luma += direct->lumaPitch * std::ptrdiff_t(place.h - 1);
        direct->lumaPitch = -direct->lumaPitch;
        for (unsigned char*& plane : direct->chroma)
            plane += direct->chromaPitch * std::ptrdiff_t(place.h / 2 - 1);
        direct->chromaPitch = -direct->chromaPitch;
    }
    return direct;
}

} // namespace

bool renderPair(FEDSP& e, const ViewRule (&rules)[2], const ViewLaw& law, ViewFrame& frame,
                PlaceOf placeOf, unsigned char* in, unsigned char* out)
{
    const bool wholeFrame = e.m_nLineIndex < 0;
    const bool setting = e.m_FishSetting.bEnabled != 0;
    // Then the second view shows the first one's image, unless its table is built in between.
    const bool sharedTable = rules[0].table == rules[1].table;
    unsigned char* image = nullptr;
    bool mapped = false; // the image shows what the table says
    int done = 0;
    for (const ViewRule& rule : rules) {
        int radius = law.radius(e, frame, e.*fieldsOf(rule).zoom);
        if (rule.number == e.m_ViewParams.nSubView) radius = steerView(e, rule, law, frame, radius);
        const bool rebuilt = updateTable(e, rule, law, frame, radius);
        const bool first = &rule == rules;
        int* table = e.*rule.table;
        const Placement place = placeOf(rule.position, frame);
        if (!first && sharedTable && !rebuilt && mapped) {
            printMapped(e);
            compose(OutputWindow(e, out), e.m_nFormat, place, image);
            continue;
        }
        image = e.m_pViewImage + (wholeFrame ? 0 : bandImageOffset(rule.position, frame));
        mapped = wholeFrame && isKnown(e.m_nFormat) &&
                 canMap(in, image, table, frame.viewW, frame.viewH, e.m_nPitch);
        if (isKnown(e.m_nFormat) && wholeFrame) {
            const bool temporary =
                first ? !sharedTable && canMap(in, image, e.*rules[1].table, frame.viewW,
                                               frame.viewH, e.m_nPitch)
                      : frame.imagesAreTemporary;
            const auto direct = temporary ? directPlace(e, place, out) : std::nullopt;
            if (mapByTable(e, in, image, table, 0, frame.viewW, frame.viewH,
                           direct ? &*direct : nullptr))
                continue;
        } else if (isKnown(e.m_nFormat)) {
            done = e.FCMapping_line(e.m_nFormat, in, image, table, e.m_nInputW, e.m_nInputH,
                                    frame.viewW, frame.viewH, setting, e.m_nLineIndex);
        }
        if (!wholeFrame && e.m_nLineIndex != frame.viewH - 1 && done != frame.viewH) continue;
        if (e.m_nCamPos != 0) {
            e.TransferButtomToUpPlanar(image, e.m_pWorkImageA, frame.viewW, frame.viewH, true);
            image = e.m_pWorkImageA;
        }
        compose(OutputWindow(e, out), e.m_nFormat, place, image);
    }
    return wholeFrame || done >= frame.viewH;
}

} // namespace fe
