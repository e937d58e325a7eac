// Which layers may be deleted: the refusals of "-LAYER" Delete, shared with
// the layer manager, which says each reason.
#pragma once

#include "OxDbObjectId.h"

class OxDbDatabase;
class OxDbLayerTableRecord;

namespace vxlayer {

enum class DeletionRefusal { None, LayerZero, Current, Defpoints, ExternalReference, InUse };

// Marks the layers that objects, block definitions or the drawing itself
// use; deletionRefusal reads those marks.
void markLayersInUse(OxDbDatabase* db);

// Why `layer` may not be deleted while `current` is the current layer.
DeletionRefusal deletionRefusal(const OxDbDatabase& db, const OxDbLayerTableRecord& layer,
                                const OxDbObjectId& current);

} // namespace vxlayer
