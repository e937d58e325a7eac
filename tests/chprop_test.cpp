// CHPROP, the properties of new objects (CECOLOR, CELWEIGHT, CETRANSPARENCY,
// CEPSTYLE) and what LIST says they come to.
#include <gtest/gtest.h>

#include "files/DrawingFile.h"
#include "setbylayer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace setbylayertest;

TEST(Chprop, ChangesEveryPropertyOfTheSelectedObjectsAndRefusesUnknownNames) {
    ScriptedSession s({"CHPROP", "0.5,0.5", "", "Color", "T", "10,20,30", "LAyer", "NOPE", "WALLS", "LType", "NOPE",
                       "DASHED", "LWeight", "0.26", "0.35", "TRansparency", "95", "30", "PStyle", "Thin", "Normal",
                       "Material", "Wood", "Global", ""},
                      Drawing::New);
    OxDbDatabase* db = s.database();
    layertest::addLayer(db, L"WALLS");
    const OxDbObjectId line = modelLine(db, 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("Cannot find layer \"NOPE\"."), std::string::npos) << out;
    EXPECT_NE(out.find("Linetype \"NOPE\" is neither in the drawing nor in its linetype file."), std::string::npos);
    EXPECT_NE(out.find("Invalid lineweight"), std::string::npos);
    EXPECT_NE(out.find("Requires ByLayer, ByBlock or a transparency from 0 to 90."), std::string::npos);
    EXPECT_NE(out.find("Plot style \"Thin\" is not in the drawing."), std::string::npos);
    EXPECT_NE(out.find("Material \"Wood\" is not in the drawing."), std::string::npos);
    readEntity<int>(line, [&](const OxDbEntity& e) {
        EXPECT_TRUE(e.color() == OxCmColor::fromRgb(10, 20, 30));
        EXPECT_EQ(e.layer(), OxString(L"WALLS"));
        EXPECT_NE(e.linetypeId(), db->byLayerLinetype()); // DASHED, loaded from the linetype file
        EXPECT_EQ(e.lineWeight(), OxDb::kLnWt035);
        EXPECT_EQ(e.transparency().alpha(), 179);
        OxDbObjectId style;
        EXPECT_EQ(e.getPlotStyleNameId(style), OxDb::kPlotStyleNameById);
        EXPECT_EQ(e.materialId(), db->globalMaterial());
        return 0;
    });
}

TEST(Chprop, ObjectsOnLockedLayersAreLeftAndCounted) {
    ScriptedSession s({"PSTYLEMODE", "1", "CHPROP", "ALL", "", "Color", "ByBlock", "PStyle", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    layertest::addLayer(db, L"LOCKED", [](OxDbLayerTableRecord& l) { l.setIsLocked(true); });
    const OxDbObjectId free = modelLine(db, 0, 0);
    const OxDbObjectId locked = modelLine(db, 5, 5, [&](OxDbLine& l) { l.setLayer(layerId(db, L"LOCKED")); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(colorOf(free).isByBlock());
    EXPECT_TRUE(colorOf(locked).isByLayer());
    EXPECT_NE(s.transcript().find("1 object(s) on a locked layer were not changed."), std::string::npos);
    EXPECT_NE(s.transcript().find("The drawing uses colour-dependent plot styles"), std::string::npos);
}

TEST(Chprop, AnUnknownPlotStyleIsRefusedBeforeAnyObjectIsOpened) {
    ScriptedSession s({"CHPROP", "ALL", "", "PStyle", "Nowhere", "Normal", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    layertest::addLayer(db, L"LOCKED", [](OxDbLayerTableRecord& l) { l.setIsLocked(true); });
    const OxDbObjectId free = modelLine(db, 0, 0);
    modelLine(db, 5, 5, [&](OxDbLine& l) { l.setLayer(layerId(db, L"LOCKED")); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    // The refused name reached no object: the locked one is reported once, for Normal.
    EXPECT_EQ(countOf(s.transcript(), "on a locked layer were not changed"), 1) << s.transcript();
    EXPECT_NE(s.transcript().find("Plot style \"Nowhere\" is not in the drawing."), std::string::npos);
    OxDbObjectId style;
    EXPECT_EQ(readEntity<int>(free, [&](const OxDbEntity& e) { return int(e.getPlotStyleNameId(style)); }),
              OxDb::kPlotStyleNameById);
}

TEST(CurrentProperties, NewObjectsTakeThemAndTheDrawingKeepsThem) {
    ScriptedSession s({"CECOLOR", "blue", "CELWEIGHT", "26", "50", "CETRANSPARENCY", "ByBlock", "CEPSTYLE", "Thick",
                       "Normal", "CECOLOR", "0,128,255", "LINE", "0,0", "10,0", "", "LIST", "5,0", ""},
                      Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("Value must be -1 (ByLayer), -2 (ByBlock), -3 (Default) or a standard lineweight"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("Plot style \"Thick\" is not in the drawing"), std::string::npos);
    EXPECT_NE(out.find("    Color:         0,128,255\n    Linetype:      BYLAYER (Continuous)\n"
                       "    Lineweight:    0.50 mm\n    Transparency:  ByBlock (0% outside a block)\n"
                       "    Plot style:    Normal\n"),
              std::string::npos)
        << out;
    // Saved and read again.
    const std::string saved = pavo::files::writeDrawing(*s.database());
    EXPECT_NE(saved.find("\"cetransparency\":\"byblock\""), std::string::npos);
    EXPECT_NE(saved.find("\"cepstyle\":\"Normal\""), std::string::npos);
    pavo::files::LoadError error;
    auto again = pavo::files::readDrawing(saved, "saved", error);
    ASSERT_TRUE(again) << error.message();
    EXPECT_TRUE(again->cetransparency().isByBlock());
    EXPECT_EQ(again->cepstyle(), OxString(L"Normal"));
    EXPECT_EQ(pavo::files::writeDrawing(*again), saved);
}

TEST(CurrentProperties, ADrawingWithAnUnknownCurrentPlotStyleIsRefused) {
    ScriptedSession s({}, Drawing::New);
    std::string text = pavo::files::writeDrawing(*s.database());
    const size_t header = text.find("\"header\":{");
    ASSERT_NE(header, std::string::npos);
    text.insert(header + 10, "\"cepstyle\":\"Nowhere\",");
    pavo::files::LoadError error;
    EXPECT_FALSE(pavo::files::readDrawing(text, "bad", error));
    EXPECT_NE(error.message().find("cepstyle \"Nowhere\" is not a plot style of the drawing"), std::string::npos)
        << error.message();
}

TEST(ListResolution, AReferenceSaysWhatItsByBlockContentsTake) {
    ScriptedSession s({"LIST", "100.5,100", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    const OxDbObjectId block = addBlock(db, L"B", [](OxDbBlockTableRecord& b) {
        appendTo<OxDbLine>(b, new OxDbLine(OxGePoint3d(0, 0), OxGePoint3d(5, 0)),
                           [](OxDbLine& l) { l.setColor(OxCmColor::byBlock()); });
    });
    modelReference(db, block, 100, 100, [](OxDbBlockReference& r) {
        r.setColorIndex(1);
        r.setLineWeight(OxDb::kLnWt050);
    });
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("    ByBlock takes: red, Continuous, 0.50 mm, 0%, Normal, Global\n"),
              std::string::npos)
        << s.transcript();
}
