// What the plot style options of the layer commands share: the current
// layer's style as the default, the listing of usable names, and making
// sure a chosen name has its entry in the drawing.
#pragma once

#include "OxString.h"

class OxDbDatabase;

namespace vxlayer {

// The current layer's plot style name (empty when it has none). False when
// the current layer cannot be opened.
bool currentLayerPlotStyle(OxDbDatabase* db, OxString& name);

// Prints `header`, then each usable plot style name on a line of its own.
void listPlotStyleNames(const OxString& header);

// Adds the plot style name entry `name` to the drawing when it lacks it.
void ensurePlotStyleEntry(OxDbDatabase* db, const OxString& name);

} // namespace vxlayer
