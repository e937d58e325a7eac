// The name order a symbol table keeps: sorted again after any change of
// names, and an iterator walks the order it started with.
#include <gtest/gtest.h>

#include "db_test_support.h"

#include <functional>
#include <string>

using namespace dbtest;

namespace {

std::wstring namesInOrder(OxDbDatabase& db) {
    OxDbLayerTable* table = nullptr;
    EXPECT_EQ(db.getLayerTable(table, OxDb::kForRead), Ox::eOk);
    OxDbSymbolTableIterator* it = nullptr;
    EXPECT_EQ(table->newIteratorInNameOrder(it), Ox::eOk);
    std::wstring out;
    for (; !it->done(); it->step()) {
        OxDbLayerTableRecord* layer = nullptr;
        EXPECT_EQ(it->getRecord(layer, OxDb::kForRead), Ox::eOk);
        out += layer->name().str() + L",";
        layer->close();
    }
    delete it;
    table->close();
    return out;
}

void change(const OxDbObjectId& id, const std::function<void(OxDbLayerTableRecord&)>& fn) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, id, OxDb::kForWrite, true), Ox::eOk);
    fn(*layer);
    layer->close();
}

} // namespace

TEST(TableNameOrder, FollowsAddsRenamesErasesAndUnerases) {
    OxDbDatabase db;
    addLayer(db, L"walls");
    const OxDbObjectId doors = addLayer(db, L"Doors");
    addLayer(db, L"grid");
    EXPECT_EQ(namesInOrder(db), L"0,Doors,grid,walls,");
    EXPECT_EQ(namesInOrder(db), L"0,Doors,grid,walls,"); // asked again, unchanged
    change(doors, [](OxDbLayerTableRecord& l) { EXPECT_EQ(l.setName(L"zz"), Ox::eOk); });
    EXPECT_EQ(namesInOrder(db), L"0,grid,walls,zz,");
    change(doors, [](OxDbLayerTableRecord& l) { EXPECT_EQ(l.erase(), Ox::eOk); });
    EXPECT_EQ(namesInOrder(db), L"0,grid,walls,");
    change(doors, [](OxDbLayerTableRecord& l) { EXPECT_EQ(l.erase(false), Ox::eOk); });
    addLayer(db, L"Annotation");
    EXPECT_EQ(namesInOrder(db), L"0,Annotation,grid,walls,zz,");
}

TEST(TableNameOrder, AnIteratorKeepsTheOrderItStartedWith) {
    OxDbDatabase db;
    const OxDbObjectId b = addLayer(db, L"b");
    addLayer(db, L"a");
    OxDbLayerTable* table = nullptr;
    ASSERT_EQ(db.getLayerTable(table, OxDb::kForRead), Ox::eOk);
    OxDbSymbolTableIterator* it = nullptr;
    ASSERT_EQ(table->newIteratorInNameOrder(it), Ox::eOk);
    table->close();
    // Renamed and a layer added while the walk goes on: the walk is not
    // disturbed, and sees the record under its new name where it was.
    change(b, [](OxDbLayerTableRecord& l) { EXPECT_EQ(l.setName(L"0a"), Ox::eOk); });
    addLayer(db, L"c");
    std::wstring walked;
    for (; !it->done(); it->step()) {
        OxDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(it->getRecord(layer, OxDb::kForRead), Ox::eOk);
        walked += layer->name().str() + L",";
        layer->close();
    }
    delete it;
    EXPECT_EQ(walked, L"0,a,0a,");
    EXPECT_EQ(namesInOrder(db), L"0,0a,a,c,");
}
