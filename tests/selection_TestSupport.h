// Building small drawings for the selection and command tests.
#pragma once

#include <string>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"

namespace pavotest {

// Appends `entity` to model space on `layer`; its id.
inline OxDbObjectId addToModel(OxDbDatabase* db, OxDbEntity* entity, OxDbObjectId layer = OxDbObjectId()) {
    OxDbBlockTableRecord* model = nullptr;
    oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForWrite);
    entity->setLayer(layer.isNull() ? db->layerZero() : layer);
    OxDbObjectId id;
    model->appendOxDbEntity(id, entity);
    entity->close();
    model->close();
    return id;
}

inline OxDbObjectId addLayer(OxDbDatabase* db, const wchar_t* name, bool off = false, bool frozen = false) {
    OxDbLayerTable* table = nullptr;
    db->getLayerTable(table, OxDb::kForWrite);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(name);
    layer->setIsOff(off);
    layer->setIsFrozen(frozen);
    OxDbObjectId id;
    table->add(id, layer);
    layer->close();
    table->close();
    return id;
}

inline std::wstring handleOf(const OxDbObjectId& id) { return id.handle().toString(); }

} // namespace pavotest
