// The list of sub-views that resetting, clamping, saving and restoring loop over.
#include "engine/SubViews.h"

namespace fe {

namespace {

#define LUMOFE_VIEW(prefix)                                                                        \
    {                                                                                              \
        &FEDSP::prefix##Pan, &FEDSP::prefix##Tilt, &FEDSP::prefix##Zoom, &FEDSP::prefix##Aux       \
    }

constexpr SubViewFields kViews[] = {
    LUMOFE_VIEW(m_nQuad1),  LUMOFE_VIEW(m_nQuad2),    LUMOFE_VIEW(m_nQuad3),
    LUMOFE_VIEW(m_nQuad4),  LUMOFE_VIEW(m_n360View1), LUMOFE_VIEW(m_n360View2),
    LUMOFE_VIEW(m_nSingle),
};

#undef LUMOFE_VIEW

struct Layout {
    int mode;
    unsigned char FEDSP::*flag;
};

// In the order in which the flags are tested.
constexpr Layout kLayouts[] = {
    {kModeQuad, &FEDSP::m_bQuad},
    {kMode360, &FEDSP::m_b360},
    {kMode180, &FEDSP::m_b180},
    {kModeSingle, &FEDSP::m_bSingle},
};

} // namespace

std::span<const SubViewFields> allViews()
{
    return kViews;
}

std::span<const SubViewFields> quadViews()
{
    return allViews().subspan(0, 4);
}

std::span<const SubViewFields> ptz360Views()
{
    return allViews().subspan(4, 2);
}

std::span<const SubViewFields> singleView()
{
    return allViews().subspan(6, 1);
}

std::span<const SubViewFields> viewsOfMode(int mode)
{
    switch (mode) {
    case kModeQuad:
        return quadViews();
    case kMode360:
        return ptz360Views();
    case kModeSingle:
        return singleView();
    default:
        return {};
    }
}

void selectLayout(FEDSP& e, int mode)
{
    bool known = false;
    for (const Layout& layout : kLayouts)
        known |= layout.mode == mode;
    if (!known) return;
    for (const Layout& layout : kLayouts)
        e.*layout.flag = layout.mode == mode;
}

int currentMode(const FEDSP& e)
{
    for (const Layout& layout : kLayouts)
        if (e.*layout.flag) return layout.mode;
    return 0;
}

} // namespace fe
