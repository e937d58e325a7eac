// LINE, CIRCLE, TEXT and INSERT through the command line.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "OxDbDatabase.h"
#include "SessionHarness.h"
#include "editor/SystemVariables.h"
#include "selection_TestSupport.h"

using pavotest::ScriptedSession;

namespace {

// The entities of model space, open for read in turn.
template <class Visit> int forEachInModel(OxDbDatabase* db, Visit visit) {
    OxDbBlockTableRecord* model = nullptr;
    oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForRead);
    OxDbBlockTableRecordIterator* it = nullptr;
    model->newIterator(it);
    model->close();
    int n = 0;
    for (; !it->done(); it->step(), ++n) {
        OxDbEntity* e = nullptr;
        it->getEntity(e, OxDb::kForRead);
        visit(*e);
        e->close();
    }
    delete it;
    return n;
}

} // namespace

TEST(DrawingCommands, LineDrawsSegmentsOnTheCurrentLayerAndUndoes) {
    ScriptedSession s({"CLAYER", "WALLS", "LINE", "0,0", "10,0", "10,x", "10,10", "Undo", "10, 5", "", "LINE", "^C"},
                      pavotest::Drawing::New);
    pavotest::addLayer(s.database(), L"WALLS");
    EXPECT_EQ(s.run(), 0) << s.transcript();
    std::vector<std::pair<OxGePoint3d, OxGePoint3d>> lines;
    const int count = forEachInModel(s.database(), [&](const OxDbEntity& e) {
        const auto* l = OxDbLine::cast(&e);
        ASSERT_NE(l, nullptr);
        EXPECT_EQ(e.layer(), L"WALLS");
        EXPECT_TRUE(e.color().isByLayer());
        EXPECT_EQ(e.linetypeId(), s.database()->byLayerLinetype());
        EXPECT_EQ(e.lineWeight(), OxDb::kLnWtByLayer);
        lines.emplace_back(l->startPoint(), l->endPoint());
    });
    EXPECT_EQ(count, 2) << "the undone segment is gone";
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].first, OxGePoint3d(10, 0, 0));
    EXPECT_EQ(lines[1].second, OxGePoint3d(10, 5, 0));
    EXPECT_NE(s.transcript().find("10,x\nInvalid point.\nSpecify next point or [Undo]: "), std::string::npos)
        << s.transcript();
}

TEST(DrawingCommands, CircleAndTextWithDefaults) {
    ScriptedSession s(
        {"CIRCLE", "5,5", "-1", "0", "2.5", "TEXT", "1,2", "", "90", "Hello world", "TEXT", "0,0", "", "", ""},
        pavotest::Drawing::New);
    EXPECT_EQ(s.run(), 0) << s.transcript();
    int circles = 0, texts = 0;
    forEachInModel(s.database(), [&](const OxDbEntity& e) {
        if (const auto* c = OxDbCircle::cast(&e)) {
            ++circles;
            EXPECT_EQ(c->center(), OxGePoint3d(5, 5, 0));
            EXPECT_EQ(c->radius(), 2.5);
        } else if (const auto* t = OxDbText::cast(&e)) {
            ++texts;
            EXPECT_STREQ(t->textString(), L"Hello world");
            EXPECT_EQ(t->height(), 2.5);
            EXPECT_NEAR(t->rotation(), std::acos(-1.0) / 2, 1e-12);
        }
    });
    EXPECT_EQ(circles, 1);
    EXPECT_EQ(texts, 1) << "empty text makes nothing";
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Value must be positive."), std::string::npos) << t;
    EXPECT_NE(t.find("Requires a nonzero value."), std::string::npos) << t;
}

TEST(DrawingCommands, InsertAsksForAttributesAndRefusesUnknownBlocks) {
    ScriptedSession s({"INSERT", "NOSUCH", "*Model_Space", "?", "title", "100,50", "2", "90", "Lake House", "", "", "",
                       "LIST", "L", ""});
    EXPECT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Block \"NOSUCH\" not found."), std::string::npos) << t;
    EXPECT_NE(t.find("Block \"*Model_Space\" not found."), std::string::npos) << t;
    EXPECT_NE(t.find("Block definitions:\n  DOOR\n  TITLE\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Attribute:     PROJECT = \"Lake House\""), std::string::npos) << t;
    EXPECT_NE(t.find("    Attribute:     SHEET = \""), std::string::npos) << t;
    EXPECT_NE(t.find("    Scale:         X=2.0000  Y=2.0000  Z=2.0000"), std::string::npos) << t;
    EXPECT_NE(t.find("    Rotation:      90"), std::string::npos) << t;
}

TEST(DrawingCommands, EscapeInInsertMakesNothing) {
    ScriptedSession s({"INSERT", "DOOR", "0,0", "^C"}, pavotest::Drawing::Sample);
    OxDbDatabase* db = s.database();
    const int before = forEachInModel(db, [](const OxDbEntity&) {});
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(forEachInModel(db, [](const OxDbEntity&) {}), before);
}
