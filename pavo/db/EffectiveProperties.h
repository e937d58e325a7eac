// What an object's properties come to once ByLayer and ByBlock are
// resolved: ByLayer takes the layer's value (with the overrides of the
// viewport it is shown in), ByBlock the value of the block reference that
// shows the object. A top-level object is in no block: its ByBlock values
// are the defaults (white, Continuous, the default lineweight, opaque).
// LIST prints these values and pictures are drawn with them.
#pragma once

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxDbObjectId.h"

class OxDbDatabase;
class OxDbEntity;
class OxDbLayerTableRecord;

namespace pavo::db {

struct EffectiveProperties {
    OxCmColor color;               // an index, a true colour or a book colour
    OxDbObjectId linetype;         // a linetype record
    OxDb::LineWeight lineWeight = OxDb::kLnWtByLwDefault; // a standard lineweight or Default
    OxCmTransparency transparency = OxCmTransparency(255);
    OxDbObjectId plotStyle;        // an entry of the plot style name dictionary; null: "Normal"
    bool plotStyleByBlock = false; // a top-level object's ByBlock plot style, which names none
    OxDbObjectId material;         // null: Global
};

// What ByBlock comes to outside every block.
EffectiveProperties outsideBlocks(const OxDbDatabase* db);

// A layer's own values, or with the overrides it has in `viewportId`.
EffectiveProperties layerProperties(const OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId = {});

// `entity`'s values with ByLayer taken from `layer` and ByBlock from `block`.
EffectiveProperties effectiveProperties(const OxDbEntity& entity, const EffectiveProperties& layer,
                                        const EffectiveProperties& block);

// The same, reading the entity's layer (defaults when it does not open);
// `enclosing` is what the reference that shows `entity` came to (null for a
// top-level object).
EffectiveProperties effectiveProperties(const OxDbEntity& entity, const EffectiveProperties* enclosing,
                                        const OxDbObjectId& viewportId = {});

} // namespace pavo::db
