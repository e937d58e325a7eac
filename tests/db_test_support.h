// Shared helpers of the database tests.
#pragma once

#include <gtest/gtest.h>

#include "DbStore.h"
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"

namespace dbtest {

// Adds a layer to `db` and closes it; its id.
inline OxDbObjectId addLayer(OxDbDatabase& db, const wchar_t* name) {
    OxDbLayerTable* table = nullptr;
    EXPECT_EQ(db.getLayerTable(table, OxDb::kForWrite), Ox::eOk);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(name);
    OxDbObjectId id;
    EXPECT_EQ(table->add(id, layer), Ox::eOk);
    if (id.isNull())
        delete layer;
    else
        layer->close();
    table->close();
    return id;
}

// Appends an entity to a block and closes it; its id.
inline OxDbObjectId append(const OxDbObjectId& blockId, OxDbEntity* entity) {
    OxDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(oxdbOpenObject(block, blockId, OxDb::kForWrite), Ox::eOk);
    OxDbObjectId id;
    EXPECT_EQ(block->appendOxDbEntity(id, entity), Ox::eOk);
    entity->close();
    block->close();
    return id;
}

inline OxDbObjectId lineOnLayer(OxDbDatabase& db, const OxDbObjectId& blockId, const OxDbObjectId& layerId) {
    auto* line = new OxDbLine(OxGePoint3d(0, 0), OxGePoint3d(1, 1));
    line->setLayer(layerId);
    (void)db;
    return append(blockId, line);
}

inline bool nothingOpen(OxDbDatabase& db) { return db.impl()->store.open.empty(); }

} // namespace dbtest
