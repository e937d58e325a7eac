// New layer records as the layer commands make them.
#pragma once

#include "OxString.h"

class OxDbDatabase;
class OxDbLayerTableRecord;

namespace vxlayer {

// A layer record (not yet in the drawing) called `name`: on, thawed,
// unlocked, plotted, continuous, with the default lineweight. The caller
// sets the rest and adds it, or deletes it.
OxDbLayerTableRecord* newLayerRecord(OxDbDatabase* db, const OxString& name);

// The same with every default of a layer made by "-LAYER" New: colour 7,
// the "NORMAL" plot style, thawed in new viewports, no description. Makes
// the drawing's plot style name dictionary when it has none and
// `makePlotStyleNames` (otherwise such a layer has no plot style).
OxDbLayerTableRecord* newLayerWithDefaults(OxDbDatabase* db, const OxString& name, bool makePlotStyleNames = true);

} // namespace vxlayer
