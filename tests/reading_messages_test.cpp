// What pavo says when it cannot read something: a NUL in a text or an
// answer, a number out of range, a truncated file, a value too long to
// quote; errors on standard error; and pavo finding its modules from
// wherever it is started.
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "OxDbSymbolTable.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "files_TestSupport.h"

namespace fs = std::filesystem;
using pavo::files::LoadError;
using pavo::files::test::sampleWith;
using pavotest::runPavo;
using pavotest::TempFolder;

namespace {

LoadError refusal(const std::string& json) {
    LoadError error;
    EXPECT_FALSE(pavo::files::readDrawing(json, "bad.pvd", error));
    return error;
}

} // namespace

// A name or text is never cut at a NUL: the drawing is refused.
TEST(ReadingMessages, NulInAJsonTextIsRefused) {
    const std::pair<std::string, const char*> cases[] = {
        {sampleWith("\"name\":\"A-DOOR\"", "\"name\":\"A-DO\\u0000OR\""), "/layers/2/name"},
        {sampleWith("\"txt\":\"A\"", "\"txt\":\"A\\u0000\""), "/blocks/0/entities/21/txt"},
        {sampleWith("\"comments\":\"Single door", "\"comments\":\"\\u0000Single door"), "/blocks/3/comments"},
    };
    for (const auto& [json, pointer] : cases) {
        const LoadError error = refusal(json);
        EXPECT_EQ(error.pointer, pointer);
        EXPECT_EQ(error.problem, "a text cannot hold the character U+0000");
    }
    const LoadError key = refusal(sampleWith("\"tilemode\":1", "\"tile\\u0000mode\":1"));
    EXPECT_EQ(key.problem, "unknown key \"tile\\u0000mode\" in the header");
}

TEST(ReadingMessages, NumbersOutOfRangeAreNamed) {
    const std::pair<std::string, const char*> cases[] = {
        {sampleWith("\"ltscale\":1", "\"ltscale\":1e309"), "1e309 is too large"},
        {sampleWith("\"ltscale\":1", "\"ltscale\":-1E+400"), "-1E+400 is too large"},
        {sampleWith("\"cvport\":2", "\"cvport\":99999999999999999999"), "99999999999999999999 is too large"},
        {sampleWith("\"cvport\":2", "\"cvport\":2.5"), "2.5 is not a whole number"},
        {sampleWith("\"cvport\":2", "\"cvport\":\"2\""), "expected an integer, found a string"},
    };
    for (const auto& [json, problem] : cases)
        EXPECT_EQ(refusal(json).problem, problem);
    // A whole number written with a fraction or an exponent is an integer.
    auto db = pavo::files::test::loadOrFail(sampleWith("\"cvport\":2", "\"cvport\":3.0e0"));
    ASSERT_TRUE(db);
}

// The place of a truncated drawing is where its text ends.
TEST(ReadingMessages, ATruncatedDrawingIsReportedWhereItEnds) {
    const std::string sample(pavo::files::embeddedSampleDrawing());
    for (const std::size_t length : {std::size_t(1000), sample.size() / 2, sample.size() - 3}) {
        const std::string text = sample.substr(0, length);
        const LoadError error = refusal(text);
        const std::size_t lastBreak = text.rfind('\n');
        EXPECT_EQ(error.line, static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n') + 1));
        EXPECT_EQ(error.column, text.size() - (lastBreak == std::string::npos ? 0 : lastBreak + 1) + 1);
        EXPECT_NE(error.problem.find("the drawing ends early"), std::string::npos) << error.message();
    }
}

TEST(ReadingMessages, QuotedValuesAreCutToAReadableLength) {
    const LoadError error =
        refusal(sampleWith("{\"t\":\"line\",\"h\":\"42\"", "{\"t\":\"" + std::string(5000, 'q') + "\",\"h\":\"42\""));
    EXPECT_EQ(error.problem.rfind("unknown entity type \"" + std::string(40, 'q') + "...\" (", 0), 0u) << error.problem;
    EXPECT_LT(error.message().size(), 300u);
}

TEST(ReadingMessages, NulInAnAnswerIsRefusedAndAskedAgain) {
    pavotest::ScriptedSession s({"-LAYER", "New", std::string("WALL\0S", 6), "WALLS", ""});
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("An answer cannot hold the NUL character; give it again.\nNames for new layers: "
                     "WALLS\n"),
              std::string::npos)
        << t;
    OxDbLayerTable* layers = nullptr;
    ASSERT_EQ(s.database()->getLayerTable(layers, OxDb::kForRead), Ox::eOk);
    EXPECT_TRUE(layers->has(L"WALLS"));
    EXPECT_FALSE(layers->has(L"WALL"));
    layers->close();
}

TEST(ReadingMessages, ErrorsGoToStandardError) {
    TempFolder dir;
    dir.write("bad.pvd", "{\"format\": \"pavo-drawing\",\n \"version\": 7}");
    const auto bad = pavotest::runPavoApart({dir.path("bad.pvd")}, "QUIT\n");
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.errors, "Cannot open drawing: " + dir.path("bad.pvd") +
                              ":2:13: at /version: format version 7 is newer than this program reads (version 1)\n");
    EXPECT_EQ(bad.output, "");

    const auto session =
        pavotest::runPavoApart({"--new"}, "OPEN\n" + dir.path("none.pvd") + "\nSAVEAS\n" + dir.path("no/plan") + "\n");
    EXPECT_EQ(session.status, 6);
    EXPECT_EQ(session.errors, "Cannot open drawing: " + dir.path("none.pvd") +
                                  ": No such file or directory\nCannot save drawing: cannot write a temporary file "
                                  "next to " +
                                  dir.path("no/plan.pvd") + ": No such file or directory\n");
    EXPECT_NE(session.output.find("Drawing to open: " + dir.path("none.pvd") + "\nCommand: SAVEAS"), std::string::npos)
        << session.output;
}

// Modules and resources are found beside the executable itself, however it
// was started: through PATH, through a symbolic link, from any folder.
TEST(ReadingMessages, PavoFindsItsModulesWhereverItIsStartedFrom) {
    TempFolder dir;
    ASSERT_EQ(::symlink(PAVO_TEST_PAVO_EXE, dir.path("pavo").c_str()), 0);
    const std::string script = "-LAYER\n\n";
    for (const std::string& command :
         {"cd / && PATH=" + dir.path("") + " pavo --new", "cd " + dir.path("") + " && ./pavo --new",
          "cd /tmp && " + dir.path("pavo --new")}) {
        const auto run = pavotest::runShell(command, script);
        EXPECT_EQ(run.status, 0) << command << "\n" << run.output;
        EXPECT_NE(run.output.find("Enter an option [?/New/Make"), std::string::npos) << command << "\n" << run.output;
    }
}

TEST(ReadingMessages, AModuleThatCannotBeLoadedEndsPavoWithTheFoldersSearched) {
    TempFolder dir;
    dir.write("VxLayerCmds.pvx", "not a shared library");
    const auto run =
        pavotest::runShell("PAVO_MODULE_PATH=" + dir.path("") + " " + PAVO_TEST_PAVO_EXE + " --new", "-LAYER\n\n");
    EXPECT_EQ(run.status, 5) << run.output;
    EXPECT_NE(run.output.find("Cannot load module VxLayerCmds: cannot load " + dir.path("VxLayerCmds.pvx")),
              std::string::npos)
        << run.output;
    EXPECT_EQ(run.output.find("Command:"), std::string::npos) << run.output;

    // A copy of pavo in a folder without its module.
    TempFolder alone;
    const auto missing = pavotest::runShell("cp " + std::string(PAVO_TEST_PAVO_EXE) + " " + alone.path("pavo") +
                                            " && " + alone.path("pavo") + " --new");
    const std::string folder = alone.path("");
    EXPECT_EQ(missing.status, 5) << missing.output;
    EXPECT_NE(missing.output.find("Cannot load module VxLayerCmds: not found in " +
                                  folder.substr(0, folder.size() - 1) + ", "),
              std::string::npos)
        << missing.output;
}

TEST(ReadingMessages, AScriptThatIsAFolderOrMissingIsRefused) {
    TempFolder dir;
    const auto folder = runPavo({"--script", dir.path("")});
    EXPECT_EQ(folder.status, 1) << folder.output;
    EXPECT_EQ(folder.output, "pavo: cannot read the script " + dir.path("") + ": Is a directory\n");
    const auto missing = runPavo({"--script", dir.path("none.scr")});
    EXPECT_EQ(missing.status, 1) << missing.output;
    EXPECT_EQ(missing.output, "pavo: cannot read the script " + dir.path("none.scr") + ": No such file or directory\n");
    // A pipe is a script like any other.
    const auto piped = pavotest::runShell(std::string(PAVO_TEST_PAVO_EXE) + " --new --script /dev/stdin", "-LAYER\n\n");
    EXPECT_EQ(piped.status, 0) << piped.output;
}
