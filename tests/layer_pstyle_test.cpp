// "-LAYER" PStyle and Plot through the real host and module, and the plot
// style name helpers on a session's drawing.
#include <gtest/gtest.h>

#include "OxDbDictionary.h"
#include "layer_TestSupport.h"
#include "layerhelper/PavoLayerHelper.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

std::string plotStyleOf(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<std::string>(db, name, [](const OxDbLayerTableRecord& l) { return l.plotStyleName().utf8(); });
}

bool isPlottable(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<bool>(db, name, [](const OxDbLayerTableRecord& l) { return l.isPlottable(); });
}

int plotStyleEntries(OxDbDatabase* db) {
    OxDbDictionary* dictionary = nullptr;
    if (db->getPlotStyleNameDictionary(dictionary, OxDb::kForRead) != Ox::eOk) return -1;
    const int n = dictionary->numEntries();
    dictionary->close();
    return n;
}

const std::string kStylePrompt = "Enter Print Style Name or [?] <Special>: ";

} // namespace

TEST(LayerPstyle, ListsRefusesAndAcceptsNamesInAnyCase) {
    ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", "PStyle", "?", "Nope", "nORMAL", "A1", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    addLayer(db, L"A1", [](OxDbLayerTableRecord& l) { l.setPlotStyleName(L"Special"); });
    db->setClayer(addLayer(db, L"Cur", [](OxDbLayerTableRecord& l) { l.setPlotStyleName(L"Special"); }));
    const int entries = plotStyleEntries(db);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(plotStyleOf(db, L"A1"), "Normal");
    EXPECT_EQ(plotStyleEntries(db), entries); // the existing entry was found, none added
    const std::string t = s.transcript();
    // Only the dictionary's first entry is usable without a plot style table.
    EXPECT_NE(t.find(kStylePrompt + "?\nPrint Style Name\n -------------------------------\n Normal\n" + kStylePrompt +
                     "Nope\nUnknown plot style.\n" + kStylePrompt +
                     "nORMAL\n"
                     "Enter name list of layer(s) for print style name nORMAL <Cur>: A1\n"),
              std::string::npos)
        << t;
}

TEST(LayerPstyle, EnterAppliesTheCurrentLayersStyleUnchecked) {
    ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", "PStyle", "", "A1", "PStyle", "^C", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    addLayer(db, L"A1");
    db->setClayer(addLayer(db, L"Cur", [](OxDbLayerTableRecord& l) { l.setPlotStyleName(L"Special"); }));
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(plotStyleOf(db, L"A1"), "Special"); // not a usable name, yet not checked
    EXPECT_EQ(countOf(s.transcript(), "Unknown plot style"), 0) << s.transcript();
}

TEST(LayerPlot, NoYesAndEnter) {
    ScriptedSession s({"-LAYER", "Plot", "N", "A*", "Plot", "Y", "A1", "Print", "", "", "Plot", "maybe", "", "", ""},
                      Drawing::New);
    OxDbDatabase* db = s.database();
    addLayer(db, L"A1");
    addLayer(db, L"A2");
    db->setClayer(addLayer(db, L"Cur", [](OxDbLayerTableRecord& l) { l.setIsPlottable(false); }));
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(isPlottable(db, L"A1"));
    EXPECT_FALSE(isPlottable(db, L"A2"));
    EXPECT_TRUE(isPlottable(db, L"Cur")); // Enter twice: plot, the current layer
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "\nEnter the name list of layer(s) to change plot setting: "), 4) << t;
    // The host asks again itself; Enter then takes the default.
    EXPECT_NE(t.find("<Plot>: maybe\nInvalid option keyword.\n"), std::string::npos) << t;
}

TEST(PlotStyleNames, ColourDependentDrawingsHaveNoUsableNames) {
    ScriptedSession s({}, Drawing::New);
    OxDbDatabase* db = s.database();
    db->setPstylemode(1);
    OxArray<OxString> names;
    names.append(OxString(L"kept"));
    EXPECT_EQ(PavoLayerHelper::getAllPlotStyleName(names), STATUS_ERROR);
    EXPECT_EQ(names.length(), 1);
    EXPECT_FALSE(PavoLayerHelper::isValidPlotStyleName(L"Normal"));

    db->setPstylemode(0);
    names.setLogicalLength(0);
    EXPECT_EQ(PavoLayerHelper::getAllPlotStyleName(names), STATUS_NORMAL);
    ASSERT_EQ(names.length(), 1);
    EXPECT_EQ(names[0], L"Normal");
    EXPECT_TRUE(PavoLayerHelper::isValidPlotStyleName(L"NORMAL"));
    EXPECT_EQ(s.run(), 0);
}

TEST(PlotStyleNames, CreateFindsOrAddsTheEntry) {
    ScriptedSession s({}, Drawing::New);
    OxDbDatabase* db = s.database();
    const int entries = plotStyleEntries(db);
    const OxDbObjectId normal = PavoLayerHelper::createPlotStye(L"normal", db);
    EXPECT_FALSE(normal.isNull());
    EXPECT_EQ(plotStyleEntries(db), entries);
    const OxDbObjectId added = PavoLayerHelper::createPlotStye(L"Thin", db);
    EXPECT_FALSE(added.isNull());
    EXPECT_NE(added, normal);
    EXPECT_EQ(PavoLayerHelper::createPlotStye(L"THIN", db), added);
    EXPECT_EQ(plotStyleEntries(db), entries + 1);
    EXPECT_TRUE(PavoLayerHelper::createPlotStye(L"x", nullptr).isNull());
    EXPECT_EQ(s.run(), 0);
}

TEST(LayerPStyle, EachLayoutListsTheStylesOfItsOwnTable) {
    // After "?" the plot style is asked again: Enter takes the default,
    // Enter at the layer list means the current layer, Enter ends -LAYER.
    ScriptedSession s({"CTAB", "A1 Plan", "-LAYER", "PStyle", "?", "", "", "", "CTAB", "A3 Detail", "-LAYER", "PStyle",
                       "?", "", "", ""});
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    const size_t second = t.find("Command: CTAB\nEnter new value for CTAB <A1 Plan>: A3 Detail");
    ASSERT_NE(second, std::string::npos) << t;
    const std::string a1 = t.substr(0, second), a3 = t.substr(second);
    EXPECT_NE(a1.find("\n Grey 50%"), std::string::npos) << a1; // pavo-named.pst
    EXPECT_EQ(a3.find("\n Grey 50%"), std::string::npos) << a3; // monochrome-named.pst has no grey
    EXPECT_NE(a3.find("\n Screened 30%"), std::string::npos) << a3;
}
