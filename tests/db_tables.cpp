// Symbol tables: name index, iteration order, renaming, erased records.
#include <gtest/gtest.h>

#include "db_test_support.h"

#include <cwctype>
#include <string>
#include <vector>

using namespace dbtest;

namespace {

OxDbLayerTable* layers(OxDbDatabase& db, OxDb::OpenMode mode = OxDb::kForRead) {
    OxDbLayerTable* table = nullptr;
    EXPECT_EQ(db.getLayerTable(table, mode), Ox::eOk);
    return table;
}

TEST(Tables, LookupIgnoresCaseInEveryScript) {
    OxDbDatabase db;
    OxDbObjectId greek = addLayer(db, L"ΣΟΦΙΑ");
    OxDbObjectId cyrillic = addLayer(db, L"Стены");
    OxDbObjectId latin = addLayer(db, L"Straße");
    OxDbLayerTable* table = layers(db);
    OxDbObjectId id;
    EXPECT_EQ(table->getIdAt(L"σοφια", id), Ox::eOk);
    EXPECT_EQ(id, greek);
    EXPECT_EQ(table->getIdAt(L"σοφιας", id), Ox::eKeyNotFound);
    EXPECT_EQ(table->getIdAt(L"СТЕНЫ", id), Ox::eOk);
    EXPECT_EQ(id, cyrillic);
    EXPECT_EQ(table->getIdAt(L"STRASSE", id), Ox::eKeyNotFound); // simple folding only
    EXPECT_EQ(table->getIdAt(L"STRAßE", id), Ox::eOk);
    EXPECT_EQ(id, latin);
    EXPECT_EQ(table->getIdAt(nullptr, id), Ox::eInvalidInput);
    table->close();
}

TEST(Tables, DuplicateNamesAreRefusedWhateverTheirCase) {
    OxDbDatabase db;
    addLayer(db, L"Стены");
    OxDbLayerTable* table = layers(db, OxDb::kForWrite);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(L"СТЕНЫ");
    EXPECT_EQ(table->add(layer), Ox::eDuplicateRecordName);
    layer->setName(L"bad:name");
    EXPECT_EQ(table->add(layer), Ox::eInvalidSymbolTableName);
    EXPECT_FALSE(layer->isDatabaseResident());
    delete layer;
    table->close();
    EXPECT_TRUE(nothingOpen(db));
}

TEST(Tables, IterationFollowsInsertionAndSkipsErased) {
    OxDbDatabase db;
    addLayer(db, L"c");
    OxDbObjectId a = addLayer(db, L"a");
    addLayer(db, L"b");
    OxDbLayerTableRecord* rec = nullptr;
    ASSERT_EQ(oxdbOpenObject(rec, a, OxDb::kForWrite), Ox::eOk);
    ASSERT_EQ(rec->erase(), Ox::eOk);
    rec->close();

    auto names = [&](bool skipDeleted) {
        std::wstring out;
        OxDbLayerTable* table = layers(db);
        OxDbSymbolTableIterator* it = nullptr;
        table->newIterator(it, true, skipDeleted);
        for (; !it->done(); it->step(true, skipDeleted)) {
            OxDbLayerTableRecord* layer = nullptr;
            EXPECT_EQ(it->getRecord(layer, OxDb::kForRead, true), Ox::eOk);
            out += layer->name().str() + L",";
            layer->close();
        }
        delete it;
        table->close();
        return out;
    };
    EXPECT_EQ(names(true), L"0,c,b,");
    EXPECT_EQ(names(false), L"0,c,a,b,");
    OxDbLayerTable* table = layers(db);
    EXPECT_EQ(table->numEntries(), 3);
    table->close();
}

TEST(Tables, ErasedNamesCanBeReusedAndStillFound) {
    OxDbDatabase db;
    OxDbObjectId old = addLayer(db, L"Temp");
    OxDbLayerTableRecord* rec = nullptr;
    ASSERT_EQ(oxdbOpenObject(rec, old, OxDb::kForWrite), Ox::eOk);
    ASSERT_EQ(rec->erase(), Ox::eOk);
    rec->close();

    OxDbLayerTable* table = layers(db);
    OxDbObjectId id;
    EXPECT_EQ(table->getIdAt(L"temp", id), Ox::eKeyNotFound);
    EXPECT_FALSE(table->has(L"Temp"));
    EXPECT_EQ(table->getIdAt(L"temp", id, true), Ox::eOk);
    EXPECT_EQ(id, old);
    table->close();

    OxDbObjectId fresh = addLayer(db, L"TEMP");
    ASSERT_FALSE(fresh.isNull());
    table = layers(db);
    EXPECT_EQ(table->getIdAt(L"temp", id, true), Ox::eOk);
    EXPECT_EQ(id, fresh); // the live record wins
    table->close();

    // Unerasing the old record now collides with the new one.
    ASSERT_EQ(oxdbOpenObject(rec, old, OxDb::kForWrite, true), Ox::eOk);
    EXPECT_EQ(rec->erase(false), Ox::eDuplicateRecordName);
    EXPECT_TRUE(rec->isErased());
    rec->close();
}

TEST(Tables, RenameMovesTheIndex) {
    OxDbDatabase db;
    OxDbObjectId walls = addLayer(db, L"Walls");
    addLayer(db, L"Doors");
    OxDbLayerTableRecord* rec = nullptr;
    ASSERT_EQ(oxdbOpenObject(rec, walls, OxDb::kForWrite), Ox::eOk);
    EXPECT_EQ(rec->setName(L"DOORS"), Ox::eDuplicateRecordName);
    EXPECT_EQ(rec->setName(L"a|b*"), Ox::eInvalidSymbolTableName);
    EXPECT_EQ(rec->name(), L"Walls");
    EXPECT_EQ(rec->setName(L"WALLS"), Ox::eOk); // its own name in another case
    EXPECT_EQ(rec->setName(L"Murs"), Ox::eOk);
    rec->close();

    OxDbLayerTable* table = layers(db);
    OxDbObjectId id;
    EXPECT_EQ(table->getIdAt(L"walls", id), Ox::eKeyNotFound);
    EXPECT_EQ(table->getIdAt(L"MURS", id), Ox::eOk);
    EXPECT_EQ(id, walls);
    table->close();
}

TEST(Tables, ProtectedRecordsCannotBeErased) {
    OxDbDatabase db;
    OxDbLayerTableRecord* zero = nullptr;
    ASSERT_EQ(oxdbOpenObject(zero, db.layerZero(), OxDb::kForWrite), Ox::eOk);
    EXPECT_EQ(zero->erase(), Ox::eCannotBeErasedByCaller);
    zero->close();
}

TEST(Tables, BlocksKeepTheirEntitiesInOrder) {
    OxDbDatabase db;
    OxDbObjectId l1 = lineOnLayer(db, db.modelSpaceId(), db.layerZero());
    OxDbObjectId l2 = append(db.modelSpaceId(), new OxDbCircle(OxGePoint3d(5, 5), 2));
    OxDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(oxdbOpenObject(block, db.modelSpaceId(), OxDb::kForRead), Ox::eOk);
    OxDbBlockTableRecordIterator* it = nullptr;
    block->newIterator(it);
    std::vector<OxDbObjectId> ids;
    for (; !it->done(); it->step()) {
        OxDbObjectId id;
        it->getEntityId(id);
        ids.push_back(id);
    }
    delete it;
    EXPECT_EQ(ids, (std::vector<OxDbObjectId>{l1, l2}));
    EXPECT_EQ(block->numEntities(), 2);
    block->close();

    // An entity made without a layer takes the current layer.
    OxDbEntity* circle = nullptr;
    ASSERT_EQ(oxdbOpenObject(circle, l2, OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(circle->layerId(), db.clayer());
    EXPECT_EQ(circle->ownerId(), db.modelSpaceId());
    circle->close();
}

TEST(Tables, ManyLayersLoadQuickly) {
    OxDbDatabase db;
    OxDbLayerTable* table = layers(db, OxDb::kForWrite);
    for (int i = 0; i < 20000; ++i) {
        auto* layer = new OxDbLayerTableRecord();
        layer->setName((L"Layer" + std::to_wstring(i)).c_str());
        ASSERT_EQ(table->add(layer), Ox::eOk);
        layer->close();
    }
    OxDbObjectId id;
    EXPECT_EQ(table->getIdAt(L"LAYER19999", id), Ox::eOk);
    EXPECT_EQ(table->numEntries(), 20001);
    table->close();
    EXPECT_TRUE(nothingOpen(db));
}

// Erasing, restoring and renaming many records in a dense index (names
// whose slots collide and wrap around) must leave every live name found and
// every other one not found.
TEST(Tables, IndexSurvivesChurn) {
    OxDbDatabase db;
    std::vector<OxDbObjectId> ids;
    std::vector<std::wstring> names; // each record's current name
    std::vector<bool> live;
    for (int i = 0; i < 600; ++i) {
        names.push_back(L"L" + std::to_wstring(i));
        ids.push_back(addLayer(db, names.back().c_str()));
        live.push_back(true);
    }
    std::uint32_t seed = 12345;
    auto next = [&] { return seed = seed * 1103515245u + 12345u, (seed >> 8) % 600; };
    for (int step = 0; step < 3000; ++step) {
        const std::size_t i = next();
        OxDbLayerTableRecord* rec = nullptr;
        ASSERT_EQ(oxdbOpenObject(rec, ids[i], OxDb::kForWrite, true), Ox::eOk);
        if (step % 3 == 2 && live[i]) {
            // A new name, in another case than it is looked up in below.
            const std::wstring renamed = L"r" + std::to_wstring(step);
            ASSERT_EQ(rec->setName(renamed.c_str()), Ox::eOk);
            names[i] = renamed;
        } else {
            // Restoring fails only while another live record has the name.
            const Ox::ErrorStatus es = rec->erase(live[i]);
            if (es == Ox::eOk) live[i] = !live[i];
        }
        rec->close();
        if (step % 100 != 99) continue;
        OxDbLayerTable* table = layers(db);
        int expected = 1; // layer "0"
        for (std::size_t k = 0; k < ids.size(); ++k) {
            std::wstring upper = names[k];
            for (wchar_t& ch : upper)
                ch = static_cast<wchar_t>(std::towupper(ch));
            OxDbObjectId found;
            const Ox::ErrorStatus es = table->getIdAt(upper.c_str(), found);
            if (live[k]) {
                ++expected;
                EXPECT_EQ(es, Ox::eOk) << "step " << step << " record " << k;
                EXPECT_EQ(found, ids[k]);
            } else if (es == Ox::eOk) {
                EXPECT_NE(found, ids[k]) << "erased record found, step " << step;
            }
        }
        EXPECT_EQ(table->numEntries(), expected);
        table->close();
    }
    EXPECT_TRUE(nothingOpen(db));
}

} // namespace
