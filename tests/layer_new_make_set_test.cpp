// "-LAYER" New, Make and Set through the real host and module.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

TEST(LayerNew, CreatesWithDefaultsAndLeavesTheCurrentLayer) {
    ScriptedSession s({"-LAYER", "New", "  \"Walls new\"  ", "New", "0", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    ASSERT_TRUE(hasLayer(db, L"Walls new"));
    EXPECT_EQ(currentLayer(db), "0");
    const auto colour = readLayer<int>(db, L"Walls new", [](const auto& l) { return l.color().colorIndex(); });
    EXPECT_EQ(colour, 7);
    const auto weight = readLayer<int>(db, L"Walls new", [](const auto& l) { return int(l.lineWeight()); });
    EXPECT_EQ(weight, OxDb::kLnWtByLwDefault);
    EXPECT_EQ(readLayer<bool>(db, L"Walls new", [](const auto& l) { return l.isPlottable(); }), true);
    EXPECT_EQ(readLayer<OxDbObjectId>(db, L"Walls new", [](const auto& l) { return l.linetypeObjectId(); }),
              db->continuousLinetype());
    EXPECT_NE(s.transcript().find("Names for new layers: 0\nLayer 0 already exists."), std::string::npos)
        << s.transcript();
}

TEST(LayerNew, ARepeatedNameAttemptsTheWholeAnswerAndCreatesNothing) {
    // Both items are missing, so the whole answer "A,A" is attempted twice;
    // the host refuses a name with a comma.
    ScriptedSession s({"-LAYER", "New", "A,A", "New", "B,,C", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_FALSE(hasLayer(s.database(), L"A"));
    EXPECT_FALSE(hasLayer(s.database(), L"A,A"));
    // ",C" is one item, an invalid name.
    EXPECT_NE(s.transcript().find("\",C\" is an invalid layer name."), std::string::npos) << s.transcript();
}

// The whole answer is attempted once, not once a name: a list of 20,000
// names used to take minutes, each attempt copying and checking the list.
TEST(LayerNew, ALongListOfNamesIsAttemptedOnce) {
    std::string list = "L0";
    for (int i = 1; i < 20000; ++i)
        list += ",L" + std::to_string(i);
    ScriptedSession s({"-LAYER", "New", list, "New", "L1", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_FALSE(hasLayer(s.database(), L"L0"));
    EXPECT_FALSE(hasLayer(s.database(), OxString::fromUtf8(list)));
    EXPECT_TRUE(hasLayer(s.database(), L"L1")) << "a single name is still made";
}

TEST(LayerNew, ExtnamesBoundsAreCountedInCharacters) {
    const std::string longest(255, 'N'), tooLong(256, 'N');
    const std::string greek31 = "\xCE\xB1" + std::string(30, 'x'); // 31 characters, 32 bytes
    const std::string greek32 = greek31 + "y";
    ScriptedSession s({"EXTNAMES", "1", "-LAYER", "New", longest, "New", tooLong, "", "EXTNAMES", "0", "-LAYER", "New",
                       greek31, "New", greek32, ""},
                      Drawing::New);
    ASSERT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_TRUE(hasLayer(db, OxString::fromUtf8(longest)));
    EXPECT_FALSE(hasLayer(db, OxString::fromUtf8(tooLong)));
    EXPECT_TRUE(hasLayer(db, OxString::fromUtf8(greek31)));
    EXPECT_FALSE(hasLayer(db, OxString::fromUtf8(greek32)));
    EXPECT_EQ(countOf(s.transcript(), "is an invalid layer name."), 2) << s.transcript();
}

TEST(LayerMake, CreatesOrReusesAndMakesCurrent) {
    ScriptedSession s({"-LAYER", "Make", "Site", "Make", "OffOne", "Make", "Cold", ""}, Drawing::New);
    addLayer(s.database(), L"OffOne", [](OxDbLayerTableRecord& l) { l.setIsOff(true); });
    addLayer(s.database(), L"Cold", [](OxDbLayerTableRecord& l) { l.setIsFrozen(true); });
    ASSERT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_TRUE(hasLayer(db, L"Site"));
    // The off layer was turned on and made current; the frozen one refused.
    EXPECT_FALSE(isOff(db, L"OffOne"));
    EXPECT_EQ(currentLayer(db), "OffOne");
    EXPECT_TRUE(isFrozen(db, L"Cold"));
    EXPECT_NE(s.transcript().find("New layer to make current: Cold\nA frozen layer cannot be made current."),
              std::string::npos)
        << s.transcript();
}

TEST(LayerMake, RefusesA32CharacterNameWithShortNames) {
    const std::string name32(32, 'M');
    ScriptedSession s({"EXTNAMES", "0", "-LAYER", "Make", name32, "Make", std::string(31, 'M'), ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_FALSE(hasLayer(s.database(), OxString::fromUtf8(name32)));
    EXPECT_EQ(currentLayer(s.database()), std::string(31, 'M'));
    // Rejected: back at the option prompt, not asked again for a name.
    EXPECT_NE(s.transcript().find("\n\"" + name32 + "\" is an invalid layer name.\nEnter an option"), std::string::npos)
        << s.transcript();
}

TEST(LayerSet, UnknownNameAsksAgainThenKnownNameIsSetSilently) {
    ScriptedSession s({"-LAYER", "Set", "Nope", "\"Doors\"", ""}, Drawing::New);
    addLayer(s.database(), L"Doors", [](OxDbLayerTableRecord& l) { l.setIsOff(true); });
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "Doors");
    EXPECT_FALSE(isOff(s.database(), L"Doors"));
    const std::string t = s.transcript();
    EXPECT_NE(t.find("or <select object>: Nope\nCannot find layer Nope.\nLayer to set as current or <select object>: "
                     "\"Doors\"\nEnter an option"),
              std::string::npos)
        << t;
}

TEST(LayerSet, PickingAnObjectSetsItsLayerButNeverALockedOne) {
    ScriptedSession s({"-LAYER", "Set", "", "20.5,20.5", "Set", "", "10.5,10.5", ""}, Drawing::New);
    addLayer(s.database(), L"Kept", [](OxDbLayerTableRecord& l) { l.setIsLocked(true); });
    addLayer(s.database(), L"Free");
    addLine(s.database(), L"Kept", 10, 10);
    addLine(s.database(), L"Free", 20, 20);
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "Layer Free has already been set as current."), 1) << t;
    EXPECT_EQ(countOf(t, "has already been set as current."), 1) << t;
    // The locked layer was picked last and changed nothing.
    EXPECT_EQ(currentLayer(s.database()), "Free");
}
