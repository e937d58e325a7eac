// The viewport the user works with on the current layout.
#pragma once

#include "OxDbObjectId.h"

class OxDbDatabase;

namespace vxlayer {

// The active viewport of the active layout (VPLAYER's "Current"); false
// when the layout cannot be read.
bool activeViewport(OxDbObjectId& viewportId);

// The active model viewport of the current layout: null in model space
// (TILEMODE 1) and when the active viewport is the sheet itself.
OxDbObjectId currentModelViewport(OxDbDatabase* db);

} // namespace vxlayer
