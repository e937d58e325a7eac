// "-LAYER" ON, OFf, Freeze, Thaw, LOck and Unlock through the real host and
// module.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

const std::string kOffQuestion = "Cur is the CURRENT layer.  Turn it off anyway? <N>: ";

// A drawing with layers Cur (current), A1 and B1.
void addThreeLayers(ScriptedSession& s) {
    addLayer(s.database(), L"A1");
    addLayer(s.database(), L"B1");
    s.database()->setClayer(addLayer(s.database(), L"Cur"));
}

} // namespace

TEST(LayerOff, AsksOnlyAboutTheCurrentLayerWhenExpertIsZero) {
    ScriptedSession s({"EXPERT", "0", "-LAYER", "OFf", "*", "", "OFf", "cur,A1", "Y", ""}, Drawing::New);
    addThreeLayers(s);
    ASSERT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_TRUE(isOff(db, L"0"));
    EXPECT_TRUE(isOff(db, L"A1"));
    EXPECT_TRUE(isOff(db, L"B1"));
    EXPECT_TRUE(isOff(db, L"Cur")); // the second time the answer was Yes
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, kOffQuestion), 2) << t;
    EXPECT_NE(t.find(kOffQuestion + "\nEnter an option"), std::string::npos) << t; // Enter keeps it on
}

TEST(LayerOff, ExpertTurnsTheCurrentLayerOffWithoutAsking) {
    ScriptedSession s({"EXPERT", "1", "-LAYER", "OFf", "Cur", ""}, Drawing::New);
    addThreeLayers(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(isOff(s.database(), L"Cur"));
    EXPECT_EQ(countOf(s.transcript(), "CURRENT layer"), 0) << s.transcript();
}

TEST(LayerOn, EmptyAnswerReturnsWithoutSelecting) {
    ScriptedSession s({"-LAYER", "ON", "", "Thaw", "", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(countOf(s.transcript(), "Select objects"), 0) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "Enter an option"), 3) << s.transcript();
}

TEST(LayerFreeze, ReportsTheCurrentLayerOnceAndFreezesTheOthers) {
    ScriptedSession s({"-LAYER", "Freeze", "*", "Thaw", "A*", ""}, Drawing::New);
    addThreeLayers(s);
    ASSERT_EQ(s.run(), 0);
    OxDbDatabase* db = s.database();
    EXPECT_FALSE(isFrozen(db, L"Cur"));
    EXPECT_TRUE(isFrozen(db, L"0"));
    EXPECT_TRUE(isFrozen(db, L"B1"));
    EXPECT_FALSE(isFrozen(db, L"A1")); // thawed again
    EXPECT_EQ(countOf(s.transcript(), "\nCannot freeze layer Cur, it is the current layer. Specify a different layer."),
              1)
        << s.transcript();
}

TEST(LayerLock, LocksAndUnlocksNamedLayersAndReportsMisses) {
    ScriptedSession s({"-LAYER", "LOck", "A1,B1,Nothing", "Unlock", "=b1", ""}, Drawing::New);
    addThreeLayers(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(isLocked(s.database(), L"A1"));
    EXPECT_FALSE(isLocked(s.database(), L"B1"));
    EXPECT_NE(s.transcript().find("No layers found matching pattern Nothing. "), std::string::npos) << s.transcript();
}

TEST(LayerFreeze, SelectedObjectsNameTheirLayersLiterally) {
    // Two objects on A[1]: the layer is named twice, harmlessly; the bracket
    // layer's name is not read as a pattern that would also match A1.
    ScriptedSession s({"-LAYER", "Freeze", "", "10.5,10.5", "12.5,12.5", "", ""}, Drawing::New);
    addThreeLayers(s);
    addLayer(s.database(), L"A[1]");
    addLine(s.database(), L"A[1]", 10, 10);
    addLine(s.database(), L"A[1]", 12, 12);
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(isFrozen(s.database(), L"A[1]"));
    EXPECT_FALSE(isFrozen(s.database(), L"A1"));
}

TEST(LayerOff, CancelledSelectionChangesNothing) {
    ScriptedSession s({"-LAYER", "OFf", "", "^C", ""}, Drawing::New);
    addThreeLayers(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_FALSE(isOff(s.database(), L"A1"));
    EXPECT_FALSE(isOff(s.database(), L"0"));
}

TEST(LayerSample, StatesOfTheSampleDrawingShowInTheListing) {
    ScriptedSession s({"-LAYER", "?", "A-DEMO,A-FURN-OLD,A-AREA,A-SKETCH,SITE|*,A[1],NOTE#1", "Delete", "SITE|*", ""});
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    for (const char* row : {"\nA-DEMO                          Off -P", "\nA-FURN-OLD                      Freeze -P",
                            "\nA-AREA                          On -L -P", "\nA-SKETCH                        On ",
                            "\nSITE|BOUNDARY                   On -P", "\nA[1] ", "\nNOTE#1 "})
        EXPECT_EQ(countOf(t, row), 1) << row << "\n" << t;
    EXPECT_EQ(countOf(t, "Cannot delete the selected layer(s). "), 1) << t;
    EXPECT_TRUE(hasLayer(s.database(), L"SITE|BOUNDARY"));
}
