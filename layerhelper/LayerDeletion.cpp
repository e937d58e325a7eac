#include "LayerDeletion.h"

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"

namespace vxlayer {

void markLayersInUse(OxDbDatabase* db) {
    OxDbLayerTable* table = nullptr;
    if (!db || db->getSymbolTable(table, OxDb::kForWrite) != Ox::eOk) return;
    table->generateUsageData();
    table->close();
}

DeletionRefusal deletionRefusal(const OxDbDatabase& db, const OxDbLayerTableRecord& layer,
                                const OxDbObjectId& current) {
    const OxDbObjectId id = layer.objectId();
    if (id == db.layerZero()) return DeletionRefusal::LayerZero;
    if (id == current) return DeletionRefusal::Current;
    if (layer.name().compareNoCase(L"DEFPOINTS") == 0) return DeletionRefusal::Defpoints;
    if (layer.name().find(L'|', 0) >= 0) return DeletionRefusal::ExternalReference;
    if (layer.isInUse()) return DeletionRefusal::InUse;
    return DeletionRefusal::None;
}

} // namespace vxlayer
