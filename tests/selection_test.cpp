// Picks and selection sets through the real host: the oxed* functions read
// their answers from a scripted session's command line.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "SessionHarness.h"
#include "app/HostCommands.h"
#include "base/HostAllocations.h"
#include "editor/SystemVariables.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "paperspace_TestSupport.h"
#include "selection_TestSupport.h"

using pavotest::addLayer;
using pavotest::addToModel;
using pavotest::ScriptedSession;

namespace {

int errnoValue() {
    resbuf value{};
    oxedGetVar(L"ERRNO", &value);
    return value.resval.rint;
}

OxDbObjectId idOf(const ox_name name) {
    OxDbObjectId id;
    oxdbGetObjectId(id, name);
    return id;
}

// The ids of a set, which is freed.
std::vector<OxDbObjectId> takeSet(ox_name set) {
    std::vector<OxDbObjectId> ids;
    int length = 0;
    oxedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        ox_name entity = {0, 0};
        oxedSSName(set, i, entity);
        ids.push_back(idOf(entity));
    }
    EXPECT_EQ(oxedSSFree(set), STATUS_NORMAL);
    return ids;
}

// A drawing of two lines along y=0 and y=20 and a circle at (50,0) r 5.
struct Drawing {
    explicit Drawing(std::vector<std::string> answers) : session(std::move(answers), pavotest::Drawing::New) {
        OxDbDatabase* db = session.database();
        low = addToModel(db, new OxDbLine({0, 0, 0}, {10, 0, 0}));
        high = addToModel(db, new OxDbLine({0, 20, 0}, {10, 20, 0}));
        circle = addToModel(db, new OxDbCircle({50, 0, 0}, 5));
    }
    ScriptedSession session;
    OxDbObjectId low, high, circle;
};

} // namespace

TEST(Selection, EntSelHitsWithinPickboxAndReportsMisses) {
    Drawing d({"5,2.5", "5,3.5", "", "^C", "PICKBOX", "10"});
    ox_name entity = {0, 0};
    ox_point at = {0, 0, 0};
    EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_NORMAL);
    EXPECT_EQ(idOf(entity), d.low);
    EXPECT_EQ(at[0], 5);
    EXPECT_EQ(at[1], 2.5);
    EXPECT_EQ(oxedEntSel(L"\nPick: ", entity, at), STATUS_ERROR);
    EXPECT_EQ(errnoValue(), 7);
    EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_ERROR);
    EXPECT_EQ(errnoValue(), 52);
    EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_CANCEL);
    const std::string t = d.session.transcript();
    EXPECT_NE(t.find("Select object: 5,2.5\nPick: 5,3.5\nSelect object: \nSelect object: *Cancel*"), std::string::npos)
        << t;
}

TEST(Selection, EntSelPicksTheTopmostAndHonoursInitGet) {
    Drawing d({"", "nonsense", "0,0", "eXit"});
    const OxDbObjectId top = addToModel(d.session.database(), new OxDbLine({0, 0, 0}, {0, 10, 0}));
    ox_name entity = {0, 0};
    ox_point at;
    oxedInitGet(OX_INP_NONULL, L"eXit _eXit");
    EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_NORMAL) << "Enter is refused, then a bad answer";
    EXPECT_EQ(idOf(entity), top);
    oxedInitGet(0, L"eXit _eXit");
    EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_KEYWORD);
    OxString input;
    oxedGetInput(input);
    EXPECT_EQ(input, L"eXit");
    EXPECT_NE(d.session.transcript().find("nonsense\nInvalid point."), std::string::npos) << d.session.transcript();
}

TEST(Selection, HiddenLayersAndInvisibleEntitiesCannotBePicked) {
    Drawing d({"100,0", "200,0", "300,0", "ALL", ""});
    OxDbDatabase* db = d.session.database();
    addToModel(db, new OxDbPoint({100, 0, 0}), addLayer(db, L"OFF", true));
    addToModel(db, new OxDbPoint({200, 0, 0}), addLayer(db, L"ICE", false, true));
    auto* invisible = new OxDbPoint({300, 0, 0});
    invisible->setVisibility(false);
    addToModel(db, invisible);
    ox_name entity = {0, 0};
    ox_point at;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(oxedEntSel(nullptr, entity, at), STATUS_ERROR);
        EXPECT_EQ(errnoValue(), 7);
    }
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.low, d.high, d.circle}));
}

TEST(Selection, WindowTakesWhatIsInsideCrossingWhatTouches) {
    Drawing d({"W", "-1,-1", "11,25", "", "C", "5,-1", "46,25", ""});
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(L"", nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.low, d.high}));
    ASSERT_EQ(oxedSSGet(L"", nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.low, d.high, d.circle}));
    EXPECT_NE(d.session.transcript().find("Specify opposite corner: 11,25\n2 found"), std::string::npos);
}

TEST(Selection, LastPreviousRemoveAndAdd) {
    Drawing d({"L", "5,0", "", "P", "R", "55,0", "A", "5,20", "5,20", "", "", "^C"});
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.circle, d.low}));
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.low, d.high}));
    OxDbObjectIdArray current;
    oxedGetCurrentSelectionSet(current);
    EXPECT_EQ(current.length(), 2);
    EXPECT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_ERROR) << "Enter with nothing selected";
    EXPECT_EQ(errnoValue(), 52);
    EXPECT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_CANCEL);
    const std::string t = d.session.transcript();
    EXPECT_NE(t.find("Select objects: 5,0\n1 found, 2 total"), std::string::npos) << t;
    EXPECT_NE(t.find("Remove objects: 55,0\n1 found, 1 removed, 1 total\nRemove objects: A\nSelect objects: 5,20\n"
                     "1 found, 2 total\nSelect objects: 5,20\n1 found (1 duplicate), 2 total"),
              std::string::npos)
        << t;
}

TEST(Selection, FiltersByEntityTypeAndCallerPrompts) {
    Drawing d({"ALL", "", "5,0", "50,5", ""});
    resbuf* circles = oxutBuildList(RTDXF0, L"CIRCLE", 0);
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, circles, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), std::vector<OxDbObjectId>{d.circle});
    const wchar_t* prompts[2] = {L"\nPick circles: ", nullptr};
    ASSERT_EQ(oxedSSGet(L"_:$", prompts, nullptr, circles, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), std::vector<OxDbObjectId>{d.circle});
    oxutRelRb(circles);
    EXPECT_NE(d.session.transcript().find("Pick circles: 5,0\n0 found\nPick circles: 50,5\n1 found"), std::string::npos)
        << d.session.transcript();
}

namespace {
std::vector<std::wstring> g_keywords;
resbuf* recordKeyword(const wchar_t* keyword) {
    g_keywords.emplace_back(keyword);
    return nullptr;
}
} // namespace

TEST(Selection, KeywordsGoToTheCallback) {
    Drawing d({"s", "Window", "-1,-1", "11,1", "bogus", "", "anything", ""});
    g_keywords.clear();
    OxedSSKwordCallback previous = nullptr;
    oxedSSGetKwordCallbackPtr(&previous);
    oxedSSSetKwordCallbackPtr(recordKeyword);
    const wchar_t* prompts[2] = {L"\nSelect Objects or [Setting(S)]:", nullptr};
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(L"_:$:K", prompts, L"Settings _Settings", nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), std::vector<OxDbObjectId>{d.low}) << "selection keywords still work";
    ASSERT_EQ(oxedSSGet(L"_:K", nullptr, nullptr, nullptr, set), STATUS_ERROR);
    oxedSSSetKwordCallbackPtr(previous);
    EXPECT_EQ(g_keywords, (std::vector<std::wstring>{L"Settings", L"anything"}));
    EXPECT_NE(d.session.transcript().find("bogus\nInvalid selection."), std::string::npos);
}

TEST(Selection, SetsAreCountedUntilFreed) {
    Drawing d({"ALL", ""});
    const long before = pavo::hostAllocations().selectionSets;
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(pavo::hostAllocations().selectionSets, before + 1);
    int length = 0;
    EXPECT_EQ(oxedSSLength(set, &length), STATUS_NORMAL);
    EXPECT_EQ(length, 3);
    ox_name entity = {0, 0};
    EXPECT_EQ(oxedSSName(set, 3, entity), STATUS_ERROR);
    EXPECT_EQ(oxedSSFree(set), STATUS_NORMAL);
    EXPECT_EQ(pavo::hostAllocations().selectionSets, before);
    EXPECT_EQ(oxedSSFree(set), STATUS_ERROR) << "a freed set is no longer a set";
    EXPECT_EQ(oxedSSLength(set, &length), STATUS_ERROR);
}

TEST(Selection, PreselectionThroughSetFirstAndGetFirst) {
    Drawing d({"5,0", "55,0", ""});
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(oxedSSSetFirst(set, nullptr), STATUS_NORMAL);
    oxedSSFree(set);

    ASSERT_EQ(oxedSSGet(L"_I", nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set), (std::vector<OxDbObjectId>{d.low, d.circle}));

    const long sets = pavo::hostAllocations().selectionSets;
    resbuf* first = nullptr;
    ASSERT_EQ(oxedSSGetFirst(nullptr, &first), STATUS_NORMAL);
    ASSERT_EQ(first->restype, RTPICKS);
    ox_name pre = {first->resval.rlname[0], first->resval.rlname[1]};
    oxutRelRb(first);
    EXPECT_EQ(pavo::hostAllocations().selectionSets, sets + 1) << "releasing the buffer leaves the set";
    EXPECT_EQ(takeSet(pre).size(), 2u);
}

TEST(Selection, PickfirstZeroHidesThePreselection) {
    Drawing d({"ALL", ""});
    ox_name set = {0, 0};
    ASSERT_EQ(oxedSSGet(nullptr, nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    oxedSSSetFirst(set, nullptr);
    oxedSSFree(set);
    d.session.session().variables().setFromText(L"PICKFIRST", L"0");
    EXPECT_EQ(oxedSSGet(L"_I", nullptr, nullptr, nullptr, set), STATUS_ERROR);
    resbuf* first = nullptr;
    ASSERT_EQ(oxedSSGetFirst(nullptr, &first), STATUS_NORMAL);
    EXPECT_EQ(first->resval.rlname[0], 0) << "no set to free";
    oxutRelRb(first);
    d.session.session().variables().setFromText(L"PICKFIRST", L"1");
    ASSERT_EQ(oxedSSGet(L"_I", nullptr, nullptr, nullptr, set), STATUS_NORMAL);
    EXPECT_EQ(takeSet(set).size(), 3u);
    oxedSSSetFirst(nullptr, nullptr);
    EXPECT_EQ(oxedSSGet(L"_I", nullptr, nullptr, nullptr, set), STATUS_ERROR) << "cleared";
}

TEST(Selection, PointsAtTheCommandPromptPreselect) {
    // LIST takes the pre-selection without asking; Escape clears it; a
    // command clears it afterwards.
    ScriptedSession s({"LINE", "0,0", "10,0", "", "5,0", "LIST", "LIST", "", "5,0", "^C", "LIST", ""},
                      pavotest::Drawing::New);
    EXPECT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: 5,0\nCommand: LIST\nLINE  Layer: \"0\""), std::string::npos) << t;
    EXPECT_NE(
        t.find("Command: LIST\nSelect objects: \nCommand: 5,0\nCommand: *Cancel*\nCommand: LIST\nSelect objects: "),
        std::string::npos)
        << t;
}

TEST(Selection, PickfirstZeroMakesCommandsAsk) {
    ScriptedSession s({"PICKFIRST", "0", "LINE", "0,0", "10,0", "", "5,0", "LIST", ""}, pavotest::Drawing::New);
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Command: 5,0\nCommand: LIST\nSelect objects: "), std::string::npos)
        << s.transcript();
}

TEST(Selection, ViewportFrozenLayersCannotBePickedInThatViewport) {
    // Everything viewport 2 of "A1 Plan" shows, with the furniture frozen
    // there or not.
    auto selectAll = [](bool freezeFurniture) {
        ScriptedSession s({"TILEMODE", "0", "CVPORT", "2", "SELECT", "ALL", ""});
        if (freezeFurniture)
            papertest::freezeIn(s.database(), papertest::viewportOf(s.database(), L"A1 Plan", 2), L"A-FURN");
        EXPECT_EQ(s.run(), 0);
        OxDbObjectIdArray ids;
        oxedGetCurrentSelectionSet(ids);
        int furniture = 0;
        for (const OxDbObjectId& id : ids) {
            OxDbEntity* e = nullptr;
            if (oxdbOpenObject(e, id, OxDb::kForRead) != Ox::eOk) continue;
            furniture += e->layer() == L"A-FURN";
            e->close();
        }
        return std::pair<int, int>(ids.length(), furniture);
    };
    const auto [all, furniture] = selectAll(false);
    const auto [withoutFurniture, furnitureFrozen] = selectAll(true);
    EXPECT_EQ(furniture, 4); // the table, the bed, the DINING and CHAIR references
    EXPECT_EQ(furnitureFrozen, 0);
    EXPECT_EQ(withoutFurniture, all - furniture);
}

TEST(Selection, SpaceSwitching) {
    ScriptedSession s({});
    OxDbDatabase* db = s.database();
    EXPECT_EQ(oxedPspace(), STATUS_ERROR) << "model space has no paper space to go to";
    db->setTilemode(false);
    EXPECT_EQ(oxedPspace(), STATUS_NORMAL);
    EXPECT_EQ(db->cvport(), 1);
    EXPECT_NE(db->currentSpaceId(), db->modelSpaceId());
    EXPECT_EQ(oxedMspace(), STATUS_NORMAL);
    EXPECT_GT(db->cvport(), 1);
    EXPECT_EQ(db->currentSpaceId(), db->modelSpaceId());
}

TEST(Selection, ACommandThatKeepsASetIsReported) {
    ox_name kept = {0, 0};
    pavo::app::HostCommandFactory leaky(L"KEEPSET", L"",
                                        [&] { return oxedSSGet(nullptr, nullptr, nullptr, nullptr, kept); });
    ScriptedSession s({"LINE", "0,0", "1,0", "", "KEEPSET", "ALL", ""}, pavotest::Drawing::New);
    s.session().commands().addCommand(&leaky, 0);
    EXPECT_EQ(s.run(), 4);
    EXPECT_NE(s.transcript().find("Internal error: KEEPSET left 1 selection set(s) unreleased"), std::string::npos)
        << s.transcript();
    EXPECT_EQ(oxedSSFree(kept), STATUS_NORMAL);
    s.session().commands().removeCommand(L"KEEPSET");
}
