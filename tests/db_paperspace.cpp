// The database side of paper space: frozen-layer lists, per-viewport
// overrides in bulk, what erasing a layer or a viewport leaves, and the
// freeze state of the current viewport in layer states.
#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "OrderedCellSet.h"
#include "OxDbLayerStateManager.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "PaperSpace.h"
#include "db_test_support.h"

using namespace dbtest;

namespace {

// The cells of a store of `n` objects, for set tests.
std::vector<OxDbCell*> cells(OxDbDatabase& db, int n) {
    std::vector<OxDbCell*> out;
    for (int i = 0; i < n; ++i)
        out.push_back(db.impl()->store.newCell());
    return out;
}

// A drawing whose only layout has model viewports 2 and 3, working in 2.
struct Viewports : ::testing::Test {
    OxDbDatabase db;
    OxDbObjectId walls = addLayer(db, L"Walls");
    OxDbObjectId doors = addLayer(db, L"Doors");
    OxDbObjectId two, three;

    void SetUp() override {
        db.setTilemode(false);
        const OxDbObjectId sheet = pavo::db::currentPaperLayout(&db)->getBlockTableRecordId();
        two = append(sheet, viewport(2));
        three = append(sheet, viewport(3));
        ASSERT_EQ(db.setCvport(2), Ox::eOk);
    }
    static OxDbViewport* viewport(short number) {
        auto* v = new OxDbViewport();
        v->setNumber(number);
        return v;
    }
    template <class F> void change(const OxDbObjectId& id, F f) {
        OxDbObject* obj = nullptr;
        ASSERT_EQ(oxdbOpenObjectAs(obj, id, nullptr, OxDb::kForWrite, false), Ox::eOk);
        f(obj);
        obj->close();
    }
    std::vector<OxDbObjectId> frozen(const OxDbObjectId& viewportId) {
        OxDbViewport* v = nullptr;
        EXPECT_EQ(oxdbOpenObject(v, viewportId, OxDb::kForRead), Ox::eOk);
        OxDbObjectIdArray ids;
        if (v) {
            v->getFrozenLayerList(ids);
            v->close();
        }
        return std::vector<OxDbObjectId>(ids.begin(), ids.end());
    }
    void freeze(const OxDbObjectId& viewportId, std::vector<OxDbObjectId> layers) {
        OxDbObjectIdArray ids;
        for (const auto& id : layers)
            ids.append(id);
        change(viewportId, [&](OxDbObject* o) { OxDbViewport::cast(o)->freezeLayersInViewport(ids); });
    }
};

} // namespace

// Compared with a plain list through inserts, repeats and removals in a
// random order, including runs that make the set compact itself.
TEST(OrderedCellSet, KeepsOrderAndMembershipThroughAnyMix) {
    OxDbDatabase db(false);
    const std::vector<OxDbCell*> all = cells(db, 3000);
    pavo::db::OrderedCellSet set;
    std::vector<OxDbCell*> model;
    std::mt19937 random(8);
    for (int step = 0; step < 40000; ++step) {
        OxDbCell* cell = all[random() % (step < 20000 ? all.size() : 300)];
        const bool present = std::find(model.begin(), model.end(), cell) != model.end();
        if (random() % 3 != 0) {
            EXPECT_EQ(set.insert(cell), !present);
            if (!present) model.push_back(cell);
        } else {
            EXPECT_EQ(set.erase(cell), present);
            std::erase(model, cell);
        }
        ASSERT_EQ(set.size(), model.size());
    }
    std::vector<OxDbCell*> walked;
    set.forEach([&](OxDbCell* c) { walked.push_back(c); });
    EXPECT_EQ(walked, model);
    for (OxDbCell* cell : all)
        EXPECT_EQ(set.contains(cell), std::find(model.begin(), model.end(), cell) != model.end());
    EXPECT_FALSE(set.insert(nullptr));
}

TEST_F(Viewports, FreezingTwiceListsALayerOnce) {
    freeze(two, {walls, doors, walls, OxDbObjectId()});
    freeze(two, {doors});
    EXPECT_EQ(frozen(two), (std::vector<OxDbObjectId>{walls, doors}));
    change(two, [&](OxDbObject* o) {
        OxDbObjectIdArray thaw;
        thaw.append(walls);
        OxDbViewport::cast(o)->thawLayersInViewport(thaw);
    });
    freeze(two, {walls});
    EXPECT_EQ(frozen(two), (std::vector<OxDbObjectId>{doors, walls})) << "frozen again: at the end";
}

TEST_F(Viewports, ErasingALayerOrAViewportDropsWhatRefersToIt) {
    freeze(two, {walls, doors});
    freeze(three, {doors});
    change(walls, [&](OxDbObject* o) {
        auto* layer = OxDbLayerTableRecord::cast(o);
        layer->setColor(OxCmColor::fromIndex(1), two);
        layer->setColor(OxCmColor::fromIndex(2), three);
    });
    change(doors, [](OxDbObject* o) { EXPECT_EQ(o->erase(), Ox::eOk); });
    EXPECT_EQ(frozen(two), std::vector<OxDbObjectId>{walls});
    EXPECT_TRUE(frozen(three).empty());

    change(two, [](OxDbObject* o) { EXPECT_EQ(o->erase(), Ox::eOk); });
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, walls, OxDb::kForRead), Ox::eOk);
    EXPECT_FALSE(layer->hasOverrides(two));
    EXPECT_TRUE(layer->hasOverrides(three));
    layer->close();
    EXPECT_EQ(db.cvport(), 1) << "the layout's active viewport is gone: the sheet";
    EXPECT_EQ(db.setCvport(2), Ox::eKeyNotFound);
    EXPECT_TRUE(nothingOpen(db));
}

// Overrides set in many viewports one at a time, and removed the same way,
// leave nothing behind; a lineweight that is not one is refused.
TEST_F(Viewports, OverridesInManyViewports) {
    const OxDbObjectId sheet = pavo::db::currentPaperLayout(&db)->getBlockTableRecordId();
    std::vector<OxDbObjectId> many;
    for (short n = 4; n < 60; ++n)
        many.push_back(append(sheet, viewport(n)));
    std::shuffle(many.begin(), many.end(), std::mt19937(3));
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, walls, OxDb::kForWrite), Ox::eOk);
    for (const auto& id : many) {
        layer->setColor(OxCmColor::fromIndex(5), id);
        EXPECT_EQ(layer->setLineWeight(OxDb::kLnWt070, id), Ox::eOk);
    }
    EXPECT_EQ(layer->setLineWeight(static_cast<OxDb::LineWeight>(-100), many[0]), Ox::eInvalidInput);
    for (const auto& id : many)
        layer->removeColorOverride(id);
    bool isOverride = false;
    EXPECT_EQ(layer->lineWeight(many[7], isOverride), OxDb::kLnWt070);
    EXPECT_TRUE(isOverride);
    EXPECT_EQ(layer->color(many[7], isOverride), OxCmColor::fromIndex(7));
    EXPECT_FALSE(isOverride);
    for (size_t i = 0; i < many.size(); i += 2)
        layer->removeViewportOverrides(many[i]);
    EXPECT_FALSE(layer->hasOverrides(many[0]));
    EXPECT_TRUE(layer->hasOverrides(many[1]));
    layer->setColor(OxCmColor::fromIndex(1), many[0]);
    EXPECT_TRUE(layer->hasOverrides(many[0])) << "an emptied entry takes overrides again";
    for (const auto& id : many)
        layer->removeViewportOverrides(id);
    EXPECT_FALSE(layer->hasAnyOverrides());
    layer->close();
}

// A layer state records which layers are frozen in the viewport the user
// works in, and gives that to the viewport the user works in when it is
// restored.
TEST_F(Viewports, LayerStatesCarryTheCurrentViewportsFreezeState) {
    using M = OxDbLayerStateManager;
    freeze(two, {walls});
    OxDbLayerStateManager* states = db.getLayerStateManager();
    ASSERT_EQ(states->saveLayerState(L"WallsHidden", M::kAll), Ox::eOk);
    ASSERT_EQ(states->saveLayerState(L"ColourOnly", M::kColor), Ox::eOk);
    freeze(three, {doors});
    ASSERT_EQ(db.setCvport(3), Ox::eOk);
    ASSERT_EQ(states->restoreLayerState(L"ColourOnly"), Ox::eOk);
    EXPECT_EQ(frozen(three), std::vector<OxDbObjectId>{doors}) << "not in that state's mask";
    ASSERT_EQ(states->restoreLayerState(L"WallsHidden"), Ox::eOk);
    EXPECT_EQ(frozen(three), std::vector<OxDbObjectId>{walls});
    EXPECT_EQ(frozen(two), std::vector<OxDbObjectId>{walls}) << "only the current viewport changes";
    db.setTilemode(true);
    freeze(three, {doors});
    ASSERT_EQ(states->restoreLayerState(L"WallsHidden"), Ox::eOk);
    EXPECT_EQ(frozen(three), (std::vector<OxDbObjectId>{walls, doors})) << "model space has no current viewport";
}
