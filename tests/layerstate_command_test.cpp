// LAYERSTATE through a scripted session: restore after save and reopen,
// export and import between drawings, delete, rename, bad files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "OxDbLayerStateManager.h"
#include "SessionHarness.h"
#include "base/Utf8.h"
#include "db_test_support.h"
#include "files/LayerStateFile.h"

namespace fs = std::filesystem;
using M = OxDbLayerStateManager;

namespace {

struct LayerStateCommand : ::testing::Test {
    fs::path folder = fs::temp_directory_path() / ("pavo-layerstate-" + std::to_string(::getpid()));
    void SetUp() override { fs::create_directories(folder); }
    void TearDown() override { fs::remove_all(folder); }

    static OxDbObjectId layerId(OxDbDatabase* db, const wchar_t* name) {
        OxDbLayerTable* table = nullptr;
        EXPECT_EQ(db->getLayerTable(table, OxDb::kForRead), Ox::eOk);
        OxDbObjectId id;
        table->getIdAt(name, id);
        table->close();
        return id;
    }
    static OxDbObjectId linetypeId(OxDbDatabase* db, const wchar_t* name) {
        OxDbLinetypeTable* table = nullptr;
        EXPECT_EQ(db->getLinetypeTable(table, OxDb::kForRead), Ox::eOk);
        OxDbObjectId id;
        table->getIdAt(name, id);
        table->close();
        return id;
    }
    template <class F> static void change(OxDbDatabase* db, const wchar_t* name, F f) {
        OxDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(oxdbOpenObject(layer, layerId(db, name), OxDb::kForWrite), Ox::eOk);
        f(*layer);
        layer->close();
    }
    template <class F> static void check(OxDbDatabase* db, const wchar_t* name, F f) {
        OxDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(oxdbOpenObject(layer, layerId(db, name), OxDb::kForRead), Ox::eOk);
        f(*layer);
        layer->close();
    }

    // Walls (red, DASHED, 0.50 mm, "Thick", off) and Doors (green, frozen,
    // locked, 50 % transparent), and state "Plan" recording some of that.
    static void makePlan(OxDbDatabase* db) {
        ASSERT_EQ(db->loadLineTypeFile(L"DASHED", L"vantaiso.lin"), Ox::eOk);
        dbtest::addLayer(*db, L"Walls");
        dbtest::addLayer(*db, L"Doors");
        const OxDbObjectId dashed = linetypeId(db, L"DASHED");
        change(db, L"Walls", [&](OxDbLayerTableRecord& l) {
            l.setColor(OxCmColor::fromIndex(1));
            l.setLinetypeObjectId(dashed);
            l.setLineWeight(OxDb::kLnWt050);
            l.setPlotStyleName(L"Thick");
            l.setIsOff(true);
        });
        change(db, L"Doors", [](OxDbLayerTableRecord& l) {
            l.setColor(OxCmColor::fromIndex(3));
            l.setIsFrozen(true);
            l.setIsLocked(true);
            l.setTransparency(OxCmTransparency(128));
        });
        M* states = db->getLayerStateManager();
        ASSERT_EQ(states->saveLayerState(L"Plan", static_cast<M::LayerStateMask>(M::kOn | M::kFrozen | M::kColor |
                                                                                 M::kLineType | M::kPlotStyle)),
                  Ox::eOk);
        ASSERT_EQ(states->setLayerStateDescription(L"Plan", L"For plotting"), Ox::eOk);
    }

    // Changes every property of Walls and Doors away from the plan.
    static void scramble(OxDbDatabase* db) {
        change(db, L"Walls", [&](OxDbLayerTableRecord& l) {
            l.setColor(OxCmColor::fromIndex(5));
            l.setLinetypeObjectId(db->continuousLinetype());
            l.setLineWeight(OxDb::kLnWt025);
            l.setPlotStyleName(L"Normal");
            l.setIsOff(false);
        });
        change(db, L"Doors", [](OxDbLayerTableRecord& l) {
            l.setColor(OxCmColor::fromIndex(4));
            l.setIsFrozen(false);
            l.setIsLocked(false);
            l.setTransparency(OxCmTransparency(255));
        });
    }
};

TEST_F(LayerStateCommand, RestoreAfterSaveAndReopenBringsBackExactlyTheRecordedProperties) {
    pavotest::ScriptedSession session({"LAYERSTATE", "?", "Restore", "nosuch", "plan", ""}, pavotest::Drawing::New);
    makePlan(session.database());
    const fs::path file = folder / "plan.pvd";
    ASSERT_TRUE(session.session().saveDrawing(file));
    ASSERT_TRUE(session.session().openDrawing(file));
    OxDbDatabase* db = session.database();
    ASSERT_TRUE(db->getLayerStateManager()->hasLayerState(L"Plan"));
    scramble(db);

    EXPECT_EQ(session.run(), 0);
    const std::string out = session.transcript();
    EXPECT_NE(out.find("\n  Plan (3 layers): For plotting\n    records: on/off, frozen, colour, linetype, plot style"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("No layer state is named \"nosuch\"."), std::string::npos);
    EXPECT_NE(out.find("Layer state \"Plan\" restored: on/off, frozen, colour, linetype, plot style of 3 layers."),
              std::string::npos);

    check(db, L"Walls", [&](const OxDbLayerTableRecord& l) {
        EXPECT_EQ(l.color().colorIndex(), 1);
        EXPECT_EQ(l.linetypeObjectId(), linetypeId(db, L"DASHED"));
        EXPECT_EQ(l.plotStyleName(), L"Thick");
        EXPECT_TRUE(l.isOff());
        EXPECT_EQ(l.lineWeight(), OxDb::kLnWt025); // not recorded: left as it is
    });
    check(db, L"Doors", [](const OxDbLayerTableRecord& l) {
        EXPECT_EQ(l.color().colorIndex(), 3);
        EXPECT_TRUE(l.isFrozen());
        EXPECT_FALSE(l.isLocked());                         // not recorded
        EXPECT_EQ(l.transparency(), OxCmTransparency(255)); // not recorded
    });
}

TEST_F(LayerStateCommand, ExportThenImportIntoAnotherDrawing) {
    const fs::path file = folder / "plan.pls";
    {
        pavotest::ScriptedSession source(
            {"LAYERSTATE", "Export", "Plan", (folder / "plan").string(), "Export", "PLAN", file.string(), "No", ""},
            pavotest::Drawing::New);
        makePlan(source.database());
        EXPECT_EQ(source.run(), 0);
        EXPECT_NE(source.transcript().find("Layer state \"Plan\" exported to " + file.string() + "."),
                  std::string::npos);
        EXPECT_EQ(pavotest::countOf(source.transcript(), "already exists. Replace it? [Yes/No] <No>: No"), 1);
    }
    std::stringstream json;
    json << std::ifstream(file).rdbuf();
    EXPECT_NE(json.str().find("\"linetype\":\"DASHED\""), std::string::npos) << json.str();
    EXPECT_NE(json.str().find("\"plotStyle\":\"Thick\""), std::string::npos);

    pavotest::ScriptedSession target({"LAYERSTATE", "Import", file.string(), "Restore", "Plan", "Import", file.string(),
                                      "No", "Import", file.string(), "Yes", ""},
                                     pavotest::Drawing::New);
    OxDbDatabase* db = target.database();
    dbtest::addLayer(*db, L"Walls");
    const std::string linetypeFile = db->measurement() == 1 ? "vantaiso.lin" : "vanta.lin";
    EXPECT_EQ(target.run(), 0);
    const std::string out = target.transcript();
    EXPECT_NE(
        out.find("Layer state \"Plan\" imported (3 layers).\nLinetypes loaded from " + linetypeFile + ": DASHED."),
        std::string::npos)
        << out;
    EXPECT_NE(out.find("of 2 layers.\nNot in this drawing: Doors."), std::string::npos);
    EXPECT_EQ(pavotest::countOf(out, "A layer state named \"Plan\" exists. Replace it? [Yes/No] <No>: "), 2);
    EXPECT_EQ(pavotest::countOf(out, "imported (3 layers)"), 2);

    OxString description;
    EXPECT_EQ(db->getLayerStateManager()->getLayerStateDescription(L"Plan", description), Ox::eOk);
    EXPECT_EQ(description, L"For plotting");
    check(db, L"Walls", [&](const OxDbLayerTableRecord& l) {
        EXPECT_EQ(l.color().colorIndex(), 1);
        EXPECT_FALSE(linetypeId(db, L"DASHED").isNull());
        EXPECT_EQ(l.linetypeObjectId(), linetypeId(db, L"DASHED"));
        EXPECT_EQ(l.plotStyleName(), L"Thick");
        EXPECT_TRUE(l.isOff());
    });
}

TEST_F(LayerStateCommand, DeleteRenameAndFilesThatAreNotLayerStates) {
    std::ofstream(folder / "empty.pls") << "{}";
    std::ofstream(folder / "text.pls") << "not json";
    pavotest::ScriptedSession session({"LAYERSTATE", "Rename", "A", "B", "C", "Delete", "C", "Delete", "C", "",
                                       "Import", (folder / "empty.pls").string(), "Import", (folder / "text").string(),
                                       "Import", (folder / "absent.pls").string(), ""},
                                      pavotest::Drawing::New);
    M* states = session.database()->getLayerStateManager();
    ASSERT_EQ(states->saveLayerState(L"A", M::kAll), Ox::eOk);
    ASSERT_EQ(states->saveLayerState(L"B", M::kColor), Ox::eOk);
    EXPECT_EQ(session.run(), 0);
    const std::string out = session.transcript();
    EXPECT_NE(out.find("A layer state named \"B\" exists already."), std::string::npos) << out;
    EXPECT_NE(out.find("Layer state \"A\" renamed to \"C\"."), std::string::npos);
    EXPECT_NE(out.find("Layer state \"C\" deleted."), std::string::npos);
    EXPECT_NE(out.find("No layer state is named \"C\"."), std::string::npos);
    EXPECT_NE(out.find("empty.pls: not a layer state file (\"format\" is not \"pavo-layer-state\")."),
              std::string::npos);
    EXPECT_NE(out.find("text.pls: not a layer state file (it is not JSON)."), std::string::npos);
    EXPECT_NE(out.find("Cannot read " + (folder / "absent.pls").string() + ": No such file or directory."), std::string::npos);
    EXPECT_FALSE(states->hasLayerState(L"A"));
    EXPECT_FALSE(states->hasLayerState(L"C"));
    EXPECT_TRUE(states->hasLayerState(L"B"));
}

TEST(LayerStateFile, EveryValueSurvivesWritingAndReading) {
    pavo::files::LayerStateDocument doc;
    doc.name = L"Ébauche";
    doc.description = L"Draft \"A\"";
    doc.mask = M::kColor | M::kTransparency | M::kCurrentViewport;
    doc.currentLayer = L"Walls";
    pavo::files::LayerStateDocument::Layer walls;
    walls.properties.name = L"Walls";
    walls.properties.off = walls.properties.locked = walls.properties.frozenInViewport = true;
    walls.properties.plottable = false;
    walls.properties.color = OxCmColor::fromRgb(187, 30, 16);
    walls.properties.color.setNames(L"RAL 3020", L"RAL CLASSIC");
    walls.properties.lineWeight = OxDb::kLnWtByBlock;
    walls.properties.transparency.setMethod(OxCmTransparency::kByBlock);
    walls.properties.plotStyleName = L"Thick";
    walls.linetype = L"ISO02W100";
    pavo::files::LayerStateDocument::Layer doors;
    doors.properties.name = L"Doors";
    doors.properties.color = OxCmColor::fromIndex(static_cast<std::uint16_t>(-4));
    doors.properties.transparency = OxCmTransparency(77);
    doc.layers = {walls, doors};

    std::wstring problem;
    const auto back = pavo::files::parseLayerStateDocument(pavo::files::writeLayerStateDocument(doc), problem);
    ASSERT_TRUE(back) << pavo::toUtf8(problem);
    EXPECT_EQ(back->name, doc.name);
    EXPECT_EQ(back->description, doc.description);
    EXPECT_EQ(back->mask, doc.mask);
    EXPECT_EQ(back->currentLayer, L"Walls");
    ASSERT_EQ(back->layers.size(), 2u);
    const auto& w = back->layers[0];
    EXPECT_TRUE(w.properties.off && w.properties.locked && w.properties.frozenInViewport && !w.properties.plottable);
    EXPECT_FALSE(w.properties.frozen);
    EXPECT_EQ(w.properties.color, walls.properties.color);
    EXPECT_STREQ(w.properties.color.bookName(), L"RAL CLASSIC");
    EXPECT_EQ(w.properties.lineWeight, OxDb::kLnWtByBlock);
    EXPECT_TRUE(w.properties.transparency.isByBlock());
    EXPECT_EQ(w.properties.plotStyleName, L"Thick");
    EXPECT_EQ(w.linetype, L"ISO02W100");
    EXPECT_EQ(back->layers[1].properties.color, doors.properties.color);
    EXPECT_EQ(back->layers[1].properties.transparency, OxCmTransparency(77));
    EXPECT_TRUE(back->layers[1].linetype.empty());
}

TEST(LayerStateFile, RefusalsSayWhere) {
    const std::string head = R"({"format":"pavo-layer-state","version":1,"name":"S","properties":["color"],)";
    const std::pair<std::string, std::string> cases[] = {
        {R"({"format":"pavo-layer-state","version":2})", "layer state file version 2 is not supported"},
        {head + R"("layers":[]})" + "x", "not a layer state file (it is not JSON)."},
        {R"({"format":"pavo-layer-state","version":1,"name":"S","properties":["colour"],"layers":[]})",
         "the state: unknown property \"colour\"."},
        {head + R"("layers":[{"name":"A"},{"name":"B","color":300}]})", "layer 2: a colour index is 1 to 255."},
        {head + R"("layers":[{"name":"A","lineweight":500}]})", "layer 1: a lineweight is -3 to 211"},
        {head + R"("layers":[{"color":1}]})", "layer 1: a value is missing or of the wrong kind"},
        {head + R"("layers":{}})", "the state: \"layers\" is not a list."},
    };
    for (const auto& [text, expected] : cases) {
        std::wstring problem;
        EXPECT_FALSE(pavo::files::parseLayerStateDocument(text, problem)) << text;
        EXPECT_TRUE(pavo::toUtf8(problem).starts_with(expected)) << pavo::toUtf8(problem);
    }
}

} // namespace
