// Layer records, the current layer and usage data.
#include <gtest/gtest.h>

#include "OxDbDictionary.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "db_test_support.h"

using namespace dbtest;

namespace {

template <class F> void changeLayer(const OxDbObjectId& id, F change) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite), Ox::eOk);
    change(*layer);
    layer->close();
}

bool inUse(const OxDbObjectId& id) {
    OxDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(oxdbOpenObject(layer, id, OxDb::kForRead), Ox::eOk);
    const bool used = layer->isInUse();
    layer->close();
    return used;
}

TEST(Layers, CurrentLayerCannotBeFrozen) {
    OxDbDatabase db;
    changeLayer(db.layerZero(), [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    OxDbObjectId other = addLayer(db, L"Other");
    changeLayer(other, [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, db.layerZero(), OxDb::kForRead), Ox::eOk);
    EXPECT_FALSE(layer->isFrozen());
    layer->close();
    ASSERT_EQ(oxdbOpenObject(layer, other, OxDb::kForRead), Ox::eOk);
    EXPECT_TRUE(layer->isFrozen());
    layer->close();
}

TEST(Layers, SetClayerRules) {
    OxDbDatabase db;
    OxDbObjectId frozen = addLayer(db, L"Frozen");
    OxDbObjectId offLocked = addLayer(db, L"OffLocked");
    OxDbObjectId erased = addLayer(db, L"Erased");
    changeLayer(frozen, [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    changeLayer(offLocked, [](OxDbLayerTableRecord& l) {
        l.setIsOff(true);
        l.setIsLocked(true);
    });
    changeLayer(erased, [](OxDbLayerTableRecord& l) { l.erase(); });

    EXPECT_EQ(db.setClayer(OxDbObjectId()), Ox::eInvalidLayer);
    EXPECT_EQ(db.setClayer(db.continuousLinetype()), Ox::eInvalidLayer);
    EXPECT_EQ(db.setClayer(frozen), Ox::eLayerFrozen);
    EXPECT_EQ(db.setClayer(erased), Ox::eWasErased);
    EXPECT_EQ(db.clayer(), db.layerZero());
    EXPECT_EQ(db.setClayer(offLocked), Ox::eOk);
    EXPECT_EQ(db.clayer(), offLocked);
    // Now the zero layer may be frozen and the current one may not.
    changeLayer(db.layerZero(), [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    changeLayer(offLocked, [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, offLocked, OxDb::kForRead), Ox::eOk);
    EXPECT_FALSE(layer->isFrozen());
    layer->close();
}

TEST(Layers, UsageDataCoversEveryBlockAndAttributes) {
    OxDbDatabase db;
    OxDbObjectId model = addLayer(db, L"InModel");
    OxDbObjectId paper = addLayer(db, L"InPaper");
    OxDbObjectId inBlock = addLayer(db, L"InBlock");
    OxDbObjectId inAttribute = addLayer(db, L"InAttribute");
    OxDbObjectId unused = addLayer(db, L"Unused");
    OxDbObjectId defpoints = addLayer(db, L"defpoints");
    OxDbObjectId erasedOnly = addLayer(db, L"ErasedOnly");

    lineOnLayer(db, db.modelSpaceId(), model);
    OxDbDictionary* dict = nullptr;
    ASSERT_EQ(db.getLayoutDictionary(dict, OxDb::kForRead), Ox::eOk);
    OxDbLayout* layout1 = nullptr;
    ASSERT_EQ(dict->getAt(L"layout1", layout1, OxDb::kForRead), Ox::eOk);
    dict->close();
    const OxDbObjectId paperBlock = layout1->getBlockTableRecordId();
    layout1->close();
    lineOnLayer(db, paperBlock, paper);

    OxDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db.getBlockTable(blocks, OxDb::kForWrite), Ox::eOk);
    auto* definition = new OxDbBlockTableRecord();
    definition->setName(L"Door");
    OxDbObjectId definitionId;
    ASSERT_EQ(blocks->add(definitionId, definition), Ox::eOk);
    definition->close();
    blocks->close();
    lineOnLayer(db, definitionId, inBlock);

    OxDbObjectId refId = append(db.modelSpaceId(), new OxDbBlockReference(OxGePoint3d(), definitionId));
    OxDbBlockReference* reference = nullptr;
    ASSERT_EQ(oxdbOpenObject(reference, refId, OxDb::kForWrite), Ox::eOk);
    auto* attribute = new OxDbAttribute();
    attribute->setLayer(inAttribute);
    OxDbObjectId attributeId;
    ASSERT_EQ(reference->appendAttribute(attributeId, attribute), Ox::eOk);
    attribute->close();
    reference->close();

    OxDbObjectId gone = lineOnLayer(db, db.modelSpaceId(), erasedOnly);
    OxDbEntity* line = nullptr;
    ASSERT_EQ(oxdbOpenObject(line, gone, OxDb::kForWrite), Ox::eOk);
    line->erase();
    line->close();

    OxDbLayerTable* table = nullptr;
    ASSERT_EQ(db.getLayerTable(table, OxDb::kForWrite), Ox::eOk);
    table->generateUsageData();
    table->close();
    EXPECT_TRUE(inUse(model));
    EXPECT_TRUE(inUse(paper));
    EXPECT_TRUE(inUse(inBlock));
    EXPECT_TRUE(inUse(inAttribute));
    EXPECT_TRUE(inUse(defpoints));
    EXPECT_TRUE(inUse(db.layerZero()));
    EXPECT_FALSE(inUse(unused));
    EXPECT_FALSE(inUse(erasedOnly));
    EXPECT_TRUE(nothingOpen(db));
}

TEST(Layers, PlotStyleByNameMakesTheEntry) {
    OxDbDatabase db;
    OxDbObjectId id = addLayer(db, L"A");
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(layer->plotStyleName(), L"Normal"); // new layers take the default style
    layer->close();

    OxDbDictionary* styles = nullptr;
    ASSERT_EQ(db.getPlotStyleNameDictionary(styles, OxDb::kForRead), Ox::eOk); // held open meanwhile
    ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite), Ox::eOk);
    EXPECT_EQ(layer->setPlotStyleName(L"Thick"), Ox::eOk);
    EXPECT_EQ(layer->setPlotStyleName(L""), Ox::eInvalidInput);
    EXPECT_EQ(layer->plotStyleName(), L"Thick");
    layer->close();
    EXPECT_TRUE(styles->has(L"THICK"));
    EXPECT_EQ(styles->numEntries(), 2);
    styles->close();
}

TEST(Layers, ViewportOverrides) {
    OxDbDatabase db;
    OxDbObjectId id = addLayer(db, L"A");
    OxDbObjectId viewport = append(db.modelSpaceId(), new OxDbViewport());
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite), Ox::eOk);
    layer->setColor(OxCmColor::fromIndex(1), viewport);
    EXPECT_EQ(layer->setLineWeight(OxDb::kLnWt050, viewport), Ox::eOk);
    EXPECT_EQ(layer->setLineWeight(OxDb::kLnWtByLayer, viewport), Ox::eInvalidInput);
    bool isOverride = false;
    EXPECT_EQ(layer->color(viewport, isOverride), OxCmColor::fromIndex(1));
    EXPECT_TRUE(isOverride);
    EXPECT_EQ(layer->color(OxDbObjectId(), isOverride), OxCmColor::fromIndex(7));
    EXPECT_FALSE(isOverride);
    layer->removeColorOverride(viewport);
    EXPECT_TRUE(layer->hasOverrides(viewport)); // the lineweight remains
    layer->removeLineWeightOverride(viewport);
    EXPECT_FALSE(layer->hasAnyOverrides());
    layer->close();
}

TEST(Layers, DependentNames) {
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(L"site|Walls");
    EXPECT_TRUE(layer->isDependent());
    layer->setName(L"Walls");
    EXPECT_FALSE(layer->isDependent());
    delete layer;
}

} // namespace
