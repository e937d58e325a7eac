// Inputs the fuzzers once found a problem with, run through the same paths.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "FuzzSession.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "editor/Input.h"
#include "files/DrawingFile.h"

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> inputs(const char* kind) {
    std::vector<fs::path> files;
    const fs::path dir = fs::path(PAVO_TEST_DATA_DIR) / "fuzz" / kind;
    for (const auto& entry : fs::directory_iterator(dir))
        if (entry.is_regular_file()) files.push_back(entry.path());
    return files;
}

std::string contents(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

} // namespace

TEST(FuzzRegressions, DrawingInputsLoadOrAreRefusedAndRoundTrip) {
    for (const fs::path& p : inputs("drawing")) {
        pavo::files::LoadError error;
        auto db = pavo::files::readDrawing(contents(p), p.filename().string(), error);
        if (!db) {
            EXPECT_FALSE(error.problem.empty()) << p;
            continue;
        }
        const std::string saved = pavo::files::writeDrawing(*db);
        auto again = pavo::files::readDrawing(saved, "saved", error);
        ASSERT_TRUE(again) << p << ": " << error.message();
        EXPECT_EQ(pavo::files::writeDrawing(*again), saved) << p;
    }
}

TEST(FuzzRegressions, CommandInputsLeaveNothingBehind) {
    for (const fs::path& p : inputs("commands")) {
        std::ostringstream out;
        pavo::app::Session session(pavofuzz::fuzzSessionOptions(PAVO_TEST_RESOURCE_DIR, PAVO_TEST_MODULE_DIR),
                                   pavo::editor::makeLinesInput(pavofuzz::answerLines(contents(p), 200)), out);
        ASSERT_TRUE(session.loadModules());
        pavofuzz::removeFileCommands(session);
        ASSERT_TRUE(session.openSample());
        EXPECT_NE(session.run(), pavo::app::kExitInternalError) << p << "\n" << out.str();
    }
}

TEST(FuzzRegressions, DrawingSessionInputsLeaveNothingBehind) {
    const auto options = pavofuzz::fuzzSessionOptions(PAVO_TEST_RESOURCE_DIR, PAVO_TEST_MODULE_DIR);
    for (const fs::path& p : inputs("session")) {
        std::ostringstream out;
        EXPECT_NE(pavofuzz::runDrawingSession(contents(p), options, out), pavo::app::kExitInternalError)
            << p << "\n" << out.str();
    }
}

// The fuzzers' guard: a file command typed in any letter case or global
// form is unknown, so fuzzed answers never name a file that is written or
// read. (It used to look for "SAVE" and "OPEN" in capitals only, so "save"
// saved the sample under the next answer's name.)
TEST(FuzzRegressions, FileCommandsAreUnknownHoweverTyped) {
    pavotest::TempFolder dir;
    const std::vector<std::string> typed = {"save", "_SaVeAs", "Open", "_new", "qUiT", "_LayerState"};
    std::vector<std::string> lines = {"LINE", "0,0", "1,1", ""};
    for (const std::string& command : typed)
        lines.insert(lines.end(), {command, dir.path("plan"), "Y", dir.path("plan2"), "E", "*", dir.path("states")});
    pavotest::ScriptedSession s(lines, pavotest::Drawing::Sample,
                                pavofuzz::fuzzSessionOptions(PAVO_TEST_RESOURCE_DIR, PAVO_TEST_MODULE_DIR));
    pavofuzz::removeFileCommands(s.session());
    s.run();
    EXPECT_TRUE(fs::is_empty(dir.path(""))) << s.transcript();
    for (const std::string& command : typed)
        EXPECT_NE(s.transcript().find("Unknown command \"" + command + "\""), std::string::npos) << s.transcript();
}

// The drawing session fuzzer's exercise does what it means to on the
// sample: every answer reaches its prompt, so a fuzzed drawing meets picks,
// listings and the layer commands in model space and in each layout.
TEST(FuzzRegressions, TheDrawingExerciseRunsItsCommandsOnTheSample) {
    const std::string sample(pavo::files::embeddedSampleDrawing());
    std::ostringstream out;
    const int status = pavofuzz::runDrawingSession(
        sample, pavofuzz::fuzzSessionOptions(PAVO_TEST_RESOURCE_DIR, PAVO_TEST_MODULE_DIR), out);
    const std::string t = out.str();
    EXPECT_EQ(status, 0) << t;
    EXPECT_EQ(t.find("Unknown command"), std::string::npos) << t;
    EXPECT_EQ(t.find("Invalid option keyword"), std::string::npos) << t;
    EXPECT_GE(pavotest::countOf(t, "Space: Paper space"), 2) << t;
    EXPECT_GE(pavotest::countOf(t, "Command: INSERT"), 2) << t;
    EXPECT_NE(t.find("frozen in viewport"), std::string::npos) << t;
    // The answers after the mark run after the exercise.
    std::ostringstream more;
    EXPECT_EQ(pavofuzz::runDrawingSession(sample + std::string(pavofuzz::kAnswersMark) + "SETVAR\nCLAYER\n",
                                          pavofuzz::fuzzSessionOptions(PAVO_TEST_RESOURCE_DIR, PAVO_TEST_MODULE_DIR),
                                          more),
              0);
    EXPECT_NE(more.str().rfind("Command: SETVAR"), std::string::npos);
}
