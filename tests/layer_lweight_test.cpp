// "-LAYER" LWeight through the real host and module (millimetres and
// inches, snapping, refusals, the listing and Default), and the table of
// valid lineweights.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"
#include "layerhelper/PavoLayerHelper.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

int lineWeightOf(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<int>(db, name, [](const OxDbLayerTableRecord& l) { return static_cast<int>(l.lineWeight()); });
}

// Runs LWeight once per value, each on the layer of the same name.
ScriptedSession& runValues(ScriptedSession& s, const std::vector<std::string>& values) {
    for (const std::string& value : values)
        addLayer(s.database(), OxString::fromUtf8("L" + value).kwszPtr());
    EXPECT_EQ(s.run(), 0);
    return s;
}

std::vector<std::string> script(const char* lwunits, const std::vector<std::string>& values) {
    std::vector<std::string> lines = {"LWUNITS", lwunits, "-LAYER"};
    for (const std::string& value : values)
        lines.insert(lines.end(), {"LWeight", value, "L" + value});
    lines.push_back("");
    return lines;
}

} // namespace

TEST(LineWeightTable, StandardValuesAndFlags) {
    int valid = 0;
    for (int weight = -10; weight <= 300; ++weight)
        valid += PavoLayerHelper::isValidLineWeight(weight, 0);
    EXPECT_EQ(valid, 24);
    for (int weight :
         {0, 5, 9, 13, 15, 18, 20, 25, 30, 35, 40, 50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211})
        EXPECT_TRUE(PavoLayerHelper::isValidLineWeight(weight, 0)) << weight;
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(24, 0));
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(212, 7));
    // Each special value needs its own bit.
    EXPECT_TRUE(PavoLayerHelper::isValidLineWeight(-1, 1));
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(-1, 6));
    EXPECT_TRUE(PavoLayerHelper::isValidLineWeight(-2, 2));
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(-2, 5));
    EXPECT_TRUE(PavoLayerHelper::isValidLineWeight(-3, 4));
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(-3, 3));
    EXPECT_FALSE(PavoLayerHelper::isValidLineWeight(-4, 7));
}

TEST(LayerLweight, MillimetresTruncateThenSnapToTheNearerTiesUp) {
    const std::vector<std::string> values = {"0.25", "0.27", "0.22", "0.29", "0.07", "3"};
    ScriptedSession s(script("1", values), Drawing::New);
    runValues(s, values);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(lineWeightOf(db, L"L0.25"), 25);
    EXPECT_EQ(lineWeightOf(db, L"L0.27"), 25);
    EXPECT_EQ(lineWeightOf(db, L"L0.22"), 20);
    EXPECT_EQ(lineWeightOf(db, L"L0.29"), 30); // 28 after truncation
    EXPECT_EQ(lineWeightOf(db, L"L0.07"), 9);  // as far from 5 as from 9
    EXPECT_EQ(lineWeightOf(db, L"L3"), 211);
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "Lineweight rounded to nearest valid value of"), 4) << t;
    EXPECT_NE(t.find("<Default>: 0.27\nLineweight rounded to nearest valid value of 0.25 mm\n"
                     "Enter name list of layers(s) for lineweight 0.25mm <0>: L0.27\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("value of 0.30 mm\nEnter name list of layers(s) for lineweight 0.30mm"), std::string::npos) << t;
    EXPECT_NE(t.find("<Default>: 3\nEnter name list of layers(s) for lineweight 2.11mm <0>: "), std::string::npos) << t;
}

TEST(LayerLweight, InchesRoundDownToTheTableEntry) {
    const std::vector<std::string> values = {"0.0065", "0.007", "0.5"};
    ScriptedSession s(script("0", values), Drawing::New);
    runValues(s, values);
    OxDbDatabase* db = s.database();
    EXPECT_EQ(lineWeightOf(db, L"L0.0065"), 15);
    EXPECT_EQ(lineWeightOf(db, L"L0.007"), 18);
    EXPECT_EQ(lineWeightOf(db, L"L0.5"), 211);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter line weight (0.000 inches-0.083 inches) or [?] <Default>: 0.0065\n"
                     "Enter name list of layers(s) for lineweight 0.006 inches <0>: "),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("for lineweight 0.083 inches <0>: L0.5"), std::string::npos) << t;
    EXPECT_EQ(countOf(t, "rounded"), 0) << t;
}

TEST(LayerLweight, RefusalsAndListingAskAgainAtOnce) {
    ScriptedSession s({"LWUNITS", "1", "-LAYER", "LWeight", "-0.1", "?", "thick", "0.25", "A1", ""}, Drawing::New);
    addLayer(s.database(), L"A1");
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(lineWeightOf(s.database(), L"A1"), 25);
    const std::string t = s.transcript();
    const std::string prompt = "LineWeight: ? to list/0.0mm-2.11mm/<Default>: ";
    EXPECT_NE(t.find(prompt + "-0.1\nEnter a valid lineweight value.\n" + prompt +
                     "?\nAvailable Lineweights: \n"
                     "BYLAYER BYBLOCK Default\n 0.00 mm 0.05 mm  0.09 mm 0.13 mm 0.15 mm  0.18 mm\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find(" 1.06 mm 1.20 mm  1.40 mm 1.58 mm 2.00 mm  2.11 mm\n" + prompt +
                     "thick\n"
                     "Enter a valid lineweight value.\n" +
                     prompt + "0.25\n"),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "Enter an option"), 2) << t;
}

TEST(LayerLweight, InchListingAndDefaultFromEnterOrKeyword) {
    ScriptedSession s({"LWUNITS", "0", "-LAYER", "LWeight", "?", "", "", "LWeight", "Default", "A1", ""}, Drawing::New);
    addLayer(s.database(), L"A1", [](OxDbLayerTableRecord& l) { l.setLineWeight(OxDb::kLnWt050); });
    s.database()->setClayer(
        addLayer(s.database(), L"Cur", [](OxDbLayerTableRecord& l) { l.setLineWeight(OxDb::kLnWt100); }));
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(lineWeightOf(s.database(), L"A1"), OxDb::kLnWtByLwDefault);
    EXPECT_EQ(lineWeightOf(s.database(), L"Cur"), OxDb::kLnWtByLwDefault);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("\n 0.042 inches 0.047 inches  0.055 inches 0.062 inches 0.079 inches  0.083 inches\n"),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "Enter name list of layers(s) for lineweight Default <Cur>: "), 2) << t;
}
