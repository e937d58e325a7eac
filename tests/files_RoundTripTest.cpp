// Loading and saving drawings: the sample, and a drawing built through the API.
#include <cmath>

#include "DbBuild.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayerStateManager.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "files_TestSupport.h"

namespace pavo::files::test {
namespace {

using pavo::db::peek;

OxDbObjectId layerNamed(OxDbDatabase& db, const wchar_t* name) {
    OxDbObjectId id;
    peek<OxDbLayerTable>(db.layerTableId())->getIdAt(name, id);
    return id;
}

TEST(DrawingFiles, SampleLoadsWithItsContent) {
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    EXPECT_EQ(db->clayer(), db->layerZero());
    EXPECT_EQ(peek<OxDbLayerTable>(db->layerTableId())->numEntries(), 26);
    const auto* wall = peek<OxDbLayerTableRecord>(layerNamed(*db, L"a-wall"));
    ASSERT_TRUE(wall);
    EXPECT_EQ(wall->lineWeight(), OxDb::kLnWt050);
    EXPECT_EQ(wall->plotStyleName(), OxString(L"Thick"));
    EXPECT_TRUE(wall->hasAnyOverrides());
    const auto* power = peek<OxDbLayerTableRecord>(layerNamed(*db, L"E-POWR"));
    ASSERT_TRUE(power && power->color().hasBookName());
    EXPECT_EQ(OxString(power->color().colorName()), OxString(L"RAL 3020"));
    EXPECT_FALSE(peek<OxDbLayerTableRecord>(layerNamed(*db, L"DEFPOINTS"))->isPlottable());

    const auto* layouts = peek<OxDbDictionary>(db->layoutDictionaryId());
    OxDbObjectId planId;
    ASSERT_EQ(layouts->getAt(L"A1 Plan", planId), Ox::eOk);
    const auto* plan = peek<OxDbLayout>(planId);
    const OxDbObjectIdArray viewports = plan->getViewportArray();
    ASSERT_EQ(viewports.length(), 3);
    const auto* detail = peek<OxDbViewport>(viewports[2]);
    EXPECT_EQ(detail->number(), 3);
    EXPECT_TRUE(detail->isLayerFrozenInViewport(layerNamed(*db, L"A-FURN")));
    EXPECT_EQ(plan->activeViewportId(), viewports[1]);
    EXPECT_EQ(peek<OxDbBlockTableRecord>(db->modelSpaceId())->numEntities(), 65);
}

TEST(DrawingFiles, LoadSaveLoadSaveIsStable) {
    auto first = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(first);
    const std::string saved = writeDrawing(*first);
    auto second = loadOrFail(saved);
    ASSERT_TRUE(second);
    EXPECT_EQ(writeDrawing(*second), saved);
    EXPECT_EQ(second->handseed(), first->handseed());
}

// Every entity kind, overrides and a layer state, made through the API.
TEST(DrawingFiles, DrawingBuiltThroughTheApiRoundTrips) {
    OxDbDatabase db;
    OxDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getLayerTable(layers, OxDb::kForWrite), Ox::eOk);
    auto* red = new OxDbLayerTableRecord;
    red->setName(L"Rot \u00e9 \u00df");
    red->setColor(OxCmColor::fromIndex(static_cast<std::uint16_t>(-5)));
    red->setLineWeight(OxDb::kLnWt211);
    red->setTransparency(OxCmTransparency(10));
    red->setDescription(L"tab\there / slash ~ tilde");
    OxDbObjectId redId;
    ASSERT_EQ(layers->add(redId, red), Ox::eOk);
    red->close();
    layers->close();

    OxDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(oxdbOpenObject(model, db.modelSpaceId(), OxDb::kForWrite), Ox::eOk);
    std::vector<OxDbEntity*> entities;
    auto* line = new OxDbLine(OxGePoint3d(0.1, 1e-300, -0.0), OxGePoint3d(1e300, 2.5, 3));
    line->setColor(OxCmColor::fromRgb(1, 2, 3));
    line->setLineWeight(OxDb::kLnWtByBlock);
    line->setLinetypeScale(0.3);
    line->setVisibility(false);
    entities.push_back(line);
    entities.push_back(new OxDbCircle(OxGePoint3d(1, 2), 1.0 / 3));
    entities.push_back(new OxDbArc(OxGePoint3d(1, 2, 3), 4, 0.1, M_PI));
    auto* pline = new OxDbPolyline;
    pline->setVertices({{OxGePoint2d(0, 0), 0.5}, {OxGePoint2d(10, 0), 0}});
    pline->setClosed(true);
    pline->setConstantWidth(2);
    entities.push_back(pline);
    entities.push_back(new OxDbPoint(OxGePoint3d(5, 5, 5)));
    entities.push_back(new OxDbText(OxGePoint3d(1, 1), L"\u4e2d\u6587 text", 3.5, 0.25));
    auto* attdef = new OxDbAttributeDefinition;
    attdef->setTag(L"TAG");
    attdef->setPrompt(L"Prompt");
    entities.push_back(attdef);
    for (OxDbEntity* e : entities) {
        e->setLayer(redId);
        ASSERT_EQ(model->appendOxDbEntity(e), Ox::eOk);
        e->close();
    }
    OxDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db.getBlockTable(blocks, OxDb::kForWrite), Ox::eOk);
    auto* part = new OxDbBlockTableRecord;
    part->setName(L"PART");
    OxDbObjectId partId;
    ASSERT_EQ(blocks->add(partId, part), Ox::eOk);
    part->close();
    blocks->close();
    auto* ref = new OxDbBlockReference(OxGePoint3d(7, 8), partId);
    ref->setScaleFactors(OxGeScale3d{2, 3, 4});
    ASSERT_EQ(model->appendOxDbEntity(ref), Ox::eOk);
    auto* attribute = new OxDbAttribute;
    attribute->setTag(L"TAG");
    attribute->setTextString(L"value");
    OxDbObjectId attributeId;
    ASSERT_EQ(ref->appendAttribute(attributeId, attribute), Ox::eOk);
    attribute->close();
    ref->close();
    model->close();

    // An override keyed by the paper-space layout's first viewport.
    const OxDbObjectId layoutId = db.impl()->currentLayout;
    const OxDbObjectIdArray viewports = peek<OxDbLayout>(layoutId)->getViewportArray();
    ASSERT_GE(viewports.length(), 1);
    ASSERT_EQ(oxdbOpenObject(red, redId, OxDb::kForWrite), Ox::eOk);
    red->setColor(OxCmColor::fromIndex(3), viewports[0]);
    red->setLineWeight(OxDb::kLnWt030, viewports[0]);
    red->close();
    ASSERT_EQ(db.getLayerStateManager()->saveLayerState(L"Saved", OxDbLayerStateManager::kAll), Ox::eOk);

    const std::string saved = writeDrawing(db);
    auto loaded = loadOrFail(saved);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(writeDrawing(*loaded), saved);

    const auto* back = peek<OxDbLayerTableRecord>(layerNamed(*loaded, L"ROT \u00c9 \u00df"));
    ASSERT_TRUE(back);
    EXPECT_EQ(static_cast<std::int16_t>(back->color().colorIndex()), -5);
    EXPECT_EQ(back->description(), OxString(L"tab\there / slash ~ tilde"));
    bool isOverride = false;
    const OxDbObjectId loadedViewport(loaded->impl()->store.cellForHandle(viewports[0].handle().value()));
    EXPECT_EQ(back->color(loadedViewport, isOverride), OxCmColor::fromIndex(3));
    EXPECT_TRUE(isOverride);
    const OxDbObjectId lineId(loaded->impl()->store.cellForHandle(line->getDbHandle().value()));
    const auto* loadedLine = peek<OxDbLine>(lineId);
    ASSERT_TRUE(loadedLine);
    EXPECT_EQ(loadedLine->startPoint().y, 1e-300);
    EXPECT_EQ(loadedLine->endPoint().x, 1e300);
    EXPECT_FALSE(loadedLine->visibility());
}

} // namespace
} // namespace pavo::files::test
