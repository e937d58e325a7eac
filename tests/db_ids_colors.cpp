// Handles, entity names, colours, symbol names, runtime classes and the
// reader's way of building a database.
#include <gtest/gtest.h>

#include "DbBuild.h"
#include "OxDbServices.h"
#include "db_test_support.h"

using namespace dbtest;

namespace {

TEST(Handles, TextRoundTrip) {
    OxDbHandle h;
    EXPECT_TRUE(OxDbHandle::parse(L"1f", h));
    EXPECT_EQ(h.value(), 0x1Fu);
    EXPECT_EQ(h.toString(), L"1F");
    EXPECT_TRUE(OxDbHandle::parse(L"00000000000000000ABC", h)); // leading zeros do not overflow
    EXPECT_EQ(h.value(), 0xABCu);
    EXPECT_FALSE(OxDbHandle::parse(L"12G", h));
    EXPECT_TRUE(h.isNull());
    EXPECT_FALSE(OxDbHandle::parse(L"", h));
    EXPECT_FALSE(OxDbHandle::parse(nullptr, h));
    EXPECT_FALSE(OxDbHandle::parse(L"10000000000000000", h)); // 65 bits
    EXPECT_EQ(OxDbHandle(0xFFFFFFFFFFFFFFFFull).toString(), L"FFFFFFFFFFFFFFFF");
}

TEST(Handles, EntityNamesRoundTripAndForeignNamesAreRefused) {
    OxDbDatabase db;
    ox_name name = {0, 0};
    ASSERT_EQ(oxdbGetOxDbName(name, db.layerZero()), Ox::eOk);
    OxDbObjectId id;
    ASSERT_EQ(oxdbGetObjectId(id, name), Ox::eOk);
    EXPECT_EQ(id, db.layerZero());
    long bogusDatabase = 0;
    ox_name forged = {name[0], reinterpret_cast<long>(&bogusDatabase)};
    EXPECT_EQ(oxdbGetObjectId(id, forged), Ox::eInvalidInput);
    EXPECT_TRUE(id.isNull());
}

TEST(Colors, DisplayNamesAndPalette) {
    EXPECT_EQ(OxCmColor::fromIndex(1).colorNameForDisplay(), L"red");
    EXPECT_EQ(OxCmColor::fromIndex(7).colorNameForDisplay(), L"white");
    EXPECT_EQ(OxCmColor::fromIndex(8).colorNameForDisplay(), L"8");
    EXPECT_EQ(OxCmColor::byLayer().colorNameForDisplay(), L"ByLayer");
    EXPECT_EQ(OxCmColor::byBlock().colorNameForDisplay(), L"ByBlock");
    EXPECT_EQ(OxCmColor::fromRgb(10, 20, 30).colorNameForDisplay(), L"10,20,30");
    EXPECT_EQ(OxCmColor::fromIndex(static_cast<std::uint16_t>(-5)).colorNameForDisplay(), L"-5");

    std::uint8_t r, g, b;
    OxCmEntityColor::indexToRgb(1, r, g, b);
    EXPECT_EQ((std::array{r, g, b}), (std::array<std::uint8_t, 3>{255, 0, 0}));
    OxCmEntityColor::indexToRgb(21, r, g, b);
    EXPECT_EQ((std::array{r, g, b}), (std::array<std::uint8_t, 3>{255, 159, 127}));
    OxCmEntityColor::indexToRgb(40, r, g, b);
    EXPECT_EQ((std::array{r, g, b}), (std::array<std::uint8_t, 3>{255, 191, 0}));
    OxCmEntityColor::indexToRgb(250, r, g, b);
    EXPECT_EQ((std::array{r, g, b}), (std::array<std::uint8_t, 3>{51, 51, 51}));
    EXPECT_EQ(OxCmColor::fromIndex(5).blue(), 255);
}

TEST(Colors, BookColoursStaySmall) {
    OxCmColor c = OxCmColor::fromRgb(204, 0, 0);
    ASSERT_TRUE(c.setNames(L"RAL 3020", L"RAL Classic"));
    EXPECT_STREQ(c.colorName(), L"RAL 3020");
    EXPECT_STREQ(c.bookName(), L"RAL Classic");
    EXPECT_EQ(c.colorNameForDisplay(), L"RAL 3020");
    OxCmColor same = OxCmColor::fromRgb(204, 0, 0);
    same.setNames(L"RAL 3020", L"RAL Classic");
    EXPECT_EQ(c, same);
    EXPECT_FALSE(c.setNames(L"", L"RAL Classic"));
    c.setColorIndex(3);
    EXPECT_FALSE(c.hasBookName());
    EXPECT_EQ(c.bookName(), nullptr);
}

TEST(SymbolNames, TheRule) {
    auto* svc = oxdbGetSymbolSvc();
    EXPECT_EQ(svc->checkSymbolName(L"Walls - 1st floor", false), Ox::eOk);
    EXPECT_EQ(svc->checkSymbolName(L"Стены", false), Ox::eOk);
    for (const wchar_t* bad : {L"", L" lead", L"trail ", L"a<b", L"a>b", L"a/b", L"a\\b", L"a\"b", L"a:b", L"a;b",
                               L"a?b", L"a*b", L"a|b", L"a,b", L"a=b", L"a`b", L"tab\there"})
        EXPECT_NE(svc->checkSymbolName(bad, false), Ox::eOk) << bad;
    EXPECT_EQ(svc->checkSymbolName(L"xref|Walls", true), Ox::eOk);
    EXPECT_EQ(svc->checkSymbolName(std::wstring(255, L'x').c_str(), false), Ox::eOk);
    EXPECT_NE(svc->checkSymbolName(std::wstring(256, L'x').c_str(), false), Ox::eOk);
    EXPECT_NE(svc->checkSymbolName(nullptr, false), Ox::eOk);
    wchar_t good[] = L"Doors";
    wchar_t bad[] = L"Do?rs";
    EXPECT_NE(IsValidName(good), 0);
    EXPECT_EQ(IsValidName(bad), 0);
}

TEST(RuntimeClasses, RegistryAndDerivation) {
    EXPECT_EQ(OxRxClass::find(L"OxDbLayerTableRecord"), OxDbLayerTableRecord::desc());
    EXPECT_EQ(OxRxClass::find(L"NoSuchClass"), nullptr);
    EXPECT_TRUE(OxDbLayerTableRecord::desc()->isDerivedFrom(OxDbObject::desc()));
    EXPECT_FALSE(OxDbLayerTableRecord::desc()->isDerivedFrom(OxDbEntity::desc()));
    OxDbLine line;
    EXPECT_EQ(line.isA(), OxDbLine::desc());
    EXPECT_NE(OxDbEntity::cast(&line), nullptr);
    EXPECT_EQ(OxDbCircle::cast(&line), nullptr);
    OxRxObject service;
    EXPECT_EQ(oxrxSysRegistry()->atPut(L"Svc", &service), nullptr);
    EXPECT_EQ(oxrxSysRegistry()->at(L"Svc"), &service);
    EXPECT_EQ(oxrxSysRegistry()->remove(L"Svc"), &service);
    EXPECT_EQ(oxrxSysRegistry()->at(L"Svc"), nullptr);
}

TEST(Regen, QueueGoesToTheWorkingDatabase) {
    OxDbDatabase db;
    oxdbHostApplicationServices()->setWorkingDatabase(&db);
    OxDbObjectId ids[] = {db.layerZero(), db.modelSpaceId()};
    EXPECT_EQ(oxdbQueueForRegen(ids, 2), Ox::eOk);
    EXPECT_EQ(oxdbQueueForRegen(nullptr, 1), Ox::eInvalidInput);
    EXPECT_EQ(db.impl()->regenQueue.size(), 2u);
    oxdbHostApplicationServices()->setWorkingDatabase(nullptr);
    EXPECT_EQ(oxdbQueueForRegen(ids, 2), Ox::eNoDatabase);
}

// The drawing reader's path: an empty database, roots made directly,
// saved handles kept through the pending cell, forward references.
TEST(Building, ReaderKeepsHandlesAndForwardReferences) {
    OxDbDatabase db(false);
    pavo::db::Store& store = db.impl()->store;
    auto* layers = new OxDbLayerTable();
    db.impl()->layerTable = pavo::db::createRootObject(&db, layers, store.cellForHandle(0x10));
    ASSERT_EQ(db.layerTableId().handle().value(), 0x10u);
    EXPECT_TRUE(db.impl()->layerTable.isValid());
    auto* second = new OxDbLayerTable(); // the cell is taken: refused, left to its maker
    EXPECT_TRUE(pavo::db::createRootObject(&db, second, store.cellForHandle(0x10)).isNull());
    EXPECT_FALSE(second->isDatabaseResident());
    delete second;

    OxDbCell* forward = store.cellForHandle(0x40); // referred to before it is read
    EXPECT_FALSE(OxDbObjectId(forward).isValid());

    OxDbLayerTable* table = nullptr;
    ASSERT_EQ(db.getLayerTable(table, OxDb::kForWrite), Ox::eOk);
    store.setPendingCell(forward);
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(L"0");
    OxDbObjectId id;
    ASSERT_EQ(table->add(id, layer), Ox::eOk);
    layer->close();
    table->close();
    EXPECT_EQ(id.cell(), forward);
    EXPECT_TRUE(OxDbObjectId(forward).isValid());
    EXPECT_GT(db.handseed(), 0x40u);
    EXPECT_TRUE(nothingOpen(db));
}

} // namespace
