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

} // namespace vxlayer
