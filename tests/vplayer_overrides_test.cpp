// "VPLAYER" per-viewport overrides through the real host and module: Color,
// TRansparency, LWeight, LType, PStyle and reMoveoverrides, and everything
// VPLAYER changes surviving a save and a reopen.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "paperspace_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using pavotest::TempFolder;
using namespace papertest;

namespace {

// "A1 Plan", working inside its viewport 2, then VPLAYER and `lines`.
std::vector<std::string> vplayerInPlan(std::vector<std::string> lines) {
    lines.insert(lines.begin(), {"CTAB", "A1 Plan", "VPLAYER"});
    lines.push_back("");
    return lines;
}

OxDbObjectId plan2(OxDbDatabase* db) { return viewportOf(db, L"A1 Plan", 2); }

// The lineweight overrides of each layer L<value> in viewport 2.
int lineWeightOf(OxDbDatabase* db, const wchar_t* layer) {
    const OxDbLayerViewportOverrides o = overridesOf(db, layer, plan2(db));
    return o.hasLineWeight ? static_cast<int>(o.lineWeight) : -999;
}

} // namespace

TEST(VplayerColor, AnIndexWithItsSignDropped) {
    ScriptedSession s(vplayerInPlan({"Color", "-1", "A-WALL", "", "Color", "T", "10,20,30", "A-DOOR", "",
                                     "Color", "", "Color", "green", "A-GLAZ", "^C"}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(overridesOf(db, L"A-WALL", plan2(db)).color, OxCmColor::fromIndex(1));
    EXPECT_EQ(overridesOf(db, L"A-DOOR", plan2(db)).color, OxCmColor::fromRgb(10, 20, 30));
    EXPECT_FALSE(overridesOf(db, L"A-GLAZ", plan2(db)).hasColor) << "cancelled at the viewport prompt";
    OxDbLayerTableRecord* wall = nullptr;
    ASSERT_EQ(oxdbOpenObject(wall, layerId(db, L"A-WALL"), OxDb::kForRead), Ox::eOk);
    EXPECT_FALSE(wall->isOff()) << "unlike -LAYER, a negative index turns nothing off";
    EXPECT_EQ(wall->color(), OxCmColor::fromIndex(7));
    wall->close();
}

TEST(VplayerTransparency, ZeroToNinety) {
    ScriptedSession s(vplayerInPlan({"TRansparency", "0", "A-WALL", "", "TRansparency", "91", "-1", "fifty", "90",
                                     "A-DOOR", "", "TRansparency", "50", "A-GLAZ", "", "TRansparency", ""}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(overridesOf(db, L"A-WALL", plan2(db)).transparency, OxCmTransparency(255));
    EXPECT_EQ(overridesOf(db, L"A-DOOR", plan2(db)).transparency, OxCmTransparency(25));
    EXPECT_EQ(overridesOf(db, L"A-GLAZ", plan2(db)).transparency, OxCmTransparency(127));
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "Requires an integer between 0 and 90."), 3) << t;
    EXPECT_NE(t.find("Enter transparency value (0-90): 91\nRequires an integer between 0 and 90.\n"
                     "Enter transparency value (0-90): -1"),
              std::string::npos)
        << t;
}

TEST(VplayerRemoveOverrides, AskedUntilAnsweredThenByKind) {
    // The sample gives A-WALL a colour and a lineweight in "A3 Detail".
    ScriptedSession s(vplayerInPlan({"Color", "3", "A-WALL", "All", "reMoveoverrides", "nothing", "",
                                     "lweight", "A-WALL", "All", "reMoveoverrides", "all", "A-WALL", "X"}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    const OxDbObjectId kitchen = viewportOf(db, L"A3 Detail", 2);
    EXPECT_FALSE(overridesOf(db, L"A-WALL", kitchen).hasColor) << "eXcept: every viewport but the current one";
    EXPECT_FALSE(overridesOf(db, L"A-WALL", kitchen).hasLineWeight);
    EXPECT_EQ(overridesOf(db, L"A-WALL", plan2(db)).color, OxCmColor::fromIndex(3)) << "the current viewport kept it";
    const std::string t = s.transcript();
    EXPECT_NE(t.find("[Color/LType/LWeight/PStyle/TRansparency/All]: nothing\nInvalid option keyword.\n"
                     "Enter an option [Color/LType/LWeight/PStyle/TRansparency/All]: \n"
                     "Enter an option [Color/LType/LWeight/PStyle/TRansparency/All]: lweight\n"),
              std::string::npos)
        << t;
}

TEST(VplayerLineweight, RoundingInInchesAndMillimetres) {
    ScriptedSession s({"LWUNITS", "0", "CTAB", "A1 Plan", "VPLAYER", "LWeight", "0.0025", "L1", "", "LWeight", "1",
                       "L2", "", "", "LWUNITS", "1", "VPLAYER", "LWeight", "0.07", "L3", "", "LWeight", "3.0", "L4", "",
                       "LWeight", "Default", "L5", "", "LWeight", "-1", "?", "0.5", "L6", "", "LWeight", "", ""});
    OxDbDatabase* db = s.database();
    for (const wchar_t* name : {L"L1", L"L2", L"L3", L"L4", L"L5", L"L6"})
        ASSERT_FALSE(layertest::addLayer(db, name).isNull());
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(lineWeightOf(db, L"L1"), 5);   // 0.002 inches is nearer
    EXPECT_EQ(lineWeightOf(db, L"L2"), 211); // over 0.083 inches
    EXPECT_EQ(lineWeightOf(db, L"L3"), 9);   // 7 lies midway between 5 and 9
    EXPECT_EQ(lineWeightOf(db, L"L4"), 211); // 2.109, cut to 210, rounded
    EXPECT_EQ(lineWeightOf(db, L"L5"), -999) << "Default passes -1 mm, which no layer can take";
    EXPECT_EQ(lineWeightOf(db, L"L6"), 50);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter lineweight (0.000 inches-0.083 inches): 0.0025\n"
                     "Lineweight rounded to nearest valid value of 0.002 inches\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Enter lineweight (0.00mm-2.11mm): 0.07\nLineweight rounded to nearest valid value of 0.09 mm"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("3.0\nLineweight rounded to nearest valid value of 2.11 mm"), std::string::npos) << t;
    EXPECT_NE(t.find("-1\nEnter a valid lineweight value.\nEnter lineweight (0.00mm-2.11mm): ?\n"
                     "Available Lineweights: \nBYLAYER BYBLOCK Default\n 0.00 mm 0.05 mm  0.09 mm"),
              std::string::npos)
        << t;
}

TEST(VplayerLinetype, ByLayerAskedAgainAndAFileLinetypeLoaded) {
    ScriptedSession s(vplayerInPlan({"LType", "bylayer", "HIDDEN2", "A-WALL", "", "LType", "NOPE", "", "A-DOOR", "",
                                     "LType", "?", "^C"}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    OxDbObjectId hidden2;
    OxDbLinetypeTable* table = nullptr;
    ASSERT_EQ(db->getLinetypeTable(table, OxDb::kForRead), Ox::eOk);
    table->getIdAt(L"HIDDEN2", hidden2);
    table->close();
    ASSERT_FALSE(hidden2.isNull()) << "loaded from vantaiso.lin";
    EXPECT_EQ(overridesOf(db, L"A-WALL", plan2(db)).linetypeId, hidden2);
    EXPECT_EQ(overridesOf(db, L"A-DOOR", plan2(db)).linetypeId, db->continuousLinetype())
        << "Enter took the default: CONTINUOUS for a ByLayer CELTYPE";
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter linetype name: ? to list/<CONTINUOUS>: bylayer\nEnter linetype name: ? to list/"
                     "<CONTINUOUS>: HIDDEN2\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("<CONTINUOUS>: NOPE\nLinetype \"NOPE\" not found.\nEnter linetype name"), std::string::npos) << t;
    EXPECT_NE(t.find("<CONTINUOUS>: ?\nContinuous\nDASHED\n"), std::string::npos) << t;
}

TEST(VplayerPlotStyle, EnterChangesNothingAndNamesAreChecked) {
    ScriptedSession s(vplayerInPlan({"PStyle", "", "PStyle", "Bogus", "thick", "A-DOOR", "", "PStyle", "?", ""}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    const OxDbLayerViewportOverrides door = overridesOf(db, L"A-DOOR", plan2(db));
    ASSERT_TRUE(door.hasPlotStyle);
    OxDbDictionary* styles = nullptr;
    ASSERT_EQ(db->getPlotStyleNameDictionary(styles, OxDb::kForRead), Ox::eOk);
    OxString name;
    styles->nameAt(door.plotStyleNameId, name);
    styles->close();
    EXPECT_EQ(name, L"Thick");
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter Print Style Name or [?] <Normal>: \nEnter an option"), std::string::npos) << t;
    EXPECT_NE(t.find("<Normal>: Bogus\nUnknown plot style.\nEnter Print Style Name"), std::string::npos) << t;
    EXPECT_NE(t.find("<Normal>: ?\nPrint Style Name\n -------------------------------\n Normal\n"), std::string::npos)
        << t;
}

// Every kind of change VPLAYER makes, saved, and read back by a new session.
TEST(VplayerFiles, EverythingSurvivesSaveAndReopen) {
    TempFolder dir;
    const std::string file = dir.path("vplayer.pvd");
    {
        ScriptedSession s(vplayerInPlan({"Freeze", "A-DOOR", "", "Color", "5", "A-WALL", "", "LType", "DASHED",
                                         "A-WALL", "", "LWeight", "0.35", "A-WALL", "", "TRansparency", "40",
                                         "A-WALL", "", "PStyle", "Thin", "A-WALL", "", "Newfrz", "NEW-ONE",
                                         "Vpvisdflt", "A-GLAZ", "Frozen", "reMoveoverrides", "Color", "A-WALL",
                                         "All", "Color", "2", "S-COLS", "", "", "SAVEAS", file}));
        EXPECT_EQ(s.run(), 0) << s.transcript();
    }
    ScriptedSession s({"OPEN", file});
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(frozenIn(plan2(db)), (std::vector<std::string>{"A-DOOR", "NEW-ONE"}));
    EXPECT_TRUE(vpdflt(db, L"NEW-ONE"));
    EXPECT_TRUE(vpdflt(db, L"A-GLAZ"));
    const OxDbLayerViewportOverrides wall = overridesOf(db, L"A-WALL", plan2(db));
    EXPECT_FALSE(wall.hasColor) << "removed";
    EXPECT_TRUE(wall.hasLinetype);
    EXPECT_EQ(wall.lineWeight, OxDb::kLnWt035);
    EXPECT_EQ(wall.transparency, OxCmTransparency(153));
    EXPECT_TRUE(wall.hasPlotStyle);
    EXPECT_EQ(overridesOf(db, L"S-COLS", plan2(db)).color, OxCmColor::fromIndex(2));
    EXPECT_FALSE(overridesOf(db, L"A-WALL", viewportOf(db, L"A3 Detail", 2)).hasColor);
}

// A layer state records the freeze state of the viewport it is saved in,
// keeps it in the drawing file, and gives it to the viewport current when it
// is restored.
TEST(VplayerLayerStates, TheCurrentViewportsFreezeState) {
    TempFolder dir;
    const std::string file = dir.path("states.pvd");
    {
        ScriptedSession s({"CTAB", "A1 Plan", "CVPORT", "3", "-LAYER", "stAte", "Save", "Living", "", "", "",
                           "SAVEAS", file});
        EXPECT_EQ(s.run(), 0) << s.transcript();
    }
    ScriptedSession s({"OPEN", file, "CVPORT", "2", "LAYERSTATE", "Restore", "Living", ""});
    EXPECT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(frozenIn(plan2(s.database())), std::vector<std::string>{"A-FURN"}) << s.transcript();
    EXPECT_EQ(frozenIn(viewportOf(s.database(), L"A1 Plan", 3)), std::vector<std::string>{"A-FURN"});
}
