// "-LAYER" Ltype through the real host and module: linetypes from the
// drawing or from the linetype file of its measurement system, the refusal
// of ByLayer/ByBlock and the paged listing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

namespace fs = std::filesystem;

// A support folder holding one linetype in each standard file.
class LinetypeFiles {
public:
    LinetypeFiles() : m_dir(fs::temp_directory_path() / ("pavo-ltype-" + std::to_string(::getpid()))) {
        fs::create_directories(m_dir);
        std::ofstream(m_dir / "vanta.lin") << "*IMPDASH,Imperial dash __ __ __\nA,.5,-.25\n";
        std::ofstream(m_dir / "vantaiso.lin") << "*ISODASH,ISO dash __ __ __\nA,12,-3\n";
    }
    ~LinetypeFiles() { fs::remove_all(m_dir); }
    pavo::app::SessionOptions options() const {
        pavo::app::SessionOptions o = pavotest::testSessionOptions();
        o.supportPath = {m_dir.string()};
        return o;
    }

private:
    fs::path m_dir;
};

std::string linetypeOf(OxDbDatabase* db, const wchar_t* layer) {
    const OxDbObjectId id =
        readLayer<OxDbObjectId>(db, layer, [](const OxDbLayerTableRecord& l) { return l.linetypeObjectId(); });
    OxDbLinetypeTableRecord* linetype = nullptr;
    if (oxdbOpenObject(linetype, id, OxDb::kForRead) != Ox::eOk) return "";
    std::string name = linetype->name().utf8();
    linetype->close();
    return name;
}

bool hasLinetype(OxDbDatabase* db, const wchar_t* name) {
    OxDbLinetypeTable* table = nullptr;
    if (db->getLinetypeTable(table, OxDb::kForRead) != Ox::eOk) return false;
    const bool found = table->has(name);
    table->close();
    return found;
}

// Adds linetypes LT00, LT01, ... so that the drawing lists `total` of them
// (Continuous included).
void addLinetypes(OxDbDatabase* db, int total) {
    OxDbLinetypeTable* table = nullptr;
    ASSERT_EQ(db->getLinetypeTable(table, OxDb::kForWrite), Ox::eOk);
    for (int i = 0; i + 1 < total; ++i) {
        auto* linetype = new OxDbLinetypeTableRecord();
        const std::wstring name = (i < 10 ? L"LT0" : L"LT") + std::to_wstring(i);
        linetype->setName(name.c_str());
        linetype->setComments(L"made for the listing");
        ASSERT_EQ(table->add(linetype), Ox::eOk);
        linetype->close();
    }
    table->close();
}

} // namespace

TEST(LayerLtype, MeasurementPicksTheFileAndMissingOnesAreReported) {
    LinetypeFiles files;
    ScriptedSession s({"MEASUREMENT", "1", "-LAYER", "Ltype", "impdash", "Ltype", "isodash", "A1", "", "MEASUREMENT",
                       "0", "-LAYER", "Ltype", "impdash", "B1", "Ltype", "NoSuch", ""},
                      Drawing::New, files.options());
    addLayer(s.database(), L"A1");
    addLayer(s.database(), L"B1");
    ASSERT_EQ(s.run(), 0) << s.transcript();
    OxDbDatabase* db = s.database();
    EXPECT_EQ(linetypeOf(db, L"A1"), "ISODASH");
    EXPECT_EQ(linetypeOf(db, L"B1"), "IMPDASH");
    const std::string t = s.transcript();
    // Metric drawings read only the metric file; the name shows as typed.
    EXPECT_EQ(countOf(t, "\nLinetype impdash not found."), 1) << t;
    EXPECT_EQ(countOf(t, "\nLinetype NoSuch not found."), 1) << t;
    EXPECT_NE(t.find("Enter the name list of layers to apply linetype isodash <0>: A1\n"), std::string::npos) << t;
    EXPECT_FALSE(hasLinetype(db, L"NoSuch"));
}

TEST(LayerLtype, EnterMeansContinuousAndByLayerIsRefusedAsTyped) {
    LinetypeFiles files;
    ScriptedSession s({"MEASUREMENT", "0", "-LAYER", "Ltype", "IMPDASH", "", "Ltype", "bYlAyEr", "Ltype", "ByBlock",
                       "Ltype", "", "A1", ""},
                      Drawing::New, files.options());
    s.database()->setClayer(addLayer(s.database(), L"Cur"));
    addLayer(s.database(), L"A1");
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(linetypeOf(s.database(), L"Cur"), "IMPDASH"); // Enter at the layer prompt: the current layer
    EXPECT_EQ(linetypeOf(s.database(), L"A1"), "Continuous");
    const std::string t = s.transcript();
    EXPECT_NE(t.find("<Default>: bYlAyEr\n\"bYlAyEr\" is invalid linetype name.\nEnter an option"), std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "\"ByBlock\" is invalid linetype name."), 1) << t;
}

TEST(LayerLtype, ListingOfFortyFivePausesAfterLinesTwentyAndForty) {
    // Each pause takes one answer: two Enters, then Enter ends the command.
    ScriptedSession s({"-LAYER", "Ltype", "?", "*", "", "", ""}, Drawing::New);
    addLinetypes(s.database(), 45);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("\n  Linetype name                       Description\n"
                     "------------------------------- -----------------------\n"
                     " Continuous                     Solid line"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("\n LT00                           made for the listing" + std::string(30, ' ') + "\n"),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "\n LT"), 44) << t;

    // Cancel at the second pause: lines 1 to 40 were shown.
    ScriptedSession second({"-LAYER", "Ltype", "?", "*", "", "^C", ""}, Drawing::New);
    addLinetypes(second.database(), 45);
    ASSERT_EQ(second.run(), 0) << second.transcript();
    EXPECT_EQ(countOf(second.transcript(), "\n LT"), 39) << second.transcript();
    EXPECT_EQ(countOf(second.transcript(), "\n LT38 "), 1) << second.transcript();
}

TEST(LayerLtype, ListingOfTwentyDoesNotPauseAndCancelStopsAListing) {
    ScriptedSession exact({"-LAYER", "Ltype", "?", "", ""}, Drawing::New);
    addLinetypes(exact.database(), 20);
    ASSERT_EQ(exact.run(), 0); // a pause would have taken the last Enter
    EXPECT_EQ(countOf(exact.transcript(), "\n LT"), 19) << exact.transcript();

    ScriptedSession cancelled({"-LAYER", "Ltype", "?", "", "^C", ""}, Drawing::New);
    addLinetypes(cancelled.database(), 45);
    ASSERT_EQ(cancelled.run(), 0);
    EXPECT_EQ(countOf(cancelled.transcript(), "\n LT"), 19) << cancelled.transcript();
}

TEST(LayerLtype, PatternWithoutMatchesSaysSo) {
    ScriptedSession s({"-LAYER", "Ltype", "?", "ZZ*", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("-----------------------\nMatching linetype names not found.\nEnter an option"),
              std::string::npos)
        << s.transcript();
}
