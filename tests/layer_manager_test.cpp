// The layer manager dialog that "LAYER" opens, on Qt's offscreen platform:
// the real host, the real module and "LAYER", the real dialog module, and
// the dialog driven through its widgets by the script's "@" lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

#include "DocExamples.h"
#include "base/Utf8.h"
#include "layer_TestSupport.h"
#include "layerhelper/PavoLayerHelper.h"
#include "paperspace_TestSupport.h"
#include "setbylayer_TestSupport.h"

using namespace layertest;
using pavotest::Drawing;
using pavotest::ScriptedSession;

namespace {

const char* const kPrompt = "Dialog \"Layer Manager\": ";

// "INITDIA", "LAYER", the dialog's lines, and what follows the dialog.
std::vector<std::string> dialogScript(std::vector<std::string> lines, std::vector<std::string> after = {}) {
    std::vector<std::string> script{"INITDIA", "LAYER"};
    script.insert(script.end(), lines.begin(), lines.end());
    script.insert(script.end(), after.begin(), after.end());
    return script;
}

// The names "@rows" listed after the line `marker` (up to the next prompt).
std::set<std::string> listedNames(const std::string& out, const std::string& marker) {
    std::set<std::string> names;
    std::size_t at = out.find(marker);
    if (at == std::string::npos) return names;
    std::istringstream lines(out.substr(out.find('\n', at) + 1));
    std::string line;
    std::getline(lines, line); // the status line
    while (std::getline(lines, line) && line.rfind("Dialog ", 0) != 0) {
        std::string name = line.substr(0, line.find(':'));
        const std::size_t mark = name.find(" (current)");
        if (mark != std::string::npos) name.erase(mark);
        names.insert(name);
    }
    return names;
}

std::string layerName(const OxDbObjectId& id) {
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) return "";
    std::string name = layer->name().utf8();
    layer->close();
    return name;
}

int colorIndex(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<int>(db, name, [](const OxDbLayerTableRecord& l) { return int(l.color().colorIndex()); });
}

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

TEST(LayerManager, EachColumnsEditReachesTheDrawingOnOk) {
    // The plot styles of a layout's table are offered while it is current.
    std::vector<std::string> script{"CTAB", "A1 Plan"};
    for (const std::string& line : dialogScript({"@select A-WALL", "@set Color 1", "@set Linetype DASHDOT", "@set Lineweight 0.30",
                                    "@set Transparency 40", "@set plot style Thin", "@set Description Outer walls",
                                    "@set On off", "@set Locked on", "@set Plot off", "@set New VP Freeze on",
                                    "@set Frozen on", "@set Name A-WALL-NEW", "@ok"}))
        script.push_back(line);
    ScriptedSession s(script, Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_EQ(pavotest::countOf(out, "nothing changed"), 0) << out;
    EXPECT_NE(out.find(std::string(kPrompt) + "@select A-WALL\n"), std::string::npos) << out;
    EXPECT_FALSE(hasLayer(s.database(), L"A-WALL"));
    const wchar_t* name = L"A-WALL-NEW";
    ASSERT_TRUE(hasLayer(s.database(), name)) << out;
    EXPECT_EQ(readLayer<int>(s.database(), name, [](const OxDbLayerTableRecord& l) { return int(l.color().colorIndex()); }), 1);
    EXPECT_EQ(readLayer<int>(s.database(), name, [](const OxDbLayerTableRecord& l) { return int(l.lineWeight()); }), 30);
    EXPECT_EQ(readLayer<int>(s.database(), name, [](const OxDbLayerTableRecord& l) { return int(l.transparency().alpha()); }), 153);
    EXPECT_EQ(readLayer<std::string>(s.database(), name, [](const OxDbLayerTableRecord& l) { return l.plotStyleName().utf8(); }), "Thin");
    EXPECT_EQ(description(s.database(), name), "Outer walls");
    EXPECT_TRUE(isOff(s.database(), name));
    EXPECT_TRUE(isLocked(s.database(), name));
    EXPECT_TRUE(isFrozen(s.database(), name));
    EXPECT_FALSE(readLayer<bool>(s.database(), name, [](const OxDbLayerTableRecord& l) { return l.isPlottable(); }));
    EXPECT_TRUE(readLayer<bool>(s.database(), name, [](const OxDbLayerTableRecord& l) { return l.VPDFLT(); }));
    // DASHDOT was not in the drawing: it was loaded from the linetype file.
    const std::string linetype = readLayer<std::string>(s.database(), name, [](const OxDbLayerTableRecord& l) {
        OxDbLinetypeTableRecord* lt = nullptr;
        if (oxdbOpenObject(lt, l.linetypeObjectId(), OxDb::kForRead) != Ox::eOk) return std::string();
        std::string n = lt->name().utf8();
        lt->close();
        return n;
    });
    EXPECT_EQ(linetype, "DASHDOT");
}

TEST(LayerManager, CancelAfterEditsLeavesTheSavedDrawingByteForByte) {
    const auto folder = std::filesystem::temp_directory_path() / ("pavo-layer-manager-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string before = (folder / "before.pvd").string(), after = (folder / "after.pvd").string();
    ScriptedSession s({"SAVEAS", before, "INITDIA", "LAYER", "@select A-*", "@set Color 5", "@set Linetype DASHDOT",
                       "@set Plot Style Normal", "@new", "@set Name TEMP", "@current", "@select UNUSED", "@delete",
                       "@select A-DOOR", "@set Name A-DOOR-2", "@cancel", "SAVEAS", after},
                      Drawing::Sample, setbylayertest::dialogOptions());
    addLayer(s.database(), L"UNUSED");
    ASSERT_EQ(s.run(), 0) << s.transcript();
    // Every edit was taken, none written.
    EXPECT_EQ(pavotest::countOf(s.transcript(), "nothing changed"), 0) << s.transcript();
    EXPECT_EQ(pavotest::countOf(s.transcript(), "cannot be"), 0) << s.transcript();
    const std::string a = fileBytes(before), b = fileBytes(after);
    ASSERT_FALSE(a.empty());
    EXPECT_EQ(a, b);
    EXPECT_FALSE(hasLayer(s.database(), L"TEMP"));
    std::filesystem::remove_all(folder);
}

TEST(LayerManager, RefusedDeletesAndRenamesSayWhyAndChangeNothing) {
    ScriptedSession s(dialogScript({"@select 0", "@delete", "@set Name ZERO", "@select A-WALL", "@delete",
                                    "@select DEFPOINTS", "@delete", "@select SITE|BOUNDARY", "@delete",
                                    "@set Name BOUNDARY", "@select A-DOOR", "@set Name a-wall", "@set Name A<B",
                                    "@select A-*", "@set Name A-ALL", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    addLine(s.database(), L"A-WALL", 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("@delete\nLayer 0 is the current layer and cannot be deleted."), std::string::npos) << out;
    EXPECT_NE(out.find("@set Name ZERO\nLayer 0 cannot be renamed."), std::string::npos) << out;
    EXPECT_NE(out.find("Layer A-WALL is in use (objects or block definitions are on it) and cannot be deleted."),
              std::string::npos);
    EXPECT_NE(out.find("Layer DEFPOINTS holds the definition points"), std::string::npos);
    EXPECT_NE(out.find("Layer SITE|BOUNDARY belongs to an external reference and cannot be deleted."),
              std::string::npos);
    EXPECT_NE(out.find("Layer SITE|BOUNDARY belongs to an external reference and cannot be renamed."),
              std::string::npos);
    EXPECT_NE(out.find("@set Name a-wall\nLayer a-wall already exists."), std::string::npos);
    EXPECT_NE(out.find("@set Name A<B\n\"A<B\" is an invalid layer name."), std::string::npos);
    EXPECT_NE(out.find("@set Name A-ALL\nA name belongs to one layer"), std::string::npos);
    for (const wchar_t* name : {L"0", L"A-WALL", L"DEFPOINTS", L"SITE|BOUNDARY", L"A-DOOR"})
        EXPECT_TRUE(hasLayer(s.database(), name)) << pavo::toUtf8(name);
    EXPECT_FALSE(s.database()->isModified() && hasLayer(s.database(), L"A-ALL"));
}

TEST(LayerManager, TheFilterShowsWhatTheSameNameListSelectsInLayer) {
    const std::vector<std::string> lists = {"A-*", "~A-*", "A-WALL,S-*", "=A-WALL", "[AS]-*", "*WALL*,E-*",
                                            "a[[]1]", "NOTE#1", "~*", "=", "ΣΧΕΔΙΟ"};
    std::vector<std::string> lines;
    for (const std::string& list : lists) {
        lines.push_back("@filter " + list);
        lines.push_back("@rows");
    }
    lines.push_back("@cancel");
    ScriptedSession s(dialogScript(lines), Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    std::size_t from = 0;
    for (const std::string& list : lists) {
        const std::string marker = std::string(kPrompt) + "@filter " + list + "\n";
        const std::size_t at = out.find(marker, from);
        ASSERT_NE(at, std::string::npos) << list;
        from = at + 1;
        const std::set<std::string> shown = listedNames(out.substr(at), std::string(kPrompt) + "@rows");
        OxArray<OxDbObjectId> ids;
        PavoLayerHelper::getMatchedLayerList(OxString::fromUtf8(list), ids, false);
        std::set<std::string> selected;
        for (const OxDbObjectId& id : ids) selected.insert(layerName(id));
        EXPECT_EQ(shown, selected) << list;
    }
}

TEST(LayerManager, ManySelectedLayersChangeAtOnce) {
    ScriptedSession s(dialogScript({"@filter A-*", "@select *", "@set Color 30", "@set Lineweight 0.5",
                                    "@set Frozen on", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    OxArray<OxDbObjectId> ids;
    PavoLayerHelper::getMatchedLayerList(L"A-*", ids, false);
    ASSERT_GT(ids.length(), 5);
    const std::size_t selectLine = out.find("@select *\n");
    ASSERT_NE(selectLine, std::string::npos) << out;
    EXPECT_NE(out.find(", " + std::to_string(ids.length()) + " shown, " + std::to_string(ids.length()) + " selected\n",
                       selectLine),
              std::string::npos)
        << out;
    for (const OxDbObjectId& id : ids) {
        const std::wstring name = OxString::fromUtf8(layerName(id)).str();
        EXPECT_EQ(colorIndex(s.database(), name.c_str()), 30) << layerName(id);
        EXPECT_TRUE(isFrozen(s.database(), name.c_str())) << layerName(id);
    }
    // Layers the filter hid were not selected.
    EXPECT_NE(colorIndex(s.database(), L"S-COLS"), 30);
    EXPECT_FALSE(isFrozen(s.database(), L"E-LITE"));
}

TEST(LayerManager, NewLayerMadeCurrentAndAppliedIsUndoneWithTheWholeDialog) {
    ScriptedSession s(dialogScript({"@new", "@set Name NEW-1", "@set Color 2", "@current", "@apply", "@select A-DOOR",
                                    "@set Color 6", "@ok"},
                                   {"-LAYER", "?", "NEW-1", "", "U"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    // The layer existed and was current after the dialog.
    EXPECT_NE(out.find("Current layer: NEW-1"), std::string::npos) << out;
    // U took the whole dialog back, Apply and OK alike.
    EXPECT_FALSE(hasLayer(s.database(), L"NEW-1"));
    EXPECT_EQ(currentLayer(s.database()), "0");
    EXPECT_EQ(colorIndex(s.database(), L"A-DOOR"), 3);
}

TEST(LayerManager, WrongColumnsAndValuesAreRefusedAndChangeNothing) {
    ScriptedSession s(dialogScript({"@select A-DOOR", "@set Colour 1", "@set Color 300", "@set Lineweight 0.31",
                                    "@set Transparency 95", "@set Linetype NOSUCH", "@set Frozen maybe",
                                    "@set Plot Style Nope", "@select NOSUCH*", "@set Color 1", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("@set Colour 1\nUnknown column \"Colour\"; nothing changed. The columns are Name, On,"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("@set Color 300\n\"300\" is not a layer colour"), std::string::npos);
    EXPECT_NE(out.find("@set Lineweight 0.31\n\"0.31\" is not a lineweight"), std::string::npos);
    EXPECT_NE(out.find("@set Transparency 95\n\"95\" is not a transparency"), std::string::npos);
    EXPECT_NE(out.find("@set Linetype NOSUCH\nLinetype NOSUCH is neither in the drawing nor in its linetype file"), std::string::npos);
    EXPECT_NE(out.find("@set Frozen maybe\nFrozen takes on or off"), std::string::npos);
    EXPECT_NE(out.find("@set Plot Style Nope\nPlot style Nope is not in"), std::string::npos);
    EXPECT_NE(out.find("No layer shown matches NOSUCH*; nothing is selected."), std::string::npos);
    EXPECT_NE(out.find("@set Color 1\nNo layer is selected; nothing changed."), std::string::npos);
    EXPECT_EQ(colorIndex(s.database(), L"A-DOOR"), 3);
    EXPECT_FALSE(isFrozen(s.database(), L"A-DOOR"));
}

TEST(LayerManager, LayerInAScriptWithoutInitdiaRunsTheCommandLineLoop) {
    ScriptedSession s({"LAYER", "?", "A-DOOR", ""}, Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(s.transcript().find("Dialog \""), std::string::npos);
    EXPECT_NE(s.transcript().find("Current layer: 0"), std::string::npos);
}

TEST(LayerManager, ColumnsSortAndTheSelectionFollowsItsLayers) {
    ScriptedSession s(dialogScript({"@filter A-*,S-*", "@select A-DOOR", "@sort Lineweight descending", "@rows",
                                    "@sort Name", "@set Color 4", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    const std::size_t rows = out.find(std::string(kPrompt) + "@rows\n");
    ASSERT_NE(rows, std::string::npos) << out;
    std::istringstream lines(out.substr(out.find('\n', rows) + 1));
    std::string line;
    std::getline(lines, line); // the status line
    EXPECT_NE(line.find(", 1 selected"), std::string::npos) << line;
    std::vector<std::pair<double, std::string>> seen;
    while (std::getline(lines, line) && line.rfind("Dialog ", 0) != 0) {
        const std::size_t at = line.find("Lineweight=");
        ASSERT_NE(at, std::string::npos) << line;
        const std::string value = line.substr(at + 11, line.find(' ', at) - at - 11);
        seen.emplace_back(value == "Default" ? -1.0 : std::stod(value), line.substr(0, line.find(':')));
    }
    ASSERT_GT(seen.size(), 5u);
    for (std::size_t i = 1; i < seen.size(); ++i) {
        EXPECT_GE(seen[i - 1].first, seen[i].first) << seen[i].second;
        if (seen[i - 1].first == seen[i].first) {
            EXPECT_LT(seen[i - 1].second, seen[i].second);
        }
    }
    // Two sorts later the selection is still A-DOOR alone.
    EXPECT_EQ(colorIndex(s.database(), L"A-DOOR"), 4);
    for (const wchar_t* other : {L"A-WALL", L"A-GLAZ", L"S-COLS", L"S-GRID"})
        EXPECT_NE(colorIndex(s.database(), other), 4) << pavo::toUtf8(other);
}

TEST(LayerManager, TheWalkThroughPrintsWhatItsPageShowsAndLeavesTheLayersItSays) {
    const std::vector<std::string> script =
        pavotest::scriptLines(pavotest::repositoryFile("docs/examples/layer-manager.scr"));
    ScriptedSession s(script, Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string shown =
        pavotest::textBlockStartingWith(pavotest::repositoryFile("docs/layer-manager.md"), "Command: INITDIA");
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(s.transcript().substr(0, shown.size()), shown);
    EXPECT_EQ(s.transcript().substr(shown.size()), "Command: \n");
    EXPECT_EQ(currentLayer(s.database()), "A-FLOR");
    EXPECT_EQ(description(s.database(), L"A-FLOR"), "Floor finishes");
    EXPECT_TRUE(isFrozen(s.database(), L"A-FURN-OLD"));
    EXPECT_EQ(colorIndex(s.database(), L"A-FURN"), 30);
    EXPECT_TRUE(hasLayer(s.database(), L"A-DEMO"));
}

TEST(LayerManager, ViewportColumnsChangeTheCurrentViewportsOverridesOnly) {
    std::vector<std::string> script{"CTAB", "A3 Detail"};
    for (const std::string& line :
         dialogScript({"@filter A-WALL,A-DOOR", "@rows", "@select A-DOOR", "@set VP Color 5", "@set VP Freeze on",
                       "@select A-WALL", "@set VP Color remove", "@set VP Linetype HIDDEN", "@set VP Lineweight 0.35",
                       "@set VP Transparency 30", "@set VP Plot Style Thin", "@ok"}))
        script.push_back(line);
    ScriptedSession s(script, Drawing::Sample, setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_EQ(pavotest::countOf(out, "nothing changed"), 0) << out;
    // The sample's own override of A-WALL in this viewport is shown as one.
    EXPECT_NE(out.find("VP Freeze=Thawed VP Color=red (override) VP Linetype=Continuous VP Lineweight=0.70 mm "
                       "(override) VP Transparency=0 VP Plot Style=Thick\n"),
              std::string::npos)
        << out;
    const OxDbObjectId detail = papertest::viewportOf(s.database(), L"A3 Detail", 2);
    const OxDbObjectId plan = papertest::viewportOf(s.database(), L"A1 Plan", 2);
    ASSERT_FALSE(detail.isNull());
    const OxDbLayerViewportOverrides door = papertest::overridesOf(s.database(), L"A-DOOR", detail);
    EXPECT_TRUE(door.hasColor && door.color.colorIndex() == 5);
    // Frozen there after the layers the sample freezes.
    EXPECT_EQ(papertest::frozenIn(detail), (std::vector<std::string>{"E-POWR", "M-HVAC", "A-DOOR"}));
    const OxDbLayerViewportOverrides wall = papertest::overridesOf(s.database(), L"A-WALL", detail);
    EXPECT_FALSE(wall.hasColor);
    EXPECT_TRUE(wall.hasLineWeight && wall.lineWeight == 35);
    EXPECT_TRUE(wall.hasLinetype && wall.hasTransparency && wall.hasPlotStyle);
    // The layers themselves and the other layout's viewport are untouched.
    EXPECT_EQ(colorIndex(s.database(), L"A-DOOR"), 3);
    EXPECT_TRUE(papertest::overridesOf(s.database(), L"A-DOOR", plan).isEmpty());
    const std::vector<std::string> frozenInPlan = papertest::frozenIn(plan);
    EXPECT_EQ(std::find(frozenInPlan.begin(), frozenInPlan.end(), "A-DOOR"), frozenInPlan.end());
}

TEST(LayerManager, ViewportColumnsAreRefusedInModelSpace) {
    ScriptedSession s(dialogScript({"@select A-DOOR", "@set VP Color 5", "@rows", "@ok"}), Drawing::Sample,
                      setbylayertest::dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("@set VP Color 5\nThere is no current viewport"), std::string::npos) << out;
    EXPECT_EQ(out.find("VP Color="), std::string::npos);
}

TEST(LayerManager, NamesPassedBetweenLayersInOneApplyLandOnTheRightLayers) {
    // A-GLAZ becomes A-TMP and A-DOOR, which comes first in the drawing,
    // takes the name A-GLAZ, applied at once.
    ScriptedSession s(dialogScript({"@select A-GLAZ", "@set Name A-TMP", "@select A-DOOR", "@set Name A-GLAZ", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    const OxDbObjectId door = layerId(s.database(), L"A-DOOR"), glazing = layerId(s.database(), L"A-GLAZ");
    ASSERT_LT(door, glazing);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(layerName(glazing), "A-TMP");
    EXPECT_EQ(layerName(door), "A-GLAZ");
    EXPECT_FALSE(hasLayer(s.database(), L"A-DOOR"));
}

TEST(LayerManager, ANewLayerMayTakeTheNameOfALayerDeletedOrRenamedInTheSameApply) {
    ScriptedSession s(dialogScript({"@select UNUSED", "@delete", "@new", "@set Name UNUSED", "@set Color 6",
                                    "@select SPARE", "@set Name SPARE-2", "@new", "@set Name SPARE", "@ok"}),
                      Drawing::Sample, setbylayertest::dialogOptions());
    const OxDbObjectId unused = addLayer(s.database(), L"UNUSED");
    const OxDbObjectId spare = addLayer(s.database(), L"SPARE");
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(unused.isErased());
    EXPECT_NE(layerId(s.database(), L"UNUSED"), unused);
    EXPECT_EQ(colorIndex(s.database(), L"UNUSED"), 6);
    EXPECT_EQ(layerName(spare), "SPARE-2");
    ASSERT_TRUE(hasLayer(s.database(), L"SPARE"));
    EXPECT_NE(layerId(s.database(), L"SPARE"), spare);
}
