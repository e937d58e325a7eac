// LIST: what a user sees of the selected objects.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "PavoServices.h"
#include "SessionHarness.h"
#include "editor/HostServices.h"
#include "editor/SystemVariables.h"
#include "selection_TestSupport.h"

using pavotest::ScriptedSession;

TEST(ListCommand, ShowsPropertiesAndGeometry) {
    ScriptedSession s({"LIST", "0,0", "50,5", ""}, pavotest::Drawing::New);
    OxDbDatabase* db = s.database();
    auto* line = new OxDbLine({0, 0, 0}, {3, 4, 0});
    line->setColorIndex(1);
    line->setLineWeight(OxDb::kLnWt025);
    line->setTransparency(OxCmTransparency(128));
    const OxDbObjectId lineId = pavotest::addToModel(db, line, pavotest::addLayer(db, L"WALLS"));
    pavotest::addToModel(db, new OxDbCircle({50, 0, 0}, 5));
    const int screens = pavo::editor::textScreenRequests();
    EXPECT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(pavo::editor::textScreenRequests(), screens + 1);
    EXPECT_EQ(pavo::editor::consoleGuardsHeld(), 0);
    const std::string t = s.transcript();
    const std::wstring wideHandle = pavotest::handleOf(lineId);
    const std::string handle(wideHandle.begin(), wideHandle.end());
    EXPECT_NE(t.find("LINE  Layer: \"WALLS\"  Space: Model space  Handle = " + handle +
                     "\n"
                     "    Color:         red\n"
                     "    Linetype:      BYLAYER (Continuous)\n"
                     "    Lineweight:    0.25 mm\n"
                     "    Transparency:  50%\n"
                     "    Plot style:    ByLayer (Normal)\n"
                     "    Material:      ByLayer (Global)\n"
                     "    From point:    X=0.0000  Y=0.0000  Z=0.0000\n"
                     "    To point:      X=3.0000  Y=4.0000  Z=0.0000\n"
                     "    Length:        5.0000\n"
                     "CIRCLE  Layer: \"0\""),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("    Color:         BYLAYER (white)\n"), std::string::npos);
    EXPECT_NE(t.find("    Radius:        5.0000"), std::string::npos);
}

TEST(ListCommand, ShowsBlockAttributesAndViewports) {
    ScriptedSession s({"TILEMODE", "0", "PSPACE", "LIST", "ALL", ""});
    EXPECT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("    Block:         TITLE\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Attribute:     SHEET = \"A-101\""), std::string::npos) << t;
    EXPECT_NE(t.find("VIEWPORT  Layer: \"VIEWPORTS\"  Space: Paper space"), std::string::npos) << t;
    EXPECT_NE(t.find("    Frozen layers: A-FURN\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Layout:        A1 Plan\n"), std::string::npos) << t;
    EXPECT_EQ(t.find("    Number:        1\n"), std::string::npos) << "the sheet's own viewport is not an object";
}

// Coordinates and angles at the edge of what a drawing holds: a length past
// the largest number is infinite, never "not a number", and a rotation is
// the one given.
TEST(ListCommand, ExtremeValuesAreShownAsTheyAre) {
    ScriptedSession s({"LINE", "1e308,1e308", "-1e308,-1e308", "", "INSERT", "DOOR", "0,0", "1", "-1e308", "LIST",
                       "ALL", ""});
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string t = s.transcript();
    EXPECT_NE(t.find("    Length:        inf\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Rotation:      -1e+308\n"), std::string::npos) << t;
    EXPECT_EQ(t.find("nan"), std::string::npos) << t;
}

TEST(ListCommand, NothingSelectedListsNothing) {
    ScriptedSession s({"LIST", "", "LIST", "^C"}, pavotest::Drawing::New);
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(s.transcript(), "Command: LIST\nSelect objects: \nCommand: LIST\nSelect objects: *Cancel*\nCommand: \n");
}

TEST(LineWeightText, MillimetresOrInchesByLwunits) {
    ScriptedSession s({});
    OxString text;
    EXPECT_EQ(PavoServicesManager::lineWeightToString(OxDb::kLnWtByLayer, text), Ox::eOk);
    EXPECT_EQ(text, L"ByLayer");
    PavoServicesManager::lineWeightToString(OxDb::kLnWtByBlock, text);
    EXPECT_EQ(text, L"ByBlock");
    PavoServicesManager::lineWeightToString(OxDb::kLnWtByLwDefault, text);
    EXPECT_EQ(text, L"Default");
    PavoServicesManager::lineWeightToString(OxDb::kLnWt005, text);
    EXPECT_EQ(text, L"0.05 mm");
    PavoServicesManager::lineWeightToString(OxDb::kLnWt211, text);
    EXPECT_EQ(text, L"2.11 mm");
    s.session().variables().setFromText(L"LWUNITS", L"0");
    PavoServicesManager::lineWeightToString(OxDb::kLnWt025, text);
    EXPECT_EQ(text, L"0.010\"");
    PavoServicesManager::lineWeightToString(OxDb::kLnWt000, text);
    EXPECT_EQ(text, L"0.000\"");
    PavoServicesManager::lineWeightToString(OxDb::kLnWt158, text);
    EXPECT_EQ(text, L"0.062\"");
    EXPECT_EQ(PavoServicesManager::lineWeightToString(static_cast<OxDb::LineWeight>(17), text), Ox::eInvalidInput);
}
