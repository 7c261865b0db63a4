// Which engine fields hold the position of each perspective sub-view.
#ifndef LUMOFE_SUBVIEWS_H
#define LUMOFE_SUBVIEWS_H

#include "FEDSP.h"

#include <span>

namespace fe {

struct SubViewFields {
    int FEDSP::*pan;  // quarter degrees
    int FEDSP::*tilt; // degrees
    int FEDSP::*zoom; // steps
    int FEDSP::*aux;  // offset of the viewed area towards the rim, input pixels
};

// The values of FE_ViewParams::nViewMode that select a layout.
enum ViewMode { kModeQuad = 1, kMode360 = 2, kMode180 = 4, kModeSingle = 8 };

std::span<const SubViewFields> quadViews();   // views 1 to 4
std::span<const SubViewFields> ptz360Views(); // views 1 and 2
std::span<const SubViewFields> singleView();  // one
std::span<const SubViewFields> allViews();    // the seven of them

// The perspective views of a layout; none for the 180 layout and unknown modes.
std::span<const SubViewFields> viewsOfMode(int mode);

// Sets the layout flag of `mode` and clears the other three; unknown modes change nothing.
void selectLayout(FEDSP& e, int mode);

// The mode of the first layout flag that is set, 0 for none.
int currentMode(const FEDSP& e);

} // namespace fe

#endif
