// "-LAYER" Rename, Description and Delete through the real host and module.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

TEST(LayerRename, RefusesLayerZeroAndUnknownOrInvalidNames) {
    ScriptedSession s({"-LAYER", "Rename", "\"0\"", "Old|Name", "Ghost", "^C", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    // Each refusal asks for the old name again at once.
    EXPECT_NE(t.find("renamed: \"0\"\nLayer 0 cannot be renamed.\nEnter layer name to be renamed: Old|Name\n"
                     "Layer Old|Name not found.\nEnter layer name to be renamed: Ghost\nLayer Ghost not found.\n"
                     "Enter layer name to be renamed: *Cancel*"),
              std::string::npos)
        << t;
}

TEST(LayerRename, ExistingNewNameAsksAgainAndTheCurrentLayerStaysCurrent) {
    ScriptedSession s({"-LAYER", "Rename", "cur", "A1", "Current plan", ""}, Drawing::New);
    addLayer(s.database(), L"A1");
    s.database()->setClayer(addLayer(s.database(), L"Cur"));
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "Current plan");
    EXPECT_FALSE(hasLayer(s.database(), L"Cur"));
    EXPECT_NE(s.transcript().find("new layer name: A1\nLayer A1 already exists.\nEnter new layer name: "),
              std::string::npos)
        << s.transcript();
}

TEST(LayerRename, InvalidNewNameIsReportedAsNotFound) {
    ScriptedSession s({"-LAYER", "Rename", "A1", "A*B", "^C", ""}, Drawing::New);
    addLayer(s.database(), L"A1");
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(hasLayer(s.database(), L"A1"));
    EXPECT_NE(s.transcript().find("new layer name: A*B\nLayer A*B not found.\nEnter layer name to be renamed: "),
              std::string::npos)
        << s.transcript();
}

TEST(LayerDescription, AsksOnceAndEnterKeepsExistingDescriptions) {
    ScriptedSession s({"-LAYER", "Description", "  Fresh text ", "", "", ""}, Drawing::New);
    addLayer(s.database(), L"D1", [](OxDbLayerTableRecord& l) { l.setDescription(L"first"); });
    addLayer(s.database(), L"D2", [](OxDbLayerTableRecord& l) { l.setDescription(L"second"); });
    addLayer(s.database(), L"Plain");
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(description(s.database(), L"D1"), "first");
    EXPECT_EQ(description(s.database(), L"D2"), "second");
    EXPECT_EQ(description(s.database(), L"Plain"), "  Fresh text ");
    EXPECT_EQ(countOf(s.transcript(), "Replace existing description? [Yes/No] <N>: "), 1) << s.transcript();
}

TEST(LayerDescription, YesReplacesAndCancelChangesNothing) {
    ScriptedSession s({"-LAYER", "Description", "new", "D*", "^C", "Description", "newer", "D*", "Yes", ""},
                      Drawing::New);
    addLayer(s.database(), L"D1", [](OxDbLayerTableRecord& l) { l.setDescription(L"first"); });
    addLayer(s.database(), L"D2");
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(description(s.database(), L"D1"), "newer");
    EXPECT_EQ(description(s.database(), L"D2"), "newer");
}

TEST(LayerDelete, RefusesProtectedLayersInOrderAndErasesTheRest) {
    ScriptedSession s({"-LAYER", "Delete", "0,Cur,Used,SITE|EDGE,defpoints,Spare,Spare", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    s.database()->setClayer(addLayer(db, L"Cur"));
    addLayer(db, L"Used");
    addLine(db, L"Used", 0, 0);
    addLayer(db, L"DEFPOINTS");
    addLayer(db, L"SITE|EDGE");
    addLayer(db, L"Spare");
    ASSERT_TRUE(hasLayer(db, L"DEFPOINTS"));
    ASSERT_EQ(s.run(), 0);
    EXPECT_FALSE(hasLayer(db, L"Spare"));
    for (const wchar_t* kept : {L"0", L"Cur", L"Used", L"SITE|EDGE", L"DEFPOINTS"})
        EXPECT_TRUE(hasLayer(db, kept)) << kept;
    // One refusal per protected layer; the second Spare is skipped silently.
    std::string refusals;
    for (int i = 0; i < 5; ++i)
        refusals += "\nCannot delete the selected layer(s). ";
    EXPECT_NE(s.transcript().find("Spare,Spare" + refusals + "\nEnter an option"), std::string::npos) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "Cannot delete the selected layer(s). "), 5) << s.transcript();
}
