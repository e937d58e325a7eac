// The pavo executable as a user runs it: options, scripts, drawing files and
// exit statuses.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>

#include "RunPavo.h"

using pavotest::runPavo;
using pavotest::TempFolder;

TEST(PavoExecutable, ScriptRunsLayerLoopOnTheSample) {
    TempFolder dir;
    dir.write("s.scr", "-LAYER\n\n");
    const auto run = runPavo({"--script", dir.path("s.scr")});
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_NE(run.output.find("Command: -LAYER\nCurrent layer: "), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("Enter an option [?/New/Make/Set/Color/Ltype/LWeight/Plot/PStyle/ON/OFF/"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("]: \nCommand: "), std::string::npos) << run.output;
}

TEST(PavoExecutable, StandardInputIsAScriptAndEndingInsideACommandFails) {
    const auto ended = runPavo({"--new"}, "-LAYER\n");
    EXPECT_EQ(ended.status, 3) << ended.output;
    const auto fine = runPavo({"--new"}, "-LAYER\n\n");
    EXPECT_EQ(fine.status, 0) << fine.output;
}

TEST(PavoExecutable, SaveAsThenReopenKeepsTheDrawing) {
    TempFolder dir;
    const std::string file = dir.path("plan.pvd");
    const auto save = runPavo({}, "PSTYLEMODE\n1\nSAVEAS\n" + file + "\nQUIT\n");
    ASSERT_EQ(save.status, 0) << save.output;
    const std::string saved = dir.read("plan.pvd");
    ASSERT_FALSE(saved.empty());

    // Reopened: the variable kept, and a save with no change writes the same bytes.
    const auto reopen = runPavo({file}, "-LAYER\n\nSAVE\nQUIT\n");
    EXPECT_EQ(reopen.status, 0) << reopen.output;
    EXPECT_NE(reopen.output.find("Enter an option [?/New/Make/Set/Color/Ltype/LWeight/Plot/ON/"), std::string::npos)
        << reopen.output;
    EXPECT_EQ(dir.read("plan.pvd"), saved);
    EXPECT_EQ(dir.read("plan.pvd.bak"), saved);
}

TEST(PavoExecutable, BadDrawingIsRefusedAndLeftAlone) {
    TempFolder dir;
    const std::string file = dir.path("broken.pvd");
    const std::string truncated = "{\"format\": \"pavo-drawing\", \"version\": 1, \"layers\": [";
    dir.write("broken.pvd", truncated);
    const auto run = runPavo({file}, "QUIT\n");
    EXPECT_EQ(run.status, 2) << run.output;
    EXPECT_NE(run.output.find("broken.pvd"), std::string::npos) << run.output;
    EXPECT_EQ(dir.read("broken.pvd"), truncated);

    const auto missing = runPavo({dir.path("none.pvd")}, "QUIT\n");
    EXPECT_EQ(missing.status, 2) << missing.output;
}

// A FIFO would make an open for reading wait for a writer for ever.
TEST(PavoExecutable, FilesThatAreNotRegularAreRefusedAtOnce) {
    TempFolder dir;
    const std::string fifo = dir.path("pipe.pvd");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const auto named = runPavo({fifo}, "QUIT\n");
    EXPECT_EQ(named.status, 2) << named.output;
    EXPECT_NE(named.output.find(fifo + ": is a FIFO, not a regular file"), std::string::npos) << named.output;
    const auto opened = runPavo({"--new"}, "OPEN\n" + fifo + "\nOPEN\n" + dir.path("") + "\n");
    EXPECT_EQ(opened.status, 0) << opened.output;
    EXPECT_NE(opened.output.find("is a FIFO, not a regular file"), std::string::npos) << opened.output;
    EXPECT_NE(opened.output.find("Is a directory"), std::string::npos) << opened.output;
}

TEST(PavoExecutable, OptionsAndUsage) {
    const auto version = runPavo({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_NE(version.output.find("pavo "), std::string::npos);
    const auto help = runPavo({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("--script"), std::string::npos);
    EXPECT_EQ(runPavo({"--bogus"}).status, 1);
    EXPECT_EQ(runPavo({"a.pvd", "--new"}).status, 1);
}

namespace {

// Runs docs/examples/EXAMPLE.scr as written, but for the drawing it saves
// as EXAMPLE.pvd, which goes to `dir`.
pavotest::PavoRun runExample(const std::string& example, const TempFolder& dir) {
    std::string script;
    {
        std::ifstream in(std::string(PAVO_TEST_DATA_DIR) + "/../../docs/examples/" + example + ".scr");
        std::ostringstream s;
        s << in.rdbuf();
        script = s.str();
    }
    EXPECT_FALSE(script.empty());
    const std::string file = dir.path(example + ".pvd");
    const std::string name = "\n" + example + ".pvd\n";
    for (size_t pos = script.find(name); pos != std::string::npos; pos = script.find(name, pos + file.size()))
        script.replace(pos, name.size(), "\n" + file + "\n");
    dir.write(example + ".scr", script);
    return runPavo({"--script", dir.path(example + ".scr")});
}

} // namespace

// The README's first session, exactly as the documentation gives it.
TEST(PavoExecutable, ReadmeWalkthrough) {
    TempFolder dir;
    const auto run = runExample("walkthrough", dir);
    ASSERT_EQ(run.status, 0) << run.output;
    const std::string& t = run.output;
    const size_t reopened = t.find("Opened ");
    ASSERT_NE(reopened, std::string::npos) << t;
    const std::string after = t.substr(reopened);
    for (const char* row : {"A-FURN                          Freeze", "S-COLS                          On -L",
                            "A-NEW-WALL ", "A-SKETCH-OLD ", "Current layer: E-LITE"})
        EXPECT_NE(after.find(row), std::string::npos) << row << "\n" << after;
    EXPECT_EQ(after.find("TEMP "), std::string::npos) << after;
    EXPECT_NE(t.find("Cannot delete the selected layer(s). "), std::string::npos) << t;
}

// The README's viewports session: what it did to the viewports is listed
// again after the drawing is saved and opened.
TEST(PavoExecutable, ReadmeViewportsWalkthrough) {
    TempFolder dir;
    const auto run = runExample("viewports", dir);
    ASSERT_EQ(run.status, 0) << run.output;
    const std::string& t = run.output;
    EXPECT_NE(t.find("Select a viewport : 662,420\nThe following layers are frozen in viewport 3\nA-FURN\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Viewport 4 made; 2 layer(s) frozen in new viewports start frozen in it."), std::string::npos)
        << t;
    const size_t reopened = t.find("Opened ");
    ASSERT_NE(reopened, std::string::npos) << t;
    const std::string after = t.substr(reopened);
    for (const char* row : {"    Number:        2\n    Layout:        A1 Plan\n", "    Frozen layers: A-FURN, A-ANNO-NOTES\n",
                            "    Number:        3\n",
                            "    Override:      A-WALL: color red, lineweight 0.70 mm\n", "    Number:        4\n",
                            "    Frozen layers: A-ANNO-DIMS, A-ANNO-NOTES\n"})
        EXPECT_NE(after.find(row), std::string::npos) << row << "\n" << after;
}
