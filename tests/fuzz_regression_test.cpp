// Inputs the fuzzers once found a problem with, run through the same paths.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "SessionHarness.h"
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
        std::vector<std::string> lines;
        std::istringstream in(contents(p));
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        pavotest::ScriptedSession s(lines);
        EXPECT_NE(s.run(), pavo::app::kExitInternalError) << p << "\n" << s.transcript();
    }
}
