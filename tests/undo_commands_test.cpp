// U, UNDO's options, REDO, LAYERP and the history's limits through the real
// host and module on the sample drawing.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "OxDbDatabase.h"
#include "db/UndoHistory.h"
#include "layer_TestSupport.h"

namespace {

using layertest::currentLayer;
using layertest::isFrozen;
using layertest::isOff;
using pavotest::ScriptedSession;

int colorIndexOf(OxDbDatabase* db, const wchar_t* layer) {
    return layertest::readLayer<int>(db, layer, [](const OxDbLayerTableRecord& l) { return l.color().colorIndex(); });
}

int modelEntities(OxDbDatabase* db) {
    int n = 0;
    OxDbBlockTableRecord* model = nullptr;
    if (oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForRead) != Ox::eOk) return -1;
    OxDbBlockTableRecordIterator* it = nullptr;
    model->newIterator(it);
    for (; !it->done(); it->step()) ++n;
    delete it;
    model->close();
    return n;
}

// A session on the sample drawing typing a script: start() it, look at the
// drawing before, run() it, then check what it printed and left.
class UndoCommands : public testing::Test {
protected:
    OxDbDatabase* start(std::vector<std::string> script) {
        m_session = std::make_unique<ScriptedSession>(std::move(script));
        return m_session->database();
    }
    testing::AssertionResult run() {
        if (m_session->run() == 0) return testing::AssertionSuccess();
        return testing::AssertionFailure() << m_session->transcript();
    }
    testing::AssertionResult printed(const std::string& text) const {
        if (transcript().find(text) != std::string::npos) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "\"" << text << "\" is not in:\n" << transcript();
    }
    int timesPrinted(const std::string& text) const { return pavotest::countOf(transcript(), text); }
    std::string transcript() const { return m_session->transcript(); }

    std::unique_ptr<ScriptedSession> m_session;
};

TEST_F(UndoCommands, UndoCountsStepsAndRedoGivesThemBackUntilANewChange) {
    OxDbDatabase* db = start({"-LAYER", "OFF", "A-DOOR", "", "-LAYER", "Freeze", "A-GLAZ", "", "LINE", "0,0", "5,5",
                              "", "UNDO", "Auto", "UNDO", "2", "REDO", "REDO", "REDO", "U", "CLAYER", "A-WALL", "REDO"});
    const int lines = modelEntities(db);
    ASSERT_TRUE(run());
    EXPECT_TRUE(printed("<1>: Auto\nEvery command is one step already; UNDO BEgin and End make several commands one.\n"
                        "Command: UNDO\nEnter the number of operations to undo or [Control/BEgin/End/Mark/Back] <1>: 2\n"
                        "Undone: LINE\nUndone: -LAYER\nCommand: REDO\nRedone: -LAYER\nCommand: REDO\nRedone: LINE\n"
                        "Command: REDO\nNothing to redo"));
    // U took the line back, CLAYER was a new change: the line is gone for good.
    EXPECT_EQ(timesPrinted("Nothing to redo"), 2);
    EXPECT_EQ(modelEntities(db), lines);
    EXPECT_TRUE(isOff(db, L"A-DOOR"));
    EXPECT_TRUE(isFrozen(db, L"A-GLAZ"));
    EXPECT_EQ(currentLayer(db), "A-WALL");
}

TEST_F(UndoCommands, BackGoesToTheMarkAndGroupsAreOneStep) {
    OxDbDatabase* db = start({"-LAYER", "OFF", "A-DOOR", "", "UNDO", "Mark", "UNDO", "BEgin", "-LAYER", "OFF",
                              "A-GLAZ", "", "CLAYER", "A-WALL", "UNDO", "End", "-LAYER", "OFF", "S-GRID", "", "UNDO",
                              "Back", "REDO", "U", "UNDO", "End"});
    const std::string before = currentLayer(db);
    ASSERT_TRUE(run());
    EXPECT_TRUE(printed("Back\nUndone: -LAYER\nUndone: GROUP\nMark encountered.\nCommand: REDO\nRedone: GROUP\n"
                        "Command: U\nUndone: GROUP\n"));
    EXPECT_TRUE(printed("No group is open: UNDO BEgin starts one."));
    EXPECT_TRUE(isOff(db, L"A-DOOR")) << "before the mark";
    EXPECT_FALSE(isOff(db, L"A-GLAZ"));
    EXPECT_FALSE(isOff(db, L"S-GRID"));
    EXPECT_EQ(currentLayer(db), before);
}

TEST_F(UndoCommands, BackWithoutAMarkAsksAndUndoesEverything) {
    OxDbDatabase* db = start({"-LAYER", "OFF", "A-DOOR", "", "CLAYER", "A-WALL", "UNDO", "Back", "No", "UNDO", "Back", ""});
    ASSERT_TRUE(run());
    EXPECT_EQ(timesPrinted("This will undo everything. OK? [Yes/No] <Yes>: "), 2);
    EXPECT_TRUE(printed("Undone: CLAYER\nUndone: -LAYER\nEverything has been undone."));
    EXPECT_FALSE(isOff(db, L"A-DOOR"));
}

TEST_F(UndoCommands, ControlNoneStopsRecordingAndEmptiesTheHistory) {
    OxDbDatabase* db = start({"-LAYER", "OFF", "A-DOOR", "", "UNDO", "Control", "None", "-LAYER", "OFF", "A-GLAZ", "",
                              "U", "UNDO", "", "-LAYER", "OFF", "S-GRID", "", "U", "U"});
    ASSERT_TRUE(run());
    EXPECT_TRUE(printed("Command: U\nUndo is off. Turn it on with UNDO Control All.\nCommand: UNDO\n"
                        "Enter an UNDO control option [All/None/One] <All>: \n"));
    EXPECT_TRUE(printed("Undone: -LAYER\nCommand: U\nNothing to undo."));
    EXPECT_TRUE(isOff(db, L"A-DOOR")) << "the history was emptied";
    EXPECT_TRUE(isOff(db, L"A-GLAZ")) << "not recorded";
    EXPECT_FALSE(isOff(db, L"S-GRID")) << "recorded again";
}

TEST_F(UndoCommands, UndoAfterASaveLeavesTheDrawingChanged) {
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "undo-after-save.pvd";
    OxDbDatabase* db = start({"-LAYER", "OFF", "A-DOOR", "", "SAVEAS", file.string(), "U", "QUIT", "Cancel", "REDO"});
    ASSERT_TRUE(run());
    EXPECT_TRUE(printed("Command: U\nUndone: -LAYER\nCommand: QUIT\nSave the changes to"));
    EXPECT_TRUE(db->isModified());
    EXPECT_TRUE(isOff(db, L"A-DOOR"));
    std::filesystem::remove(file);
    std::filesystem::remove(file.string() + ".bak");
}

TEST_F(UndoCommands, LayerPreviousPutsBackLayerSettingsOnly) {
    OxDbDatabase* db = start({"-LAYER", "Color", "red", "A-DOOR", "Set", "A-WALL", "", "-LAYER", "Freeze", "A-GLAZ",
                              "Rename", "S-GRID", "S-AXES", "", "LINE", "0,0", "5,5", "", "LAYERP", "LAYERP", "LAYERP",
                              "U", "LAYERPMODE", "OFf", "LAYERP"});
    const std::string current = currentLayer(db);
    const int colour = colorIndexOf(db, L"A-DOOR");
    const int entities = modelEntities(db);
    ASSERT_TRUE(run());
    EXPECT_EQ(timesPrinted("Restored previous layer states."), 2);
    EXPECT_TRUE(printed("Command: LAYERP\n*No previous layer states*"));
    EXPECT_TRUE(printed("Command: U\nUndone: LAYERP\n")) << "U finds the second LAYERP";
    EXPECT_TRUE(printed("Layer previous is off; turn it on with LAYERPMODE."));
    // Both LAYERPs put the layers back; U took back the second (colour, current layer).
    EXPECT_FALSE(isFrozen(db, L"A-GLAZ"));
    EXPECT_EQ(colorIndexOf(db, L"A-DOOR"), 1);
    EXPECT_EQ(currentLayer(db), "A-WALL");
    EXPECT_NE(colour, 1);
    EXPECT_NE(current, "A-WALL");
    EXPECT_TRUE(layertest::hasLayer(db, L"S-AXES")) << "a rename stays";
    EXPECT_EQ(modelEntities(db), entities + 1) << "the line stays";
}

TEST_F(UndoCommands, LayerPreviousSkipsACommandThatWasUndone) {
    OxDbDatabase* db =
        start({"-LAYER", "Color", "red", "A-DOOR", "", "-LAYER", "Freeze", "A-GLAZ", "", "U", "LAYERP", "REDO"});
    const int colour = colorIndexOf(db, L"A-DOOR");
    ASSERT_TRUE(run());
    EXPECT_EQ(colorIndexOf(db, L"A-DOOR"), colour) << "LAYERP went back from the colour, the last command done";
    EXPECT_FALSE(isFrozen(db, L"A-GLAZ"));
    EXPECT_TRUE(printed("Command: REDO\nNothing to redo"));
}

// A command that draws on a model space of many objects records the new
// objects and the length of the list, not the whole list.
TEST_F(UndoCommands, AddingToALargeModelSpaceRecordsTheNewObjectsOnly) {
    OxDbDatabase* db = start({"LINE", "0,0", "5,5", "", "CIRCLE", "1,1", "2", "U", "U", "REDO"});
    OxDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForWrite), Ox::eOk);
    for (int i = 0; i < 20000; ++i) {
        auto* line = new OxDbLine(OxGePoint3d(i, 0), OxGePoint3d(i, 1));
        OxDbObjectId id;
        ASSERT_EQ(model->appendOxDbEntity(id, line), Ox::eOk);
        line->close();
    }
    model->close();
    const int entities = modelEntities(db);
    ASSERT_TRUE(run());
    EXPECT_EQ(modelEntities(db), entities + 1) << "the line is back, the circle is not";
    const pavo::db::UndoHistory& history = pavo::db::undoHistory(db);
    ASSERT_EQ(history.stepCount(), 1u);
    EXPECT_LT(history.stateBytes(), 2000u) << "20,000 entries of the list would take 160,000";
}

TEST_F(UndoCommands, TheOldestStepsGoPastUndoLimitAndTheUserIsToldOnce) {
    OxDbDatabase* db = start({"UNDOLIMIT", "2", "-LAYER", "OFF", "A-DOOR", "", "-LAYER", "OFF", "A-GLAZ", "",
                              "-LAYER", "OFF", "S-GRID", "", "-LAYER", "OFF", "S-COLS", "", "U", "U", "U"});
    ASSERT_TRUE(run());
    EXPECT_EQ(timesPrinted("The oldest commands can no longer be undone: the undo history keeps UNDOLIMIT commands "
                           "and at most 512 MB."),
              1);
    EXPECT_EQ(timesPrinted("Undone: -LAYER"), 2);
    EXPECT_TRUE(printed("Nothing to undo."));
    EXPECT_TRUE(isOff(db, L"A-DOOR"));
    EXPECT_TRUE(isOff(db, L"A-GLAZ"));
    EXPECT_FALSE(isOff(db, L"S-GRID"));
}

} // namespace
