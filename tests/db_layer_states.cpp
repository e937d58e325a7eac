// Saving and restoring named layer states.
#include <gtest/gtest.h>

#include "OxDbDictionary.h"
#include "OxDbLayerStateManager.h"
#include "db_test_support.h"

using namespace dbtest;

namespace {

using M = OxDbLayerStateManager;

struct LayerStates : ::testing::Test {
    OxDbDatabase db;
    OxDbObjectId walls = addLayer(db, L"Walls");
    OxDbObjectId doors = addLayer(db, L"Doors");
    OxDbLayerStateManager* manager = db.getLayerStateManager();

    template <class F> void change(const OxDbObjectId& id, F f) {
        OxDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite), Ox::eOk);
        f(*layer);
        layer->close();
    }
    template <class F> void read(const OxDbObjectId& id, F f) {
        OxDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForRead), Ox::eOk);
        f(*layer);
        layer->close();
    }
};

TEST_F(LayerStates, RoundTripOfTheMaskedProperties) {
    change(walls, [](OxDbLayerTableRecord& l) {
        l.setColor(OxCmColor::fromIndex(1));
        l.setIsOff(true);
        l.setLineWeight(OxDb::kLnWt050);
        l.setTransparency(OxCmTransparency(128));
    });
    ASSERT_EQ(manager->saveLayerState(L"Before", M::kAll), Ox::eOk);
    ASSERT_EQ(manager->saveLayerState(L"ColourOnly", M::kColor), Ox::eOk);
    EXPECT_EQ(manager->saveLayerState(L"before", M::kAll), Ox::eDuplicateKey);
    EXPECT_EQ(manager->saveLayerState(L"", M::kAll), Ox::eInvalidInput);

    change(walls, [](OxDbLayerTableRecord& l) {
        l.setColor(OxCmColor::fromIndex(3));
        l.setIsOff(false);
        l.setLineWeight(OxDb::kLnWt100);
        l.setTransparency(OxCmTransparency(255));
        l.setIsFrozen(true);
    });

    ASSERT_EQ(manager->restoreLayerState(L"COLOURONLY"), Ox::eOk);
    read(walls, [](const OxDbLayerTableRecord& l) {
        EXPECT_EQ(l.color().colorIndex(), 1);
        EXPECT_FALSE(l.isOff()); // not in the mask
        EXPECT_EQ(l.lineWeight(), OxDb::kLnWt100);
    });

    ASSERT_EQ(manager->restoreLayerState(L"Before"), Ox::eOk);
    read(walls, [](const OxDbLayerTableRecord& l) {
        EXPECT_TRUE(l.isOff());
        EXPECT_FALSE(l.isFrozen());
        EXPECT_EQ(l.lineWeight(), OxDb::kLnWt050);
        EXPECT_EQ(l.transparency(), OxCmTransparency(128));
    });
    EXPECT_EQ(manager->restoreLayerState(L"Missing"), Ox::eKeyNotFound);
    EXPECT_TRUE(nothingOpen(db));
}

TEST_F(LayerStates, RestoreFindsLayersByNameAndHandlesUnknownOnes) {
    ASSERT_EQ(manager->saveLayerState(L"S", M::kOn), Ox::eOk);
    OxDbObjectId later = addLayer(db, L"Later");
    change(walls, [](OxDbLayerTableRecord& l) {
        l.setIsOff(true);
        l.setName(L"Renamed");
    });
    change(doors, [](OxDbLayerTableRecord& l) { l.setIsOff(true); });
    ASSERT_EQ(manager->restoreLayerState(L"S", OxDbObjectId(), M::kUndefTurnOff), Ox::eOk);
    read(doors, [](const OxDbLayerTableRecord& l) { EXPECT_FALSE(l.isOff()); });
    read(walls, [](const OxDbLayerTableRecord& l) { EXPECT_TRUE(l.isOff()); }); // its saved name is gone
    read(later, [](const OxDbLayerTableRecord& l) { EXPECT_TRUE(l.isOff()); });
}

TEST_F(LayerStates, SavedCurrentLayerComesBack) {
    ASSERT_EQ(db.setClayer(doors), Ox::eOk);
    ASSERT_EQ(manager->saveLayerState(L"S", M::kAll), Ox::eOk);
    ASSERT_EQ(db.setClayer(walls), Ox::eOk);
    ASSERT_EQ(manager->restoreLayerState(L"S"), Ox::eOk);
    EXPECT_EQ(db.clayer(), doors);
}

TEST_F(LayerStates, RenameDeleteAndDescription) {
    ASSERT_EQ(manager->saveLayerState(L"A", M::kAll), Ox::eOk);
    ASSERT_EQ(manager->saveLayerState(L"B", M::kAll), Ox::eOk);
    EXPECT_EQ(manager->renameLayerState(L"A", L"b"), Ox::eDuplicateKey);
    ASSERT_EQ(manager->renameLayerState(L"a", L"Renamed"), Ox::eOk);
    EXPECT_TRUE(manager->hasLayerState(L"RENAMED"));
    EXPECT_FALSE(manager->hasLayerState(L"A"));
    ASSERT_EQ(manager->setLayerStateDescription(L"renamed", L"first floor"), Ox::eOk);
    OxString text;
    ASSERT_EQ(manager->getLayerStateDescription(L"Renamed", text), Ox::eOk);
    EXPECT_EQ(text, L"first floor");
    ASSERT_EQ(manager->deleteLayerState(L"B"), Ox::eOk);
    EXPECT_EQ(manager->deleteLayerState(L"B"), Ox::eKeyNotFound);

    OxDbDictionary* states = nullptr;
    ASSERT_EQ(oxdbOpenObject(states, manager->layerStatesDictionaryId(true), OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(states->numEntries(), 1);
    states->close();
}

} // namespace
