// Bad drawings are refused with the JSON location of the first problem, and
// saving keeps the previous file safe.
#include <csignal>
#include <fstream>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files_TestSupport.h"

namespace pavo::files::test {
namespace {

struct Refusal {
    const char* name;
    std::string json;
    const char* pointer;
    const char* problem; // a part of the problem text
};

LoadError refuse(const std::string& json) {
    LoadError error;
    EXPECT_FALSE(readDrawing(json, "bad.pvd", error));
    return error;
}

TEST(DrawingFiles, BadDrawingsAreRefusedWithTheirLocation) {
    const std::string sample(embeddedSampleDrawing());
    const Refusal cases[] = {
        {"truncated", sample.substr(0, sample.size() / 2), "", "truncated"},
        {"wrong type", sampleWith("\"tilemode\":1", "\"tilemode\":\"1\""), "/header/tilemode", "expected an integer"},
        {"unknown key", sampleWith("\"name\":\"A-DOOR\"", "\"name\":\"A-DOOR\",\"colour\":3"), "/layers/2/colour",
         "unknown key \"colour\""},
        {"duplicate handle", sampleWith("{\"h\":\"19\",\"name\":\"A-DOOR\"", "{\"h\":\"18\",\"name\":\"A-DOOR\""),
         "/layers/2/h", "duplicate handle \"18\""},
        {"duplicate layer name", sampleWith("\"name\":\"A-DOOR\"", "\"name\":\"a-wall\""), "/layers/2/name",
         "duplicate layer name"},
        {"dangling reference", sampleWith("\"b\":\"2A\",\"p\":[651", "\"b\":\"FFFF\",\"p\":[651"),
         "/blocks/1/entities/3/b", "refers to no object"},
        {"wrong class", sampleWith("\"clayer\":\"17\"", "\"clayer\":\"A\""), "/header/clayer", "not a layer"},
        {"bad colour index", sampleWith("\"color\":3", "\"color\":256"), "/layers/2/color", "out of range"},
        {"bad lineweight", sampleWith("\"lineweight\":25", "\"lineweight\":26"), "/layers/2/lineweight",
         "invalid lineweight 26"},
        {"bad alpha", sampleWith("{\"alpha\":178}", "{\"alpha\":300}"), "/layers/4/transparency/alpha", "out of range"},
        {"viewport number", sampleWith("\"n\":3", "\"n\":0"), "/blocks/1/entities/2/n", "out of range"},
        {"frozen current layer",
         sampleWith("{\"h\":\"17\",\"name\":\"0\"", "{\"h\":\"17\",\"name\":\"0\",\"frozen\":true"), "/header/clayer",
         "is frozen"},
        {"key of another kind", sampleWith("{\"t\":\"circle\",\"h\":\"39\"", "{\"t\":\"line\",\"h\":\"39\""),
         "/blocks/0/entities/11/p", "does not belong to a line"},
        {"missing key", sampleWith("\"p\":[0,0],\"r\":150}", "\"p\":[0,0]}"), "/blocks/0/entities/11",
         "needs the key \"r\""},
        // An attribute is an object of its own: its handle is unique too.
        {"attribute with the reference's handle",
         sampleWith("{\"h\":\"69\",\"p\":[656,55]", "{\"h\":\"68\",\"p\":[656,55]"), "/blocks/1/entities/3/attribs/0/h",
         "duplicate handle \"68\""},
        {"attributes with one handle", sampleWith("{\"h\":\"6A\",\"p\":[656,40]", "{\"h\":\"69\",\"p\":[656,40]"),
         "/blocks/1/entities/3/attribs/1/h", "duplicate handle \"69\""},
        {"attribute with an object's handle",
         sampleWith("{\"h\":\"6A\",\"p\":[656,40]", "{\"h\":\"5E\",\"p\":[656,40]"), "/blocks/3/entities/0/h",
         "duplicate handle \"5E\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const LoadError error = refuse(c.json);
        EXPECT_EQ(error.pointer, c.pointer);
        EXPECT_NE(error.problem.find(c.problem), std::string::npos) << error.message();
        EXPECT_EQ(error.message().rfind("bad.pvd:", 0), 0u) << error.message();
        EXPECT_GT(error.line, 0u);
    }
}

TEST(DrawingFiles, ErrorMessageNamesLineAndColumn) {
    const std::string json = "{\"format\": \"pavo-drawing\",\n \"version\": 1,\n \"header\": {\"bogus\": 1}}";
    const LoadError error = refuse(json);
    EXPECT_EQ(error.message(), "bad.pvd:3:13: at /header/bogus: unknown key \"bogus\" in the header");
}

TEST(DrawingFiles, InvalidFilesInTheDataFolderAreRefused) {
    for (const char* name : {"bad-version.pvd", "trailing-text.pvd", "not-an-object.pvd"}) {
        SCOPED_TRACE(name);
        LoadError error;
        EXPECT_FALSE(readDrawingFile(std::string(PAVO_TEST_DATA_DIR) + "/" + name, error));
        EXPECT_FALSE(error.problem.empty());
    }
}

std::string slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

class DrawingSave : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/pavo-files-XXXXXX";
        ASSERT_TRUE(mkdtemp(pattern));
        dir = pattern;
        path = dir + "/plan.pvd";
    }
    void TearDown() override {
        chmod(dir.c_str(), 0700);
        for (const char* suffix : {"", ".bak"})
            unlink((path + suffix).c_str());
        rmdir(dir.c_str());
    }
    std::string dir, path;
};

TEST_F(DrawingSave, KeepsTheOldFileAsBackupAndReadsBack) {
    std::ofstream(path) << "old content";
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    std::string error;
    ASSERT_TRUE(writeDrawingFile(*db, path, error)) << error;
    EXPECT_EQ(slurp(path + ".bak"), "old content");
    EXPECT_EQ(slurp(path), writeDrawing(*db));
    LoadError loadError;
    auto again = readDrawingFile(path, loadError);
    ASSERT_TRUE(again) << loadError.message();
    EXPECT_EQ(again->fileName(), OxString::fromUtf8(path));
}

// A write that fails part way (here the process may not write files larger
// than a few hundred bytes, which holds for every user, root included).
TEST_F(DrawingSave, FailureLeavesTheOldFileUntouched) {
    std::ofstream(path) << "old content";
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 500;
    auto* const oldHandler = std::signal(SIGXFSZ, SIG_IGN); // write() then fails with EFBIG
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string error;
    const bool written = writeDrawingFile(*db, path, error);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(written);
    EXPECT_NE(error.find(dir), std::string::npos) << error;
    EXPECT_EQ(slurp(path), "old content");
    unlink(path.c_str());
    EXPECT_EQ(rmdir(dir.c_str()), 0) << "a temporary file was left behind";
    mkdir(dir.c_str(), 0700);
}

TEST_F(DrawingSave, FailedReplaceRemovesTheTemporaryFile) {
    const std::string occupied = dir + "/occupied";
    ASSERT_EQ(mkdir(occupied.c_str(), 0700), 0); // a folder where the drawing should go
    ASSERT_EQ(mkdir((occupied + "/inside").c_str(), 0700), 0);
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    std::string error;
    EXPECT_FALSE(writeDrawingFile(*db, occupied, error));
    EXPECT_FALSE(error.empty());
    rmdir((occupied + "/inside").c_str());
    EXPECT_EQ(rmdir(occupied.c_str()), 0);
    EXPECT_EQ(rmdir(dir.c_str()), 0) << "a temporary file was left behind";
    mkdir(dir.c_str(), 0700);
}

TEST_F(DrawingSave, MissingFolderFailsWithAReason) {
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    std::string error;
    EXPECT_FALSE(writeDrawingFile(*db, dir + "/no/such/plan.pvd", error));
    EXPECT_FALSE(error.empty());
}

} // namespace
} // namespace pavo::files::test
