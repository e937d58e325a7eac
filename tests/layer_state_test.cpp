// "-LAYER" stAte through the real host and module: the mask display, saving,
// silent refusals, renaming, deleting and the listing; and a state saved,
// written to a drawing file, reopened and restored.
#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

#include "OxDbLayerStateManager.h"
#include "files/DrawingFile.h"
#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

const std::string kStateOption = "Enter an option [?/Save/Name/Delete]: ";
const std::string kHeader = "Layer state name \n-------------------------------";

std::string allRows(const char* on) {
    return std::string("STATE\nON           ") + on +
           "\nFROZEN       YES\nLOCK         YES\nPLOT         YES\nNEWVPFREEZE  YES\n"
           "COLOR        YES\nLINETYPE     YES\nLINEWEIGHT   YES\nPLOTSTYLE    YES\n";
}

bool hasState(OxDbDatabase* db, const wchar_t* name) { return db->getLayerStateManager()->hasLayerState(name); }

unsigned int maskOf(OxDbDatabase* db, const wchar_t* name) {
    OxDbLayerStateManager::LayerStateMask mask = OxDbLayerStateManager::kNone;
    EXPECT_EQ(db->getLayerStateManager()->getLayerStateMask(name, mask), Ox::eOk);
    return mask;
}

// Everything a state can give back of one layer.
struct LayerProps {
    bool off, frozen, locked, plottable;
    OxCmColor color;
    std::uint64_t linetype; // by handle: the same in a drawing saved and reopened
    int lineWeight;
    std::string plotStyle;
    OxCmTransparency transparency;
    bool operator==(const LayerProps&) const = default;
};

LayerProps propsOf(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<LayerProps>(db, name, [](const OxDbLayerTableRecord& l) {
        return LayerProps{l.isOff(),       l.isFrozen(),
                          l.isLocked(),    l.isPlottable(),
                          l.color(),       l.linetypeObjectId().handle().value(),
                          l.lineWeight(),  l.plotStyleName().utf8(),
                          l.transparency()};
    });
}

} // namespace

TEST(LayerState, SaveWithoutChangesRecordsEverything) {
    ScriptedSession s({"-LAYER", "stAte", "Save", "  First  ", "", "", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(hasState(s.database(), L"First"));
    EXPECT_EQ(maskOf(s.database(), L"First"), 0x7FFu);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter new layer state name:   First  \n" + allRows("YES") +
                     "Enter an option to change [On/Frozen/Lock/Print/Newvpfreeze/Color/lineType/lineWeight/"
                     "plotStyle]: \n" +
                     kStateOption),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "YES"), 9) << t;
}

TEST(LayerState, KeywordsFlipTheirBits) {
    ScriptedSession s({"-LAYER", "stAte", "Save", "S", "Color", "Color", "On", "lineweight", "", "", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(maskOf(s.database(), L"S"), 0x7FFu & ~0x001u & ~0x080u);
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "\nCOLOR        NO \n"), 1) << t;
    EXPECT_EQ(countOf(t, "\nCOLOR        YES\n"), 4) << t; // at the start and after the second Color, twice more
    EXPECT_NE(t.find("]: On\nSTATE\nON           NO \n"), std::string::npos) << t;
}

TEST(LayerState, RefusalsAreSilentAndCancelDiscardsTheSave) {
    ScriptedSession s({"-LAYER", "stAte", "Save", "S1",     "",        "Save", "s1",   "Save",
                       "",       "Save",  "a<b",  "Save",   "S2",      "^C",   "Name", "Missing",
                       "Name",   "S1",    "s1",   "Delete", "Missing", "",     ""},
                      Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(hasState(s.database(), L"S1"));
    EXPECT_FALSE(hasState(s.database(), L"S2"));
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "STATE\n"), 2) << t; // one display for S1, one for the cancelled S2
    for (const char* refused : {"s1", "", "a<b"})
        EXPECT_NE(t.find(std::string("Enter new layer state name: ") + refused + "\n" + kStateOption),
                  std::string::npos)
            << refused << "\n"
            << t;
    // A missing old name does not ask for the new one.
    EXPECT_NE(t.find("Enter old layer state name: Missing\n" + kStateOption), std::string::npos) << t;
    EXPECT_NE(t.find("Enter old layer state name: S1\nEnter new layer state name: s1\n" + kStateOption),
              std::string::npos)
        << t;
}

TEST(LayerState, ListRenameAndDelete) {
    ScriptedSession s(
        {"-LAYER", "stAte", "?", "Save", "Old", "", "Name", "Old", "New", "?", "Delete", "New", "?", "", ""},
        Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_FALSE(hasState(s.database(), L"Old"));
    EXPECT_FALSE(hasState(s.database(), L"New"));
    const std::string t = s.transcript();
    EXPECT_NE(t.find("]: ?\n" + kHeader + "\n" + kStateOption + "Save"), std::string::npos) << t;
    EXPECT_NE(t.find(kHeader + "\nNew\n" + kStateOption + "Delete"), std::string::npos) << t;
    EXPECT_EQ(countOf(t, kHeader + "\n" + kStateOption), 2) << t;
}

TEST(LayerState, SavedStateSurvivesTheFileAndRestoresEveryProperty) {
    namespace fs = std::filesystem;
    const fs::path file = fs::temp_directory_path() / ("pavo-layer-state-" + std::to_string(::getpid()) + ".pvd");
    std::vector<std::wstring> names = {L"0", L"A1", L"A2"};
    std::vector<LayerProps> saved;
    {
        ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", "stAte", "Save", "Before", "", "", ""}, Drawing::New);
        OxDbDatabase* db = s.database();
        addLayer(db, L"A1", [](OxDbLayerTableRecord& l) {
            l.setColor(OxCmColor::fromIndex(30));
            l.setIsLocked(true);
            l.setIsPlottable(false);
            l.setLineWeight(OxDb::kLnWt050);
            l.setTransparency(OxCmTransparency(100));
        });
        addLayer(db, L"A2", [](OxDbLayerTableRecord& l) {
            l.setIsOff(true);
            l.setIsFrozen(true);
            l.setColor(OxCmColor::fromRgb(1, 2, 3));
            l.setPlotStyleName(L"Special");
        });
        ASSERT_EQ(s.run(), 0) << s.transcript();
        for (const std::wstring& n : names)
            saved.push_back(propsOf(db, n.c_str()));
        std::string error;
        ASSERT_TRUE(pavo::files::writeDrawingFile(*db, file.string(), error)) << error;
    }
    ScriptedSession s({"-LAYER", "Color",  "3",    "*",      "LWeight", "1",    "*", "TRansparency",
                       "40",     "*",      "Plot", "Y",      "*",       "Thaw", "*", "ON",
                       "*",      "Unlock", "*",    "PStyle", "Normal",  "*",    ""},
                      Drawing::None);
    ASSERT_TRUE(s.session().openDrawing(file));
    fs::remove(file);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    OxDbDatabase* db = s.database();
    EXPECT_NE(propsOf(db, L"A2"), saved[2]) << "the script changed the layers";
    ASSERT_EQ(db->getLayerStateManager()->restoreLayerState(L"Before"), Ox::eOk);
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_TRUE(propsOf(db, names[i].c_str()) == saved[i]) << i;
}
