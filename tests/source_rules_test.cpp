// Rules of the sources that keep whole classes of defects out: files are
// opened in one place (only regular files, never waited on), and text
// becomes a path in one place (any characters, not the C locale's ASCII).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

TEST(SourceRules, FilesAreOpenedAndNamedInOnePlace) {
    const fs::path root = fs::path(PAVO_TEST_DATA_DIR) / ".." / "..";
    // What is forbidden, and the one file allowed to do it.
    const std::pair<std::string, std::string> rules[] = {
        {".wstring()", "PathText.cpp"},  // through the locale: fails on any non-ASCII name
        {".u8string()", "PathText.cpp"}, //
        {"ifstream", "FileRead.cpp"},    // opens FIFOs and folders; files/FileRead.h does not
        {"ofstream", "AtomicFile.cpp"},  // no temporary file, no backup
        {"fopen(", "FileRead.cpp"},
        {"QFile", "FileRead.cpp"},
    };
    int files = 0;
    for (const char* folder : {"pavo", "commands", "layerhelper", "module"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string ext = entry.path().extension().string();
            if (ext != ".cpp" && ext != ".h") continue;
            ++files;
            std::ifstream in(entry.path());
            std::stringstream text;
            text << in.rdbuf();
            for (const auto& [needle, allowed] : rules) {
                if (entry.path().filename() == allowed) continue;
                EXPECT_EQ(text.str().find(needle), std::string::npos) << entry.path() << " uses " << needle;
            }
        }
    }
    EXPECT_GT(files, 100);
}
