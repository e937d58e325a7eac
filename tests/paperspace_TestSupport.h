// Reading and preparing layouts, viewports and per-viewport layer settings
// for the paper space and VPLAYER tests.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "db/PaperSpace.h"
#include "layer_TestSupport.h"

namespace papertest {

using layertest::layerId;

// Viewport `number` of layout `layout` (null when either is missing).
inline OxDbObjectId viewportOf(OxDbDatabase* db, const wchar_t* layout, int number) {
    OxDbLayout* l = nullptr;
    const OxDbObjectId layoutId = oxdbHostApplicationServices()->layoutManager()->findLayoutNamed(layout, db);
    if (oxdbOpenObject(l, layoutId, OxDb::kForRead) != Ox::eOk) return OxDbObjectId();
    const OxDbObjectId id = pavo::db::viewportNumbered(*l, number);
    l->close();
    return id;
}

// The names of the layers frozen in a viewport, in order.
inline std::vector<std::string> frozenIn(const OxDbObjectId& viewportId) {
    std::vector<std::string> names;
    OxDbViewport* viewport = nullptr;
    EXPECT_EQ(oxdbOpenObject(viewport, viewportId, OxDb::kForRead), Ox::eOk);
    if (!viewport) return names;
    OxDbObjectIdArray ids;
    viewport->getFrozenLayerList(ids);
    viewport->close();
    for (const OxDbObjectId& id : ids) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) {
            names.push_back("?");
            continue;
        }
        names.push_back(layer->name().utf8());
        layer->close();
    }
    return names;
}

inline void freezeIn(OxDbDatabase* db, const OxDbObjectId& viewportId, const wchar_t* layer) {
    OxDbViewport* viewport = nullptr;
    ASSERT_EQ(oxdbOpenObject(viewport, viewportId, OxDb::kForWrite), Ox::eOk);
    OxDbObjectIdArray ids;
    ids.append(layerId(db, layer));
    viewport->freezeLayersInViewport(ids);
    viewport->close();
}

// The overrides of layer `layer` in a viewport (an empty set when none).
inline OxDbLayerViewportOverrides overridesOf(OxDbDatabase* db, const wchar_t* layer, const OxDbObjectId& viewportId) {
    OxDbLayerViewportOverrides found;
    OxDbLayerTableRecord* record = nullptr;
    EXPECT_EQ(oxdbOpenObject(record, layerId(db, layer), OxDb::kForRead), Ox::eOk);
    if (!record) return found;
    found = record->viewportOverrides(viewportId);
    record->close();
    return found;
}

inline bool vpdflt(OxDbDatabase* db, const wchar_t* layer) {
    return layertest::readLayer<bool>(db, layer, [](const OxDbLayerTableRecord& l) { return l.VPDFLT(); });
}

} // namespace papertest
