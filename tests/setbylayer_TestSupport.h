// Drawings for the SETBYLAYER tests: objects with explicit and ByBlock
// properties, block definitions and references, read back after a run.
#pragma once

#include <cstdlib>
#include <functional>

#include "OxDbMaterial.h"
#include "layer_TestSupport.h"

namespace setbylayertest {

using layertest::layerId;

// Adds block definition `name`; `fill` appends its entities.
inline OxDbObjectId addBlock(OxDbDatabase* db, const wchar_t* name,
                             const std::function<void(OxDbBlockTableRecord&)>& fill = {}) {
    OxDbBlockTable* table = nullptr;
    EXPECT_EQ(db->getBlockTable(table, OxDb::kForWrite), Ox::eOk);
    auto* block = new OxDbBlockTableRecord();
    block->setName(name);
    OxDbObjectId id;
    EXPECT_EQ(table->add(id, block), Ox::eOk);
    table->close();
    if (fill) fill(*block);
    block->close();
    return id;
}

// Appends `entity` to the open `block` after `setup` gave it its properties.
template <class E>
OxDbObjectId appendTo(OxDbBlockTableRecord& block, E* entity, const std::function<void(E&)>& setup = {}) {
    if (setup) setup(*entity);
    OxDbObjectId id;
    EXPECT_EQ(block.appendOxDbEntity(id, entity), Ox::eOk);
    entity->close();
    return id;
}

// A line in model space at (x, y), given its properties by `setup`.
inline OxDbObjectId modelLine(OxDbDatabase* db, double x, double y,
                              const std::function<void(OxDbLine&)>& setup = {}) {
    auto* line = new OxDbLine(OxGePoint3d(x, y), OxGePoint3d(x + 1, y + 1));
    if (setup) setup(*line);
    return dbtest::append(db->modelSpaceId(), line);
}

// A reference to `block` in model space at (x, y).
inline OxDbObjectId modelReference(OxDbDatabase* db, const OxDbObjectId& block, double x, double y,
                                   const std::function<void(OxDbBlockReference&)>& setup = {}) {
    auto* reference = new OxDbBlockReference(OxGePoint3d(x, y), block);
    if (setup) setup(*reference);
    return dbtest::append(db->modelSpaceId(), reference);
}

// Reads an entity's property.
template <class T> T readEntity(const OxDbObjectId& id, const std::function<T(const OxDbEntity&)>& read) {
    OxDbEntity* entity = nullptr;
    EXPECT_EQ(oxdbOpenObject(entity, id, OxDb::kForRead), Ox::eOk);
    if (!entity) return T();
    T value = read(*entity);
    entity->close();
    return value;
}

inline OxCmColor colorOf(const OxDbObjectId& id) {
    return readEntity<OxCmColor>(id, [](const OxDbEntity& e) { return e.color(); });
}

// Changes an entity that is already in the drawing.
inline void changeEntity(const OxDbObjectId& id, const std::function<void(OxDbEntity&)>& change) {
    OxDbEntity* entity = nullptr;
    ASSERT_EQ(oxdbOpenObject(entity, id, OxDb::kForWrite), Ox::eOk);
    change(*entity);
    entity->close();
}

// Sessions that may show dialogs, on Qt's offscreen platform.
inline pavo::app::SessionOptions dialogOptions() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.noDialogs = false;
    return options;
}

// The regeneration requests recorded in the drawing.
inline const std::vector<OxDbObjectId>& regenQueue(OxDbDatabase* db) { return db->impl()->regenQueue; }

} // namespace setbylayertest
