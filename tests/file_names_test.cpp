// File names as users give them, wherever a file is named: any characters,
// "~", a folder, a name without its extension; and what OPEN, SAVE, SAVEAS
// and QUIT do around a save.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "TerminalSession.h"
#include "files/AtomicFile.h"
#include "files/DrawingFile.h"
#include "files_TestSupport.h"

namespace fs = std::filesystem;
using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using pavotest::TempFolder;

namespace {

const std::string kSupport = std::string(PAVO_TEST_RESOURCE_DIR) + "/support/";

void copyFile(const std::string& from, const std::string& to) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
}

} // namespace

// A folder and files named in Cyrillic, French and German, with blanks:
// drawings, linetype files, plot style tables, colour books and layer
// state files are found, read and written under such names.
TEST(FileNames, NamesInAnyScriptWorkEverywhereAFileIsNamed) {
    TempFolder dir;
    const std::string folder = dir.path("Плани été");
    fs::create_directory(folder);
    // The drawing's folder comes first when support files are looked for.
    copyFile(kSupport + "vantaiso.lin", folder + "/vantaiso.lin");
    copyFile(kSupport + "pavo-named.pst", folder + "/tâble nº1.pst");
    {
        TempFolder book;
        book.write("b", "pavo colour book 1\nFarbbüch Ü\nRötlich\t200,40,30\n");
        copyFile(book.path("b"), folder + "/farbbüch-ü.pcb");
    }
    const std::string drawing = folder + "/façade ü";
    ScriptedSession s(
        {"SAVEAS",     drawing,          "-LAYER", "Ltype", "HIDDEN2",    "0",      "Color",          "CO",
         "Farbbüch Ü", "Rötlich",        "0",      "",      "LAYERSTATE", "Export", "Structure only", folder + "/état",
         "Import",     folder + "/état", "Yes",    "",      "SAVE",       "QUIT"});
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_EQ(t.find("Internal error"), std::string::npos) << t;
    EXPECT_EQ(countOf(t, "Saved " + drawing + ".pvd."), 2) << t;
    EXPECT_NE(t.find("exported to " + folder + "/état.pls."), std::string::npos) << t;
    EXPECT_NE(t.find("Layer state \"Structure only\" imported"), std::string::npos) << t;
    ASSERT_TRUE(fs::exists(drawing + ".pvd"));

    // The drawing again, from the command line, with a plot style table
    // whose name is not ASCII either.
    std::string content;
    {
        pavo::files::LoadError error;
        auto db = pavo::files::readDrawingFile(drawing + ".pvd", error);
        ASSERT_TRUE(db) << error.message();
        EXPECT_EQ(db->fileName(), OxString::fromUtf8(drawing + ".pvd"));
        content = pavo::files::writeDrawing(*db);
        const std::size_t at = content.find("pavo-named.pst");
        ASSERT_NE(at, std::string::npos);
        content.replace(at, 14, "tâble nº1.pst");
    }
    std::string error;
    ASSERT_TRUE(pavo::files::replaceFileAtomically(drawing + ".pvd", content, error)) << error;
    const auto run = pavotest::runPavo({drawing + ".pvd"}, "CTAB\nA1 Plan\n-LAYER\nPStyle\n?\n\n\n\nSAVE\nQUIT\n");
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_NE(run.output.find("\n Grey 50%"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("Saved " + drawing + ".pvd."), std::string::npos) << run.output;
}

TEST(FileNames, TildeIsTheHomeFolderAndOpenTriesTheExtension) {
    TempFolder home;
    const char* previous = std::getenv("HOME");
    const std::string kept = previous ? previous : "";
    const std::string folder = home.path("");
    ::setenv("HOME", folder.substr(0, folder.size() - 1).c_str(), 1); // without the last "/"
    ScriptedSession s({"SAVEAS", "~/plan", "NEW", "OPEN", " \"~/plan\" ", "OPEN", home.path("plan.pvd")});
    const int status = s.run();
    if (previous)
        ::setenv("HOME", kept.c_str(), 1);
    else
        ::unsetenv("HOME");
    EXPECT_EQ(status, 0) << s.transcript();
    EXPECT_TRUE(fs::exists(home.path("plan.pvd"))) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "Opened " + home.path("plan.pvd") + "."), 2) << s.transcript();
}

TEST(FileNames, SaveAsToAFolderIsRefused) {
    TempFolder dir;
    fs::create_directory(dir.path("plans"));
    for (const std::string& name : {dir.path("plans"), dir.path("plans/"), dir.path("")}) {
        ScriptedSession s({"SAVEAS", name});
        EXPECT_EQ(s.run(), pavo::app::kExitSaveFailed) << s.transcript();
        EXPECT_NE(s.transcript().find(" is a folder; give the drawing a file name."), std::string::npos)
            << s.transcript();
    }
    EXPECT_FALSE(fs::exists(dir.path("plans.pvd")));
    EXPECT_TRUE(fs::is_empty(dir.path("plans")));
}

// A failed save is not the end: QUIT stays in the session, and the exit
// status says that the work was not saved.
TEST(FileNames, AFailedSaveKeepsTheSessionAndFailsTheScript) {
    TempFolder dir;
    const std::string nowhere = dir.path("no such folder/plan.pvd");
    ScriptedSession s({"PSTYLEMODE", "1", "SAVEAS", nowhere, "QUIT", "Yes", nowhere, "HELP"});
    EXPECT_EQ(s.run(), pavo::app::kExitSaveFailed) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "Cannot save drawing: cannot write a temporary file next to " + nowhere +
                             ": No such file or directory"),
              2)
        << t;
    EXPECT_FALSE(s.session().quitRequested());
    EXPECT_NE(t.find("Command: HELP\nCommands:"), std::string::npos) << t;
    EXPECT_TRUE(s.database()->isModified());

    const auto run = pavotest::runPavo({"--new"}, "SAVEAS\n" + nowhere + "\nQUIT\n");
    EXPECT_EQ(run.status, 6) << run.output;
}

TEST(FileNames, OpenAndNewOfferToSaveTheChangesFirst) {
    TempFolder dir;
    dir.write("other.pvd", std::string(pavo::files::embeddedSampleDrawing()));
    const std::string other = dir.path("other.pvd"), mine = dir.path("mine.pvd");
    ScriptedSession s(
        {"PSTYLEMODE", "1", "OPEN", "", "NEW", "Cancel", "OPEN", "Yes", mine, other, "PSTYLEMODE", "1", "NEW", "No"});
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "Save the changes to the drawing? [Yes/No/Cancel] <Cancel>: "), 3) << t;
    EXPECT_NE(t.find("Save the changes to other.pvd? [Yes/No/Cancel] <Cancel>: No\nStarted a new drawing."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Saved " + mine + ".\nDrawing to open: " + other + "\nOpened " + other + "."), std::string::npos)
        << t;
    EXPECT_EQ(pavo::files::test::loadOrFail(dir.read("mine.pvd"))->pstylemode(), 1);
}

// Two sessions on one file: the second to save is told that the file changed
// since it read it, and asked before it replaces the other's work.
TEST(FileNames, ASaveOverAnotherSessionsSaveAsksFirst) {
    TempFolder dir;
    dir.write("plan.pvd", std::string(pavo::files::embeddedSampleDrawing()));
    const std::string plan = dir.path("plan.pvd");
    const std::string question =
        plan + " was changed on disk since it was opened or saved. Replace it? [Yes/No] <No>: ";
    ScriptedSession first({"PSTYLEMODE", "1", "SAVE", "No", "SAVE", "", "SAVE", "Yes", "SAVE"}, Drawing::None);
    ASSERT_TRUE(first.session().openDrawing(plan));
    // The other session saves after this one opened the file.
    const auto other = pavotest::runPavo({plan}, "PSTYLEMODE\n1\nSAVE\nQUIT\n");
    ASSERT_EQ(other.status, 0) << other.output;
    ASSERT_EQ(first.run(), 0) << first.transcript();
    const std::string t = first.transcript();
    EXPECT_EQ(countOf(t, question), 3) << t;
    EXPECT_EQ(countOf(t, question + "Yes\nSaved " + plan + "."), 1) << t;
    EXPECT_EQ(countOf(t, "Saved " + plan + "."), 2) << t; // after Yes, then without a question
}

// Ctrl-D at "Command: " ends pavo as QUIT does: with changes, it asks first.
// Inside a command it cancels the prompt, as Escape does.
TEST(EndOfInput, CtrlDAtATerminalAsksBeforeLosingChanges) {
    TempFolder home;
    pavotest::TerminalSession unchanged({"--new"}, home.path(""));
    ASSERT_TRUE(unchanged.waitFor("Command: ")) << unchanged.screen();
    unchanged.type("-LAYER\r");
    ASSERT_TRUE(unchanged.waitFor("Enter an option")) << unchanged.screen();
    unchanged.type("\x04");
    ASSERT_TRUE(unchanged.waitFor("Command: ")) << unchanged.screen();
    unchanged.type("\x04");
    EXPECT_EQ(unchanged.exitStatus(), 0) << unchanged.screen();
    EXPECT_EQ(unchanged.screen().find("Save the changes"), std::string::npos) << unchanged.screen();

    pavotest::TerminalSession changed({"--new"}, home.path(""));
    const std::string question = "Save the changes to the drawing? [Yes/No/Cancel] <Cancel>: ";
    ASSERT_TRUE(changed.waitFor("Command: ")) << changed.screen();
    changed.type("PSTYLEMODE\r");
    ASSERT_TRUE(changed.waitFor("Enter new value for PSTYLEMODE")) << changed.screen();
    changed.type("1\r");
    ASSERT_TRUE(changed.waitFor("Command: ")) << changed.screen();
    changed.type("\x04");
    ASSERT_TRUE(changed.waitFor(question)) << changed.screen();
    changed.type("\x04"); // at the question: Cancel, and the session goes on
    ASSERT_TRUE(changed.waitFor("Command: ")) << changed.screen();
    changed.type("\x04");
    ASSERT_TRUE(changed.waitFor(question)) << changed.screen();
    changed.type("No\r");
    EXPECT_EQ(changed.exitStatus(), 0) << changed.screen();
}
