// A block's references (getBlockReferenceIds) come from the store's index:
// it must follow references added, pointed at another block and erased.
#include <gtest/gtest.h>

#include "setbylayer_TestSupport.h"

using namespace setbylayertest;

namespace {

std::vector<OxDbObjectId> referencesOf(const OxDbObjectId& block) {
    OxDbBlockTableRecord* record = nullptr;
    EXPECT_EQ(oxdbOpenObject(record, block, OxDb::kForRead), Ox::eOk);
    OxDbObjectIdArray ids;
    if (record) {
        EXPECT_EQ(record->getBlockReferenceIds(ids), Ox::eOk);
        record->close();
    }
    return std::vector<OxDbObjectId>(ids.begin(), ids.end());
}

} // namespace

TEST(BlockReferences, TheIndexFollowsReferencesAddedRetargetedAndErased) {
    pavotest::ScriptedSession s({}, pavotest::Drawing::New);
    OxDbDatabase* db = s.database();
    const OxDbObjectId a = addBlock(db, L"A"), b = addBlock(db, L"B");
    const OxDbObjectId first = modelReference(db, a, 0, 0);
    OxDbObjectId nested;
    {
        OxDbBlockTableRecord* record = nullptr;
        ASSERT_EQ(oxdbOpenObject(record, b, OxDb::kForWrite), Ox::eOk);
        nested = appendTo<OxDbBlockReference>(*record, new OxDbBlockReference(OxGePoint3d(0, 0), a));
        record->close();
    }
    EXPECT_EQ(referencesOf(a), (std::vector<OxDbObjectId>{first, nested}));

    // Asked once, then changed: a new reference, one pointed at B, one erased.
    const OxDbObjectId second = modelReference(db, a, 5, 0);
    EXPECT_EQ(referencesOf(a), (std::vector<OxDbObjectId>{first, second, nested}));
    changeEntity(first, [&](OxDbEntity& e) { static_cast<OxDbBlockReference&>(e).setBlockTableRecord(b); });
    changeEntity(second, [](OxDbEntity& e) { e.erase(); });
    EXPECT_EQ(referencesOf(a), (std::vector<OxDbObjectId>{nested}));
    EXPECT_EQ(referencesOf(b), (std::vector<OxDbObjectId>{first}));
}
