// Paper space: which layout is shown, which of its viewports the user works
// in (CVPORT), and switching between a layout's sheet and its model
// viewports. Host internals shared by the database, the command line and
// the host's commands.
//
// Each layout keeps its own active viewport (saved with the drawing): the
// sheet, viewport 1, while the user works in paper space, or the model
// viewport the user works in. So going to another layout and back returns
// to the same place, and the viewport a command calls "current" is the one
// the user works in.
#pragma once

#include <vector>

#include "OxDbObjectId.h"
#include "oxstatus.h"

class OxDbDatabase;
class OxDbLayout;
class OxDbViewport;

namespace pavo::db {

// The paper-space layouts in tab order.
std::vector<OxDbLayout*> paperLayouts(const OxDbDatabase* db);
// The layout shown when TILEMODE is 0: the current one, else the first tab;
// null when the drawing has none.
OxDbLayout* currentPaperLayout(const OxDbDatabase* db);

// The viewport of `layout` with that number (erased ones left out); null
// when there is none.
OxDbObjectId viewportNumbered(const OxDbLayout& layout, int number);
// The viewport the user works in: with TILEMODE 0 the current layout's
// active viewport (its sheet when none is set or it was erased); null with
// TILEMODE 1.
OxDbObjectId currentViewport(const OxDbDatabase* db);
// Its number: 1 for the sheet; 0 with TILEMODE 1.
int currentViewportNumber(const OxDbDatabase* db);

// Makes viewport `number` of the current layout the one the user works in.
// eNotApplicable with TILEMODE 1, eKeyNotFound when the layout has no such
// viewport, eInvalidInput when it is off.
Ox::ErrorStatus makeViewportCurrent(OxDbDatabase* db, int number);
// PSPACE: the sheet. eNotApplicable with TILEMODE 1.
Ox::ErrorStatus enterPaperSpace(OxDbDatabase* db);
// MSPACE: the model viewport the user last worked in, else the first one
// that is on. eNotApplicable with TILEMODE 1, eKeyNotFound when the layout
// has no model viewport that is on.
Ox::ErrorStatus enterModelSpace(OxDbDatabase* db);

// The next free viewport number of `layout` (2 or above).
short nextViewportNumber(const OxDbLayout& layout);

} // namespace pavo::db
