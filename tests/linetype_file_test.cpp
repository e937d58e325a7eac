// Linetype files: the shipped libraries, the parser's refusals, and
// OxDbDatabase::loadLineTypeFile.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "SessionHarness.h"
#include "base/Utf8.h"
#include "files/LinetypeFile.h"

namespace fs = std::filesystem;
using pavo::files::LinetypeFile;

namespace {

LinetypeFile shipped(const char* name) {
    std::string problem;
    const std::optional<LinetypeFile> file =
        pavo::files::readLinetypeFile(fs::path(PAVO_TEST_RESOURCE_DIR) / "support" / name, problem);
    EXPECT_TRUE(file) << name << ": " << problem;
    return file.value_or(LinetypeFile{});
}

TEST(LinetypeFile, ShippedLibrariesAgreeInchAgainstMillimetre) {
    const LinetypeFile inch = shipped("vanta.lin");
    const LinetypeFile metric = shipped("vantaiso.lin");
    EXPECT_TRUE(inch.problems.empty());
    EXPECT_TRUE(metric.problems.empty());
    ASSERT_EQ(inch.linetypes.size(), 38u); // 8 families of 3, ISO 128 02..15
    ASSERT_EQ(metric.linetypes.size(), inch.linetypes.size());
    for (size_t i = 0; i < inch.linetypes.size(); ++i) {
        const auto& a = inch.linetypes[i];
        const auto& b = metric.linetypes[i];
        ASSERT_EQ(a.name, b.name);
        EXPECT_EQ(a.description, b.description);
        ASSERT_EQ(a.dashes.size(), b.dashes.size()) << pavo::toUtf8(a.name);
        for (size_t k = 0; k < a.dashes.size(); ++k)
            EXPECT_NEAR(a.dashes[k] * 25.4, b.dashes[k], 0.001);
    }
    for (const wchar_t* name :
         {L"BORDER", L"CENTERX2", L"DASHDOT2", L"DIVIDE", L"DOTX2", L"HIDDEN2", L"PHANTOM", L"ISO02W100", L"ISO15W100"})
        EXPECT_EQ(metric.matching(name).size(), 1u) << pavo::toUtf8(name);
    // ISO patterns are millimetres for a 1.00 mm pen: 12 mm dash, 3 mm gap.
    const auto* iso02 = metric.matching(L"iso02w100").front();
    EXPECT_EQ(iso02->dashes, (std::vector<double>{12, -3}));
    EXPECT_EQ(iso02->description, L"ISO dash __ __ __ __ __");
    EXPECT_EQ(inch.matching(L"DASHED").front()->dashes, (std::vector<double>{0.5, -0.25}));
}

TEST(LinetypeFile, MalformedLinesAreReportedWithTheirNumbers) {
    const LinetypeFile file = pavo::files::parseLinetypeFile(";; comment\n"
                                                             "A,1,-1\n"                  // 2: no header
                                                             "*GOOD,Good one\n"          //
                                                             "A,1,-0.5,0,-0.5\n"         //
                                                             "*NOPAT,Nothing\n"          // 5: no pattern
                                                             "*BADNUM,x\n"               //
                                                             "A,1,-x\n"                  // 7: not a number
                                                             "*GAPFIRST\n"               //
                                                             "A,-1,1\n"                  // 9: starts with a gap
                                                             "*good,again\n"             // 10: twice
                                                             "A,1,-1\n"                  //
                                                             "*SHAPE,s\n"                //
                                                             "A,1,[BOX,shapes.shx],-1\n" // 13
                                                             "*SHORT,s\n"
                                                             "B,1,-1\n", // 15: not an A line
                                                             "bad.lin");
    ASSERT_EQ(file.problems.size(), 7u);
    const char* expected[] = {"bad.lin:2: expected a linetype header",      "bad.lin:5: linetype NOPAT has no pattern",
                              "bad.lin:7: \"-x\" is not a number",          "bad.lin:9: a pattern starts with a dash",
                              "bad.lin:10: linetype good is defined twice", "bad.lin:13: shapes and text",
                              "bad.lin:15: expected a pattern line"};
    for (size_t i = 0; i < 7; ++i)
        EXPECT_TRUE(pavo::toUtf8(file.problems[i]).starts_with(expected[i])) << pavo::toUtf8(file.problems[i]);
    ASSERT_GE(file.linetypes.size(), 1u);
    EXPECT_EQ(file.linetypes[0].name, L"GOOD");
    EXPECT_EQ(file.linetypes[0].description, L"Good one");
}

struct LoadLinetypes : ::testing::Test {
    pavotest::ScriptedSession session{{}, pavotest::Drawing::New};
    OxDbDatabase* db = session.database();
    fs::path folder = fs::temp_directory_path() / ("pavo-lin-" + std::to_string(::getpid()));

    void SetUp() override { fs::create_directories(folder); }
    void TearDown() override { fs::remove_all(folder); }

    int count() {
        OxDbLinetypeTable* table = nullptr;
        EXPECT_EQ(db->getLinetypeTable(table, OxDb::kForRead), Ox::eOk);
        const int n = table->numEntries();
        table->close();
        return n;
    }
    // The pattern of linetype `name`; empty when the drawing lacks it.
    std::vector<double> pattern(const wchar_t* name, std::wstring* description = nullptr) {
        OxDbLinetypeTable* table = nullptr;
        EXPECT_EQ(db->getLinetypeTable(table, OxDb::kForRead), Ox::eOk);
        OxDbLinetypeTableRecord* record = nullptr;
        std::vector<double> dashes;
        OxDbObjectId id;
        if (table->getIdAt(name, id) == Ox::eOk && oxdbOpenObject(record, id, OxDb::kForRead) == Ox::eOk) {
            for (int i = 0; i < record->numDashes(); ++i)
                dashes.push_back(record->dashLengthAt(i));
            if (description) *description = record->comments();
            record->close();
        }
        table->close();
        return dashes;
    }
    void write(const char* name, const std::string& text) { std::ofstream(folder / name) << text; }
};

TEST_F(LoadLinetypes, ByNameAndByPatternKeepingWhatIsThere) {
    const int before = count();
    ASSERT_EQ(db->loadLineTypeFile(L"hidden2", L"vantaiso.lin"), Ox::eOk);
    std::wstring description;
    EXPECT_EQ(pattern(L"HIDDEN2", &description), (std::vector<double>{3.175, -1.5875}));
    EXPECT_EQ(description, L"Hidden line (half size) _ _ _ _ _ _ _");
    EXPECT_EQ(count(), before + 1);

    ASSERT_EQ(db->loadLineTypeFile(L"DASHED", L"vantaiso.lin"), Ox::eOk);
    // Already there: the drawing's own definition stays, the others are added.
    ASSERT_EQ(db->loadLineTypeFile(L"DASH*", L"vanta.lin"), Ox::eOk);
    EXPECT_EQ(pattern(L"DASHED"), (std::vector<double>{12.7, -6.35}));
    EXPECT_EQ(pattern(L"DASHEDX2"), (std::vector<double>{1, -0.5}));
    EXPECT_EQ(count(), before + 7);
    EXPECT_TRUE(db->isModified());

    EXPECT_EQ(db->loadLineTypeFile(L"DASHED", L"vanta.lin"), Ox::eOk); // nothing to do
    EXPECT_EQ(db->loadLineTypeFile(L"ISO1?W100", L"vantaiso.lin"), Ox::eOk);
    EXPECT_EQ(count(), before + 13);
}

TEST_F(LoadLinetypes, MissingNamesFilesAndMalformedFiles) {
    const int before = count();
    EXPECT_EQ(db->loadLineTypeFile(L"NOSUCH", L"vanta.lin"), Ox::eKeyNotFound);
    EXPECT_EQ(db->loadLineTypeFile(L"DASHED", L"nosuch.lin"), Ox::eFileNotFound);
    EXPECT_EQ(db->loadLineTypeFile(L"DASHED", (folder / "absent.lin").wstring().c_str()), Ox::eFileNotFound);

    write("broken.lin", "*FINE,ok\nA,1,-1\n*BROKEN,bad\nA,1,-one\n");
    EXPECT_EQ(db->loadLineTypeFile(L"FINE", (folder / "broken.lin").wstring().c_str()), Ox::eInvalidFileFormat);
    EXPECT_NE(session.transcript().find("broken.lin:4: \"-one\" is not a number"), std::string::npos);
    EXPECT_EQ(count(), before); // a bad file loads nothing
}

TEST_F(LoadLinetypes, TheDrawingsFolderComesBeforeTheSupportPath) {
    db->setFileName((folder / "plan.pvd").wstring().c_str());
    write("vanta.lin", "*DASHED,Local dashes\nA,2,-2\n");
    ASSERT_EQ(db->loadLineTypeFile(L"DASHED", L"vanta.lin"), Ox::eOk);
    EXPECT_EQ(pattern(L"DASHED"), (std::vector<double>{2, -2}));
    EXPECT_EQ(db->loadLineTypeFile(L"CENTER", L"vanta.lin"), Ox::eKeyNotFound); // the local file is the one used
}

} // namespace
