// "VPLAYER" through the real host and module on the sample drawing: the
// option loop, choosing viewports and layers, Freeze, Thaw, Reset, Newfrz,
// Vpvisdflt and List.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "PavoUndoController.h"
#include "SessionHarness.h"
#include "db/DbStore.h"
#include "paperspace_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace papertest;

namespace {

constexpr const char* kLayoutPrompt =
    "Enter an option [List/Color/LType/LWeight/TRansparency/PStyle/Freeze/Thaw/Reset/reMoveoverrides/New frozen "
    "layers/default Visibility settings]: ";

// "A1 Plan", working inside its viewport 2, then `lines`.
std::vector<std::string> inPlan(std::vector<std::string> lines) {
    lines.insert(lines.begin(), {"CTAB", "A1 Plan"});
    return lines;
}

OxDbObjectId plan(OxDbDatabase* db, int number) { return viewportOf(db, L"A1 Plan", number); }
OxDbObjectId detail(OxDbDatabase* db, int number) { return viewportOf(db, L"A3 Detail", number); }

int regenerations(ScriptedSession& s) { return s.session().regenerateRequests(); }
int regenAllMarks(ScriptedSession& s) { return s.database()->undoController()->regenAllMarkCount(); }

// How many times the current layer was set in a run of `lines` in "A1 Plan"
// with A-WALL current.
int currentLayerSets(const std::vector<std::string>& lines) {
    std::vector<std::string> script = {"CLAYER", "A-WALL"};
    script.insert(script.end(), lines.begin(), lines.end());
    ScriptedSession s(inPlan(script));
    s.run();
    return s.database()->impl()->clayerSets;
}

void setVpdflt(OxDbDatabase* db, const wchar_t* name, bool value) {
    OxDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(oxdbOpenObject(layer, layerId(db, name), OxDb::kForWrite), Ox::eOk);
    layer->setVPDFLT(value);
    layer->close();
}

using Names = std::vector<std::string>;

} // namespace

TEST(VplayerLoop, ModelSpaceOffersOnlyTheOptionsForNewViewports) {
    ScriptedSession s({"VPLAYER", "Freeze", "", "PSTYLEMODE", "1", "CTAB", "A1 Plan", "VPLAYER", "PStyle", "?"});
    EXPECT_EQ(s.run(), 3) << "the script ends inside the listing's pick";
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: VPLAYER\nEnter an option [New frozen layers/default Visibility settings]: Freeze\n"
                     "Invalid option keyword.\nEnter an option [New frozen layers/default Visibility settings]: \n"
                     "Command: "),
              std::string::npos)
        << t;
    // Under colour-dependent plot styles PStyle is not offered, but accepted
    // and it does nothing.
    EXPECT_NE(t.find("Enter an option [List/Color/LType/LWeight/TRansparency/Freeze/Thaw/Reset/reMoveoverrides/New "
                     "frozen layers/default Visibility settings]: PStyle\nEnter an option [List/Color/LType/LWeight/"
                     "TRansparency/Freeze/Thaw/Reset/reMoveoverrides/New frozen layers/default Visibility settings]: ?\n"
                     "Select a viewport : "),
              std::string::npos)
        << t;
    EXPECT_EQ(regenerations(s), 0) << "nothing changed, nothing regenerated";
}

TEST(VplayerViewports, CurrentAllSelectAndExcept) {
    ScriptedSession s(inPlan({"VPLAYER", "Freeze", "A-DOOR", "", "Freeze", "A-GLAZ", "All", "Freeze", "S-GRID",
                              "Select", "662,420", "", "Freeze", "E-POWR", "X", "", "CVPORT", ""}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(frozenIn(plan(db, 2)), (Names{"A-DOOR", "A-GLAZ"})) << s.transcript();
    EXPECT_EQ(frozenIn(plan(db, 3)), (Names{"A-FURN", "A-GLAZ", "S-GRID", "E-POWR"}));
    EXPECT_EQ(frozenIn(plan(db, 1)), (Names{"A-GLAZ", "E-POWR"})) << "All and eXcept take the sheets too";
    EXPECT_EQ(frozenIn(detail(db, 2)), (Names{"E-POWR", "M-HVAC", "A-GLAZ"})) << "already frozen: listed once";
    EXPECT_EQ(frozenIn(detail(db, 1)), (Names{"A-GLAZ", "E-POWR"}));
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Specify viewport(s): All/Select/<Current>: Select\nSelect object: 662,420\n1 found\n"
                     "Select object: \n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Enter new value for CVPORT <2>"), std::string::npos)
        << "the pick on the sheet went back into the viewport\n"
        << t;
    EXPECT_EQ(regenerations(s), 1) << "once, at the end";
    EXPECT_EQ(regenAllMarks(s), 1);
}

TEST(VplayerViewports, ExceptWithOneViewportChangesNothing) {
    ScriptedSession s({"TILEMODE", "0", "VPLAYER", "Freeze", "0", "X", "Color", "1", "0", "X", ""}, Drawing::New);
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    const OxDbObjectId sheet = viewportOf(db, L"Layout1", 1);
    EXPECT_TRUE(frozenIn(sheet).empty());
    EXPECT_FALSE(overridesOf(db, L"0", sheet).hasColor);
    EXPECT_EQ(regenerations(s), 1) << "the options still ran";
}

TEST(VplayerLayers, NameListsAndPickedObjects) {
    // Two items matching A-WALL, an item matching nothing; the layer of a
    // light picked inside viewport 2.
    ScriptedSession s(inPlan({"VPLAYER", "Freeze", "A-W*,*ALL, NOPE*", "", "Freeze", "", "4000,9200", "", "",
                              "Freeze", "NOPE", "Thaw", "", "Freeze", "   ", ""}));
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(frozenIn(plan(s.database(), 2)), (Names{"A-WALL", "E-LITE"}));
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "No layers found matching pattern NOPE*.\n"), 1) << t;
    EXPECT_NE(t.find("<specify layers by object selection>: \nSelect object: 4000,9200\n1 found\nSelect object: \n"
                     "Specify viewport(s)"),
              std::string::npos)
        << t;
    // A list that matches nothing ends the option quietly; Thaw has no
    // picking, so its Enter is such a list.
    EXPECT_NE(t.find("freeze or <specify layers by object selection>: NOPE\nNo layers found matching pattern NOPE.\n\n" +
                     std::string(kLayoutPrompt) + "Thaw\nEnter layer(s) name to thaw: \n" + kLayoutPrompt),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("object selection>:    \n" + std::string(kLayoutPrompt)), std::string::npos) << t;
}

TEST(VplayerReset, BackToTheDefaultForNewViewportsWithoutOverrides) {
    ScriptedSession s(inPlan({"CLAYER", "A-WALL", "VPLAYER", "Reset", "A-WALL,A-FURN", "All", ""}));
    OxDbDatabase* db = s.database();
    setVpdflt(db, L"A-WALL", true);
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(frozenIn(plan(db, 2)), Names{"A-WALL"});
    EXPECT_EQ(frozenIn(plan(db, 3)), Names{"A-WALL"}) << "A-FURN is not frozen in new viewports: thawed";
    EXPECT_EQ(frozenIn(detail(db, 2)), (Names{"E-POWR", "M-HVAC", "A-WALL"}));
    EXPECT_FALSE(overridesOf(db, L"A-WALL", detail(db, 2)).hasColor) << "the sample's override is gone";
    EXPECT_EQ(s.database()->clayer(), layerId(db, L"A-WALL"));
}

// The current layer is set again, once, when VPLAYER ends after Reset or an
// override touched it, so that the host shows its new state.
TEST(VplayerReset, TheCurrentLayerIsSetAgainWhenTouched) {
    const int before = currentLayerSets({});
    EXPECT_EQ(currentLayerSets({"VPLAYER", "Reset", "A-FURN", "", "Freeze", "A-WALL", "", ""}), before)
        << "neither Reset of another layer nor Freeze sets it";
    EXPECT_EQ(currentLayerSets({"VPLAYER", "Reset", "A-WALL", "", ""}), before + 1);
    EXPECT_EQ(currentLayerSets({"VPLAYER", "Color", "2", "A-*", "All", "Reset", "A-WALL", "", "^C"}), before + 1)
        << "once, at the end, also after Escape";
    EXPECT_EQ(currentLayerSets({"VPLAYER", "Reset", "A-WALL", "", "List", "651,10"}), before)
        << "a pick that is not a viewport ends the command without it";
}

TEST(VplayerThaw, EnterAtItsLayerPromptStillRegenerates) {
    ScriptedSession s(inPlan({"VPLAYER", "Thaw", "", ""}));
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(frozenIn(plan(s.database(), 3)), Names{"A-FURN"});
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter layer(s) name to thaw: \n" + std::string(kLayoutPrompt) + "\nCommand: "),
              std::string::npos)
        << t;
    EXPECT_EQ(regenerations(s), 1);
}

TEST(VplayerNewfrz, AllNewLayersAreMarkedButOnlyTheLastIsFrozen) {
    // A name given twice makes one layer, which is then the last one made.
    ScriptedSession s(inPlan({"VPLAYER", "Newfrz", "N-ONE, N-TWO", "Newfrz", "A-WALL,bad<name,a-wall", "Newfrz", "",
                              "Newfrz", "N-SAME,n-same", ""}));
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_TRUE(vpdflt(db, L"N-ONE"));
    EXPECT_TRUE(vpdflt(db, L"N-TWO"));
    for (const OxDbObjectId& viewport : {plan(db, 2), plan(db, 3), detail(db, 2)}) {
        const Names frozen = frozenIn(viewport);
        EXPECT_EQ(std::count(frozen.begin(), frozen.end(), "N-TWO"), 1);
        EXPECT_EQ(std::count(frozen.begin(), frozen.end(), "N-ONE"), 0);
        EXPECT_EQ(std::count(frozen.begin(), frozen.end(), "N-SAME"), 1);
    }
    EXPECT_TRUE(vpdflt(db, L"N-SAME"));
    EXPECT_TRUE(frozenIn(plan(db, 1)).empty()) << "the sheets are left alone";
    const std::string t = s.transcript();
    EXPECT_NE(t.find("New frozen layer name(s): A-WALL,bad<name,a-wall\nLayer with name A-WALL already exists!\n"
                     "bad<name is a invalid layer name!\nLayer with name a-wall already exists!\n"),
              std::string::npos)
        << t;
}

TEST(VplayerNewfrz, InModelSpaceAndWithoutViewports) {
    ScriptedSession s({"VPLAYER", "Newfrz", "N-ONE", ""}, Drawing::New);
    EXPECT_EQ(s.run(), 0);
    EXPECT_TRUE(vpdflt(s.database(), L"N-ONE"));
    EXPECT_TRUE(frozenIn(viewportOf(s.database(), L"Layout1", 1)).empty());
}

TEST(VplayerVpvisdflt, EnterMeansThawed) {
    ScriptedSession s({"VPLAYER", "Vpvisdflt", "A-DOOR", "", "Vpvisdflt", "A-GLAZ,A-FURN", "F", "Vpvisdflt", "",
                       "^C", ""});
    setVpdflt(s.database(), L"A-DOOR", true);
    EXPECT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_FALSE(vpdflt(db, L"A-DOOR"));
    EXPECT_TRUE(vpdflt(db, L"A-GLAZ"));
    EXPECT_TRUE(vpdflt(db, L"A-FURN"));
    EXPECT_NE(s.transcript().find("A-GLAZ,A-FURN\nSetting Frozen/<Thawed>: F\n"), std::string::npos)
        << s.transcript();
}

TEST(VplayerList, FrozenLayersOfAPickedViewport) {
    ScriptedSession s(inPlan({"VPLAYER", "List", "760,420", "662,420", "?", "20,300", "", "Freeze", "A-DOOR", "",
                              "List", "651,10"}));
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Select a viewport : 760,420\nUnable to use that selection.  Please try again.\n"
                     "Select a viewport : 662,420\nThe following layers are frozen in viewport 3\nA-FURN\n"),
              std::string::npos)
        << t;
    // The sheet of "A3 Detail" is not an object; a title block is not a
    // viewport, which ends the command unregenerated, even after a change.
    EXPECT_NE(t.find("Select a viewport : 20,300\nUnable to use"), std::string::npos) << t;
    EXPECT_NE(t.find("Select a viewport : \n" + std::string(kLayoutPrompt) + "Freeze\n"), std::string::npos) << t;
    EXPECT_NE(t.find(std::string(kLayoutPrompt) + "List\nSelect a viewport : 651,10\nCommand: "), std::string::npos)
        << t;
    EXPECT_EQ(frozenIn(plan(s.database(), 2)), Names{"A-DOOR"});
    EXPECT_EQ(regenerations(s), 0);
    EXPECT_EQ(regenAllMarks(s), 0);
}

TEST(VplayerList, AViewportWithNothingFrozenAndAPercentInAName) {
    ScriptedSession s(inPlan({"VPLAYER", "Newfrz", "100%done", "List", "380,110", ""}));
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("The following layers are frozen in viewport 2\n100%done\n"), std::string::npos)
        << s.transcript();
    ScriptedSession none(inPlan({"VPLAYER", "List", "380,110", ""}));
    EXPECT_EQ(none.run(), 0);
    EXPECT_NE(none.transcript().find("No layers are frozen in viewport 2\n"), std::string::npos) << none.transcript();
}
