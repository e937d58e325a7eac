#include "ErasedReferences.h"

#include "DbInternal.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "PaperSpace.h"
#include "SymbolTableImpl.h"

namespace pavo::db {

namespace {

void dropViewport(OxDbDatabase* db, const OxDbObjectId& viewportId) {
    if (auto* layers = OxDbLayerTable::cast(objectOf(db->layerTableId()))) {
        for (OxDbCell* cell : layers->impl()->records) {
            auto* layer = OxDbLayerTableRecord::cast(cell->object.get());
            if (layer && layer->hasOverrides(viewportId))
                changeDirect(layer, [&](OxDbLayerTableRecord& l) { l.removeViewportOverrides(viewportId); });
        }
    }
    for (OxDbLayout* layout : paperLayouts(db)) {
        if (layout->activeViewportId() == viewportId)
            changeDirect(layout, [](OxDbLayout& l) { l.setActiveViewportId(OxDbObjectId()); });
        if (layout->lastModelViewportId() == viewportId)
            changeDirect(layout, [](OxDbLayout& l) { l.setLastModelViewportId(OxDbObjectId()); });
    }
}

void dropLayer(OxDbDatabase* db, const OxDbObjectId& layerId) {
    OxDbObjectIdArray one;
    one.append(layerId);
    for (OxDbLayout* layout : paperLayouts(db)) {
        for (const OxDbObjectId& id : layout->getViewportArray()) {
            auto* viewport = OxDbViewport::cast(objectOf(id));
            if (viewport && viewport->isLayerFrozenInViewport(layerId))
                changeDirect(viewport, [&](OxDbViewport& v) { v.thawLayersInViewport(one); });
        }
    }
}

} // namespace

void dropReferencesTo(const OxDbCell* cell) {
    if (!cell || !cell->object || !cell->database) return;
    const OxDbObjectId id(const_cast<OxDbCell*>(cell));
    if (OxDbViewport::cast(cell->object.get()))
        dropViewport(cell->database, id);
    else if (OxDbLayerTableRecord::cast(cell->object.get()))
        dropLayer(cell->database, id);
}

} // namespace pavo::db
