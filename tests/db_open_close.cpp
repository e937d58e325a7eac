// The open and close rules of database objects.
#include <gtest/gtest.h>

#include "db_test_support.h"

using namespace dbtest;

namespace {

struct OpenClose : ::testing::Test {
    OxDbDatabase db;
    OxDbObjectId layerId = addLayer(db, L"Walls");
};

TEST_F(OpenClose, ManyReadersButOneWriter) {
    OxDbLayerTableRecord *a = nullptr, *b = nullptr, *w = nullptr;
    ASSERT_EQ(oxdbOpenObject(a, layerId, OxDb::kForRead), Ox::eOk);
    ASSERT_EQ(oxdbOpenObject(b, layerId, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(oxdbOpenObject(w, layerId, OxDb::kForWrite), Ox::eWasOpenForRead);
    EXPECT_EQ(w, nullptr);
    a->close();
    EXPECT_EQ(oxdbOpenObject(w, layerId, OxDb::kForWrite), Ox::eWasOpenForRead);
    b->close();
    ASSERT_EQ(oxdbOpenObject(w, layerId, OxDb::kForWrite), Ox::eOk);
    EXPECT_EQ(oxdbOpenObject(a, layerId, OxDb::kForRead), Ox::eWasOpenForWrite);
    EXPECT_EQ(oxdbOpenObject(b, layerId, OxDb::kForWrite), Ox::eWasOpenForWrite);
    w->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST_F(OpenClose, UpgradeNeedsTheOnlyReader) {
    OxDbLayerTableRecord *a = nullptr, *b = nullptr;
    ASSERT_EQ(oxdbOpenObject(a, layerId, OxDb::kForRead), Ox::eOk);
    ASSERT_EQ(oxdbOpenObject(b, layerId, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(a->upgradeOpen(), Ox::eHadMultipleReaders);
    b->close();
    ASSERT_EQ(a->upgradeOpen(), Ox::eOk);
    EXPECT_TRUE(a->isWriteEnabled());
    EXPECT_EQ(oxdbOpenObject(b, layerId, OxDb::kForRead), Ox::eWasOpenForWrite);
    ASSERT_EQ(a->downgradeOpen(), Ox::eOk);
    EXPECT_FALSE(a->isWriteEnabled());
    ASSERT_EQ(oxdbOpenObject(b, layerId, OxDb::kForRead), Ox::eOk); // readers may join again
    b->close();
    a->close();
    EXPECT_TRUE(nothingOpen(db));
    EXPECT_EQ(a->downgradeOpen(), Ox::eNotOpenForWrite);
}

TEST_F(OpenClose, NullAndWrongClass) {
    OxDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(oxdbOpenObject(layer, OxDbObjectId(), OxDb::kForRead), Ox::eNullObjectId);
    OxDbLinetypeTableRecord* linetype = nullptr;
    EXPECT_EQ(oxdbOpenObject(linetype, layerId, OxDb::kForRead), Ox::eNotThatKindOfClass);
    EXPECT_EQ(linetype, nullptr);
    OxDbSymbolTableRecord* base = nullptr; // a base class is fine
    ASSERT_EQ(oxdbOpenObject(base, layerId, OxDb::kForRead), Ox::eOk);
    base->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST_F(OpenClose, ErasedObjectsOpenOnlyWhenAsked) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForWrite), Ox::eOk);
    ASSERT_EQ(layer->erase(), Ox::eOk);
    EXPECT_EQ(layer->erase(), Ox::eWasErased);
    layer->close();
    EXPECT_TRUE(layerId.isErased());
    EXPECT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForRead), Ox::eWasErased);
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForWrite, true), Ox::eOk);
    EXPECT_EQ(layer->erase(false), Ox::eOk);
    layer->close();
    EXPECT_FALSE(layerId.isErased());
}

TEST_F(OpenClose, EraseNeedsWriteOpen) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(layer->erase(), Ox::eNotOpenForWrite);
    layer->close();
    EXPECT_FALSE(layerId.isErased());
}

TEST_F(OpenClose, LockedLayerRefusesWriteOfItsEntities) {
    OxDbObjectId line = lineOnLayer(db, db.modelSpaceId(), layerId);
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForWrite), Ox::eOk);
    layer->setIsLocked(true);
    layer->close();

    OxDbEntity* entity = nullptr;
    EXPECT_EQ(oxdbOpenObject(entity, line, OxDb::kForWrite), Ox::eOnLockedLayer);
    ASSERT_EQ(oxdbOpenObject(entity, line, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(entity->upgradeOpen(), Ox::eOnLockedLayer);
    entity->close();
    // The layer record itself stays editable.
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForWrite), Ox::eOk);
    layer->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST_F(OpenClose, SetterWithoutWriteOpenIsAMisuseAndChangesNothing) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, layerId, OxDb::kForRead), Ox::eOk);
    layer->setIsOff(true);
    EXPECT_EQ(layer->setDescription(L"x"), Ox::eNotOpenForWrite);
    EXPECT_FALSE(layer->isOff());
    EXPECT_EQ(layer->description(), L"");
    layer->close();
    EXPECT_EQ(db.impl()->store.misuses.size(), 2u);
    EXPECT_EQ(layer->close(), Ox::eNotApplicable); // a close too many is a misuse too
    EXPECT_EQ(db.impl()->store.misuses.size(), 3u);
}

TEST_F(OpenClose, NonResidentObjectsChangeFreely) {
    auto* layer = new OxDbLayerTableRecord();
    layer->setIsOff(true);
    EXPECT_EQ(layer->setDescription(L"free"), Ox::eOk);
    EXPECT_TRUE(layer->isOff());
    EXPECT_TRUE(layer->isNewObject());
    delete layer;
    EXPECT_TRUE(db.impl()->store.misuses.empty());
}

TEST_F(OpenClose, AddLeavesTheRecordOpenForWrite) {
    OxDbLayerTable* table = nullptr;
    ASSERT_EQ(db.getLayerTable(table, OxDb::kForWrite), Ox::eOk);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(L"Doors");
    OxDbObjectId id;
    ASSERT_EQ(table->add(id, layer), Ox::eOk);
    table->close();
    EXPECT_TRUE(layer->isWriteEnabled());
    EXPECT_EQ(layer->ownerId(), db.layerTableId());
    OxDbLayerTableRecord* again = nullptr;
    EXPECT_EQ(oxdbOpenObject(again, id, OxDb::kForRead), Ox::eWasOpenForWrite);
    layer->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST_F(OpenClose, AddNeedsTheTableOpenForWrite) {
    OxDbLayerTable* table = nullptr;
    ASSERT_EQ(db.getLayerTable(table, OxDb::kForRead), Ox::eOk);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(L"Doors");
    EXPECT_EQ(table->add(layer), Ox::eNotOpenForWrite);
    EXPECT_FALSE(layer->isDatabaseResident());
    EXPECT_FALSE(table->has(L"Doors"));
    table->close();
    delete layer;
}

TEST_F(OpenClose, IdsOrderByHandle) {
    OxDbObjectId later = addLayer(db, L"Later");
    EXPECT_LT(layerId, later);
    EXPECT_LT(layerId.handle(), later.handle());
    EXPECT_EQ(layerId.database(), &db);
    EXPECT_TRUE(layerId.isValid());
    EXPECT_FALSE(OxDbObjectId::kNull.isValid());
}

} // namespace
