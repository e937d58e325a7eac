// Shared helpers of the layer command tests: building a drawing's layers
// and objects before a scripted session runs, and reading them back after.
#pragma once

#include <functional>
#include <string>

#include "SessionHarness.h"
#include "db_test_support.h"

namespace layertest {

// The id of layer `name` (null when absent).
inline OxDbObjectId layerId(OxDbDatabase* db, const wchar_t* name) {
    OxDbLayerTable* table = nullptr;
    OxDbObjectId id;
    if (db->getLayerTable(table, OxDb::kForRead) != Ox::eOk) return id;
    table->getIdAt(name, id);
    table->close();
    return id;
}

inline bool hasLayer(OxDbDatabase* db, const wchar_t* name) { return !layerId(db, name).isNull(); }

// Reads a property of layer `name`; the layer must exist.
template <class T>
T readLayer(OxDbDatabase* db, const wchar_t* name, const std::function<T(const OxDbLayerTableRecord&)>& read) {
    OxDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(oxdbOpenObject(layer, layerId(db, name), OxDb::kForRead), Ox::eOk) << "layer missing";
    if (!layer) return T();
    T value = read(*layer);
    layer->close();
    return value;
}

inline bool isOff(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<bool>(db, name, [](const OxDbLayerTableRecord& l) { return l.isOff(); });
}
inline bool isFrozen(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<bool>(db, name, [](const OxDbLayerTableRecord& l) { return l.isFrozen(); });
}
inline bool isLocked(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<bool>(db, name, [](const OxDbLayerTableRecord& l) { return l.isLocked(); });
}
inline std::string description(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<std::string>(db, name, [](const OxDbLayerTableRecord& l) { return l.description().utf8(); });
}

// The current layer's name.
inline std::string currentLayer(OxDbDatabase* db) {
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, db->clayer(), OxDb::kForRead) != Ox::eOk) return "";
    std::string name = layer->name().utf8();
    layer->close();
    return name;
}

// Adds layer `name` and lets `setup` change it before it is closed.
inline OxDbObjectId addLayer(OxDbDatabase* db, const wchar_t* name,
                             const std::function<void(OxDbLayerTableRecord&)>& setup = {}) {
    const OxDbObjectId id = dbtest::addLayer(*db, name);
    if (setup && !id.isNull()) {
        OxDbLayerTableRecord* layer = nullptr;
        EXPECT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite), Ox::eOk);
        setup(*layer);
        layer->close();
    }
    return id;
}

// A line in model space from (x, y) to (x + 1, y + 1) on layer `name`.
inline OxDbObjectId addLine(OxDbDatabase* db, const wchar_t* name, double x, double y) {
    auto* line = new OxDbLine(OxGePoint3d(x, y), OxGePoint3d(x + 1, y + 1));
    line->setLayer(layerId(db, name));
    return dbtest::append(db->modelSpaceId(), line);
}

} // namespace layertest
