// Layouts and the user's place in them, as VPLAYER walks them and picks
// viewports.
#pragma once

#include "OxDbDictionary.h"
#include "OxDbLayout.h"
#include "PavoGraphics.h"

namespace vxlayer {

// True while the user works inside a viewport (model space of a layout).
// Viewports are picked on the sheet, so such a pick goes to paper space and
// comes back.
inline bool inViewportModelSpace() {
    PavoGraphics* graphics = GetActiveGraphics();
    PavoGsView* view = graphics ? graphics->activeGsView() : nullptr;
    return view && view->viewingSpace() == PavoGsView::kModelSpace;
}

// Calls `visit(layout)` for each entry of the open layout dictionary that
// opens as a layout, in dictionary order.
template <class Visit> void forEachLayout(OxDbDictionary& layouts, Visit visit) {
    OxDbDictionaryIterator* it = layouts.newIterator();
    if (!it) return;
    for (; !it->done(); it->next()) {
        OxDbLayout* layout = nullptr;
        if (it->getObject(layout, OxDb::kForRead) != Ox::eOk) continue;
        visit(*layout);
        layout->close();
    }
    delete it;
}

} // namespace vxlayer
