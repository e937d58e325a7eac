// Dictionaries, the new-drawing defaults and layouts.
#include <gtest/gtest.h>

#include "OxDbDictionary.h"
#include "OxDbLayout.h"
#include "OxDbMaterial.h"
#include "OxDbServices.h"
#include "db_test_support.h"

using namespace dbtest;

namespace {

std::vector<std::wstring> keys(OxDbDictionary* dict) {
    std::vector<std::wstring> out;
    OxDbDictionaryIterator* it = dict->newIterator();
    for (; !it->done(); it->next())
        out.emplace_back(it->name());
    delete it;
    return out;
}

TEST(Dictionaries, KeysKeepSpellingAndOrderButMatchAnyCase) {
    OxDbDatabase db;
    OxDbDictionary* named = nullptr;
    ASSERT_EQ(db.getNamedObjectsDictionary(named, OxDb::kForWrite), Ox::eOk);
    OxDbObjectId id;
    auto* custom = new OxDbDictionary();
    ASSERT_EQ(named->setAt(L"Ünïcode Ключ", custom, id), Ox::eOk);
    custom->close();
    OxDbObjectId found;
    EXPECT_EQ(named->getAt(L"üNÏCODE ключ", found), Ox::eOk);
    EXPECT_EQ(found, id);
    OxString key;
    ASSERT_EQ(named->nameAt(id, key), Ox::eOk);
    EXPECT_EQ(key, L"Ünïcode Ключ");
    EXPECT_EQ(keys(named), (std::vector<std::wstring>{L"LAYOUTS", L"PLOTSETTINGS", L"PLOTSTYLENAMES", L"LAYERSTATES",
                                                      L"MATERIALS", L"Ünïcode Ключ"}));

    ASSERT_EQ(named->setName(L"ünïcode ключ", L"Renamed"), Ox::eOk);
    EXPECT_EQ(named->setName(L"Renamed", L"layouts"), Ox::eDuplicateKey);
    EXPECT_TRUE(named->has(L"RENAMED"));
    ASSERT_EQ(named->remove(L"renamed"), Ox::eOk);
    EXPECT_FALSE(named->has(id));
    EXPECT_EQ(named->remove(L"renamed"), Ox::eKeyNotFound);
    named->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST(Dictionaries, SetAtReplacesAndErasesTheOldEntry) {
    OxDbDatabase db;
    OxDbDictionary* styles = nullptr;
    ASSERT_EQ(db.getPlotStyleNameDictionary(styles, OxDb::kForWrite), Ox::eOk);
    OxDbObjectId old, fresh;
    styles->getAt(L"Normal", old);
    auto* holder = new OxDbPlaceHolder();
    ASSERT_EQ(styles->setAt(L"NORMAL", holder, fresh), Ox::eOk);
    holder->close();
    EXPECT_TRUE(old.isErased());
    EXPECT_EQ(styles->numEntries(), 1);
    EXPECT_EQ(keys(styles), std::vector<std::wstring>{L"NORMAL"});
    auto* refused = new OxDbPlaceHolder();
    EXPECT_EQ(styles->setAt(L"", refused, fresh), Ox::eInvalidInput);
    EXPECT_FALSE(refused->isDatabaseResident()); // still the caller's
    delete refused;
    styles->close();
}

TEST(Dictionaries, ReadOpenDictionaryRefusesChanges) {
    OxDbDatabase db;
    OxDbDictionary* named = nullptr;
    ASSERT_EQ(db.getNamedObjectsDictionary(named, OxDb::kForRead), Ox::eOk);
    auto* child = new OxDbDictionary();
    OxDbObjectId id;
    EXPECT_EQ(named->setAt(L"X", child, id), Ox::eNotOpenForWrite);
    EXPECT_FALSE(child->isDatabaseResident());
    delete child;
    named->close();
    EXPECT_EQ(db.impl()->store.misuses.size(), 1u);
}

TEST(Defaults, NewDrawingContents) {
    OxDbDatabase db;
    OxDbLayerTableRecord* zero = nullptr;
    ASSERT_EQ(oxdbOpenObject(zero, db.layerZero(), OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(zero->name(), L"0");
    EXPECT_EQ(zero->color().colorIndex(), 7);
    EXPECT_EQ(zero->linetypeObjectId(), db.continuousLinetype());
    EXPECT_EQ(zero->lineWeight(), OxDb::kLnWtByLwDefault);
    EXPECT_TRUE(zero->isPlottable());
    EXPECT_EQ(zero->plotStyleName(), L"Normal");
    zero->close();

    OxDbLinetypeTableRecord* continuous = nullptr;
    ASSERT_EQ(oxdbOpenObject(continuous, db.continuousLinetype(), OxDb::kForRead), Ox::eOk);
    EXPECT_STREQ(continuous->comments(), L"Solid line");
    continuous->close();
    EXPECT_EQ(oxdbGetSymbolSvc()->getLinetypeIdContinuous(&db), db.continuousLinetype());

    EXPECT_EQ(db.clayer(), db.layerZero());
    EXPECT_EQ(db.celtype(), db.byLayerLinetype());
    EXPECT_TRUE(db.tilemode());
    EXPECT_FALSE(db.isModified());

    OxDbDictionary* layouts = nullptr;
    ASSERT_EQ(db.getLayoutDictionary(layouts, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(keys(layouts), (std::vector<std::wstring>{L"Model", L"Layout1"}));
    OxDbLayout* layout1 = nullptr;
    ASSERT_EQ(layouts->getAt(L"Layout1", layout1, OxDb::kForRead), Ox::eOk);
    layouts->close();
    EXPECT_EQ(layout1->getTabOrder(), 1);
    OxDbObjectIdArray viewports = layout1->getViewportArray();
    ASSERT_EQ(viewports.length(), 1);
    OxDbViewport* viewport = nullptr;
    ASSERT_EQ(oxdbOpenObject(viewport, viewports[0], OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(viewport->number(), 1);
    viewport->close();
    EXPECT_EQ(OxDbSystemInternals::getImpObject(layout1)->activeViewportId(), viewports[0]);
    layout1->close();

    OxDbDictionary* materials = nullptr;
    ASSERT_EQ(oxdbOpenObject(materials, db.materialDictionaryId(), OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(keys(materials), (std::vector<std::wstring>{L"ByLayer", L"ByBlock", L"Global"}));
    materials->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST(Defaults, EmptyDatabaseHasNothing) {
    OxDbDatabase db(false);
    EXPECT_TRUE(db.layerTableId().isNull());
    EXPECT_TRUE(db.namedObjectsDictionaryId().isNull());
    EXPECT_TRUE(db.layerZero().isNull());
    EXPECT_TRUE(db.clayer().isNull());
    EXPECT_TRUE(db.getPlotStyleNameDictionaryId(true).isNull()); // nowhere to put it
    OxDbLayerTable* table = nullptr;
    EXPECT_EQ(db.getLayerTable(table, OxDb::kForRead), Ox::eNullObjectId);
    EXPECT_EQ(db.impl()->store.cells.size(), 0u);
}

TEST(Layouts, CreateSwitchRenameDelete) {
    OxDbDatabase db;
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    services->setWorkingDatabase(&db);
    OxDbLayoutManager* manager = services->layoutManager();
    OxDbObjectId layoutId, blockId;
    ASSERT_EQ(manager->createLayout(L"Sheet A", layoutId, blockId), Ox::eOk);
    OxDbObjectId otherLayout, otherBlock;
    EXPECT_EQ(manager->createLayout(L"sheet a", otherLayout, otherBlock), Ox::eDuplicateKey);
    EXPECT_EQ(manager->createLayout(L"bad:name", otherLayout, otherBlock), Ox::eInvalidInput);
    EXPECT_EQ(manager->countLayouts(), 3);

    EXPECT_STREQ(manager->findActiveLayout(true), L"Model");
    EXPECT_EQ(manager->getActiveLayoutBTRId(), db.modelSpaceId());
    ASSERT_EQ(manager->setCurrentLayout(L"SHEET A"), Ox::eOk);
    EXPECT_FALSE(db.tilemode());
    EXPECT_STREQ(manager->findActiveLayout(true), L"Sheet A");
    EXPECT_EQ(db.currentSpaceId(), blockId);

    ASSERT_EQ(manager->renameLayout(L"Sheet A", L"Plan"), Ox::eOk);
    EXPECT_TRUE(manager->layoutExists(L"plan"));
    EXPECT_EQ(manager->renameLayout(L"Model", L"X"), Ox::eNotApplicable);
    ASSERT_EQ(manager->deleteLayout(L"Plan"), Ox::eOk);
    EXPECT_EQ(manager->deleteLayout(L"Layout1"), Ox::eNotApplicable); // the last paper layout stays
    EXPECT_STREQ(manager->findActiveLayout(true), L"Layout1");
    EXPECT_TRUE(blockId.isErased());
    services->setWorkingDatabase(nullptr);
    EXPECT_TRUE(nothingOpen(db));
}

} // namespace
