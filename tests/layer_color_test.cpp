// "-LAYER" Color through the real host and module: the colour's sign turns
// layers off or on, and the current layer goes off only after a Yes.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

OxCmColor colorOf(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<OxCmColor>(db, name, [](const OxDbLayerTableRecord& l) { return l.color(); });
}

const std::string kQuestion = "Really want layer Cur (the CURRENT layer) off? <N>";

// Layers A1, A2 (off) and Cur (current).
void addLayers(ScriptedSession& s) {
    addLayer(s.database(), L"A1");
    addLayer(s.database(), L"A2", [](OxDbLayerTableRecord& l) { l.setIsOff(true); });
    s.database()->setClayer(addLayer(s.database(), L"Cur"));
}

} // namespace

TEST(LayerColor, NegativeIndexColoursAndTurnsOffPositiveTurnsOn) {
    ScriptedSession s({"-LAYER", "Color", "-1", "A*", "Color", "3", "A2", "Color", "-12", "Nothing", ""}, Drawing::New);
    addLayers(s);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    OxDbDatabase* db = s.database();
    EXPECT_EQ(colorOf(db, L"A1"), OxCmColor::fromIndex(1));
    EXPECT_TRUE(isOff(db, L"A1"));
    EXPECT_EQ(colorOf(db, L"A2"), OxCmColor::fromIndex(3));
    EXPECT_FALSE(isOff(db, L"A2")); // off after -1, on again after 3
    EXPECT_FALSE(isOff(db, L"Cur"));
    const std::string t = s.transcript();
    EXPECT_NE(t.find("New color [Truecolor/COlorbook] : -1\nLayer(s) to be -1 (red) <Cur>: A*\n"), std::string::npos)
        << t;
    EXPECT_NE(t.find("Layer(s) to be 3 (green) <Cur>: "), std::string::npos) << t;
    // Above 7 the number alone, with the sign of the typed value.
    EXPECT_NE(t.find("Layer(s) to be -12 <Cur>: Nothing\nNo layers found matching pattern Nothing. "),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "CURRENT layer"), 0) << t;
}

TEST(LayerColor, CurrentLayerGoesOffOnlyAfterYes) {
    // Enter, then cancel, then an unknown answer and No, then Yes.
    ScriptedSession s({"-LAYER", "Color", "-5", "", "", "Color", "-5", "", "^C", "Color", "-5", "cur,A1", "maybe", "N",
                       "Color", "-5", "", "y", ""},
                      Drawing::New);
    addLayers(s);
    OxDbDatabase* db = s.database();
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(isOff(db, L"Cur"));
    EXPECT_TRUE(isOff(db, L"A1")); // not current: no question
    EXPECT_EQ(colorOf(db, L"Cur"), OxCmColor::fromIndex(5));
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, kQuestion), 5) << t;
    EXPECT_EQ(countOf(t, kQuestion + "maybe\nPlease input Yes(Y) or No(N).\n" + kQuestion + "N\n"), 1) << t;
    EXPECT_EQ(countOf(t, "Layer(s) to be -5 (blue) <Cur>: "), 4) << t;
    // The cancelled question did not cancel the command.
    EXPECT_NE(t.find(kQuestion + "*Cancel*\nEnter an option"), std::string::npos) << t;
}

TEST(LayerColor, TrueColourHasIndexZeroAndLeavesOnOffAlone) {
    // ByLayer (256) cannot be typed here; a true colour is the index-0 case.
    ScriptedSession s({"-LAYER", "Color", "T", "10,20,30", "A*", ""}, Drawing::New);
    addLayers(s);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    OxDbDatabase* db = s.database();
    EXPECT_EQ(colorOf(db, L"A2"), OxCmColor::fromRgb(10, 20, 30));
    EXPECT_TRUE(isOff(db, L"A2"));
    EXPECT_FALSE(isOff(db, L"A1"));
    EXPECT_NE(s.transcript().find("Layer(s) to be 10,20,30 <Cur>: "), std::string::npos) << s.transcript();
}

TEST(LayerColor, CancelAtEitherPromptChangesNothing) {
    ScriptedSession s({"-LAYER", "Color", "^C", "Color", "-1", "^C", ""}, Drawing::New);
    addLayers(s);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(colorOf(s.database(), L"Cur"), OxCmColor::fromIndex(7));
    EXPECT_EQ(countOf(s.transcript(), "Enter an option"), 3) << s.transcript();
}
