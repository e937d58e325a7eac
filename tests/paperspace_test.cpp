// Paper space in the host, through a real session on the sample drawing:
// LAYOUT, MSPACE, PSPACE, CVPORT and CTAB, MVIEW, LIST of a viewport, and
// what a pick reaches from the sheet and from inside a viewport.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "PavoGraphics.h"
#include "RunPavo.h"
#include "app/HostCommands.h"
#include "SessionHarness.h"
#include "oxedSelection.h"
#include "paperspace_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using pavotest::TempFolder;
using namespace papertest;

namespace {

std::vector<std::string> with(std::vector<std::string> lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

// The handles of the previous selection set, which SELECT leaves.
std::vector<OxDbObjectId> selected() {
    OxDbObjectIdArray ids;
    oxedGetCurrentSelectionSet(ids);
    return std::vector<OxDbObjectId>(ids.begin(), ids.end());
}

} // namespace

TEST(Layout, ListsMakesRenamesSetsAndDeletes) {
    ScriptedSession s({"LAYOUT", "?", "LAYOUT", "New", "Sheet 3", "LAYOUT", "New", "", "LAYOUT", "New", "sheet 3",
                       "LAYOUT", "Rename", "A3 Detail", "A3 Kitchen", "LAYOUT", "Rename", "Model", "LAYOUT", "Set",
                       "a3 kitchen", "LAYOUT", "Delete", "Layout1", "LAYOUT", "Delete", "Model", "LAYOUT", "Set",
                       "Nowhere", "LAYOUT", "?"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("[?/Delete/New/Rename/Set] <Set>: ?\nLayouts:\n  Model  (current)\n  A1 Plan\n  A3 Detail\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Enter name of new layout <Layout1>: Sheet 3\nLayout \"Sheet 3\" created."), std::string::npos)
        << t;
    EXPECT_NE(t.find("<Layout1>: \nLayout \"Layout1\" created."), std::string::npos) << t;
    EXPECT_NE(t.find("<Layout2>: sheet 3\nLayout \"Sheet 3\" already exists."), std::string::npos) << t;
    EXPECT_NE(t.find("Enter new layout name <A3 Detail>: A3 Kitchen\nLayout \"A3 Detail\" renamed to \"A3 Kitchen\"."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("The Model layout cannot be renamed."), std::string::npos) << t;
    EXPECT_NE(t.find("Layout \"Layout1\" deleted."), std::string::npos) << t;
    EXPECT_NE(t.find("The Model layout cannot be deleted."), std::string::npos) << t;
    EXPECT_NE(t.find("Layout \"Nowhere\" not found."), std::string::npos) << t;
    EXPECT_NE(t.find("Layouts:\n  Model\n  A1 Plan\n  A3 Kitchen  (current)\n  Sheet 3\n"), std::string::npos) << t;
    EXPECT_FALSE(s.database()->tilemode());
}

TEST(Layout, TheLastPaperLayoutStays) {
    ScriptedSession s({"LAYOUT", "Delete", "Layout1", "LAYOUT", "Rename", "Layout1", "bad|name"}, Drawing::New);
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Layout \"Layout1\" is the only paper-space layout and cannot be deleted."),
              std::string::npos)
        << s.transcript();
    EXPECT_NE(s.transcript().find("\"bad|name\" is not a valid layout name."), std::string::npos) << s.transcript();
}

// The sample's only override is A-WALL's in viewport 2 of "A3 Detail".
TEST(Layout, DeletingALayoutDropsTheOverridesOfItsViewports) {
    ScriptedSession s({"LAYOUT", "Delete", "A3 Detail"});
    OxDbDatabase* db = s.database();
    ASSERT_TRUE(overridesOf(db, L"A-WALL", viewportOf(db, L"A3 Detail", 2)).hasColor);
    EXPECT_EQ(s.run(), 0) << s.transcript();
    EXPECT_FALSE(layertest::readLayer<bool>(db, L"A-WALL",
                                            [](const OxDbLayerTableRecord& l) { return l.hasAnyOverrides(); }));
}

// Each layout keeps the viewport the user works in: the sample opens "A1
// Plan" inside its viewport 2 and "A3 Detail" inside its viewport 2.
TEST(PaperSpace, EachLayoutKeepsItsCurrentViewport) {
    ScriptedSession s({"TILEMODE", "0", "CVPORT", "", "PSPACE", "CVPORT", "", "PSPACE", "MSPACE", "CVPORT", "3",
                       "PSPACE", "MSPACE", "CVPORT", "", "CVPORT", "9", "", "CTAB", "A3 Detail", "CVPORT", "",
                       "CTAB", "A1 Plan", "CVPORT", "", "CTAB", "Model", "CVPORT", "3", "", "MSPACE", "PSPACE"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: CVPORT\nEnter new value for CVPORT <2>: \nCommand: PSPACE"), std::string::npos)
        << "the sample opens inside viewport 2\n"
        << t;
    EXPECT_NE(t.find("Command: PSPACE\nWorking on the sheet (paper space).\nCommand: CVPORT\nEnter new value for "
                     "CVPORT <1>: \nCommand: PSPACE\nAlready in paper space."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Command: MSPACE\nWorking in viewport 2."), std::string::npos) << t;
    EXPECT_NE(t.find("Command: MSPACE\nWorking in viewport 3.\nCommand: CVPORT\nEnter new value for CVPORT <3>"),
              std::string::npos)
        << "MSPACE goes back to the last viewport\n"
        << t;
    EXPECT_NE(t.find("There is no viewport 9 in the current layout."), std::string::npos) << t;
    EXPECT_NE(t.find("A3 Detail\nCommand: CVPORT\nEnter new value for CVPORT <2>"), std::string::npos) << t;
    EXPECT_NE(t.find("A1 Plan\nCommand: CVPORT\nEnter new value for CVPORT <3>"), std::string::npos) << t;
    EXPECT_NE(t.find("Model space has only viewport 2."), std::string::npos) << t;
    EXPECT_NE(t.find("Command: MSPACE\nAlready in model space."), std::string::npos) << t;
    EXPECT_NE(t.find("Command: PSPACE\nModel space has no sheet"), std::string::npos) << t;
}

TEST(PaperSpace, SwitchingViewportsIsSavedButIsNoChange) {
    TempFolder dir;
    const std::string file = dir.path("spaces.pvd");
    {
        ScriptedSession s({"TILEMODE", "0", "SAVEAS", file, "CVPORT", "3", "PSPACE", "MSPACE"});
        EXPECT_EQ(s.run(), 0);
        EXPECT_FALSE(s.database()->isModified()) << s.transcript();
        s.session().saveDrawing(file);
    }
    ScriptedSession s({"OPEN", file, "CVPORT", ""});
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Enter new value for CVPORT <3>"), std::string::npos) << s.transcript();
}

TEST(PaperSpace, AViewportThatIsOffCannotBeWorkedIn) {
    ScriptedSession s({"TILEMODE", "0", "CVPORT", "3", "", "PSPACE", "MSPACE"});
    OxDbDatabase* db = s.database();
    OxDbViewport* viewport = nullptr;
    ASSERT_EQ(oxdbOpenObject(viewport, viewportOf(db, L"A1 Plan", 3), OxDb::kForWrite), Ox::eOk);
    viewport->setOn(false);
    viewport->close();
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Viewport 3 is off."), std::string::npos) << s.transcript();
    EXPECT_NE(s.transcript().find("Command: MSPACE\nWorking in viewport 2."), std::string::npos) << s.transcript();
}

// From the sheet a viewport is picked by its frame; inside a viewport a
// point is a model point that reaches only what the viewport shows, as far
// as PICKBOX sheet units.
TEST(PaperSpace, WhatAPointPicks) {
    const auto pick = [](const std::vector<std::string>& setup, const std::string& point) {
        ScriptedSession s(with(setup, {"SELECT", point, ""}));
        EXPECT_EQ(s.run(), 0) << s.transcript();
        std::vector<std::string> layers;
        for (const OxDbObjectId& id : selected()) {
            OxDbEntity* e = nullptr;
            if (oxdbOpenObject(e, id, OxDb::kForRead) != Ox::eOk) continue;
            layers.push_back(OxDbViewport::cast(e) ? "viewport " + std::to_string(OxDbViewport::cast(e)->number())
                                                   : e->layer().utf8());
            e->close();
        }
        return layers;
    };
    const std::vector<std::string> sheet = {"TILEMODE", "0", "PSPACE"};
    // Viewport 3 of "A1 Plan": centre 740,420, 160 x 120, so its left edge is x 660.
    EXPECT_EQ(pick(sheet, "662,420"), std::vector<std::string>{"viewport 3"});
    EXPECT_TRUE(pick(sheet, "740,420").empty()) << "the inside of a viewport is not its frame";
    EXPECT_TRUE(pick(sheet, "0.5,300").empty()) << "the sheet itself is never picked";
    EXPECT_EQ(pick(sheet, "651,10"), std::vector<std::string>{"0"}) << "the title block, a paper-space object";

    // The light at 4000,9000 (radius 200), seen by both viewports: 1 sheet
    // unit is 38.1 model units in viewport 2 and 33.3 in viewport 3, so a
    // pick 110 units off its circle reaches it in viewport 2 only.
    const std::vector<std::string> two = {"TILEMODE", "0", "CVPORT", "2"};
    const std::vector<std::string> three = {"TILEMODE", "0", "CVPORT", "3"};
    EXPECT_EQ(pick(two, "4000,9310"), std::vector<std::string>{"E-LITE"});
    EXPECT_TRUE(pick(three, "4000,9310").empty());
    EXPECT_EQ(pick(three, "4000,9290"), std::vector<std::string>{"E-LITE"});
    // Frozen in viewport 3 only: it can no longer be picked there.
    const std::vector<std::string> freezeLightsInThree = {"TILEMODE", "0", "CVPORT", "3", "VPLAYER", "Freeze",
                                                          "E-LITE",   "",  "",       "CVPORT", "2"};
    EXPECT_EQ(pick(freezeLightsInThree, "4000,9200"), std::vector<std::string>{"E-LITE"});
    EXPECT_TRUE(pick(with(freezeLightsInThree, {"CVPORT", "3"}), "4000,9200").empty());
    // The light at 14000,9000 lies outside viewport 3's view.
    EXPECT_EQ(pick(two, "14000,8800"), std::vector<std::string>{"E-LITE"});
    EXPECT_TRUE(pick(three, "14000,8800").empty());
}

TEST(PaperSpace, ViewportTypeFilter) {
    ox_name set = {0, 0};
    std::vector<OxDbObjectId> found;
    pavo::app::HostCommandFactory pickViewports(L"PICKVP", L"", [&] {
        resbuf* filter = oxutBuildList(RTDXF0, L"VIEWPORT", 0);
        const int status = oxedSSGet(nullptr, nullptr, nullptr, filter, set);
        oxutRelRb(filter);
        OxDbObjectIdArray ids;
        oxedGetCurrentSelectionSet(ids);
        found.assign(ids.begin(), ids.end());
        if (status == STATUS_NORMAL) oxedSSFree(set);
        return status;
    });
    ScriptedSession s({"TILEMODE", "0", "PSPACE", "PICKVP", "ALL", ""});
    s.session().commands().addCommand(&pickViewports, 0);
    EXPECT_EQ(s.run(), 0) << s.transcript();
    s.session().commands().removeCommand(L"PICKVP");
    ASSERT_EQ(found.size(), 2u) << s.transcript();
    EXPECT_EQ(found[0], viewportOf(s.database(), L"A1 Plan", 2));
    EXPECT_EQ(found[1], viewportOf(s.database(), L"A1 Plan", 3));
}

TEST(Mview, TwoCornersOrTheSheetShowingTheWholeModel) {
    ScriptedSession s({"MVIEW", "CTAB", "A1 Plan", "MVIEW", "10,10", "210,160", "MVIEW", "", "MVIEW", "5,5", "5,90",
                       "CVPORT", ""});
    OxDbDatabase* db = s.database();
    for (const wchar_t* layer : {L"A-ANNO-DIMS", L"A-ANNO-TEXT"}) {
        OxDbLayerTableRecord* record = nullptr;
        ASSERT_EQ(oxdbOpenObject(record, layerId(db, layer), OxDb::kForWrite), Ox::eOk);
        record->setVPDFLT(true);
        record->close();
    }
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: MVIEW\nViewports are made on a layout's sheet"), std::string::npos) << t;
    EXPECT_NE(t.find("Specify corner of viewport or [Fit] <Fit>: 10,10\nSpecify opposite corner: 210,160\n"
                     "Viewport 4 made; 2 layer(s) frozen in new viewports start frozen in it."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("<Fit>: \nViewport 5 made"), std::string::npos) << t;
    EXPECT_NE(t.find("A viewport needs a width and a height"), std::string::npos) << t;
    EXPECT_NE(t.find("Enter new value for CVPORT <1>"), std::string::npos) << "MVIEW works on the sheet\n" << t;

    OxDbViewport* four = nullptr;
    ASSERT_EQ(oxdbOpenObject(four, viewportOf(db, L"A1 Plan", 4), OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(four->centerPoint(), OxGePoint3d(110, 85));
    EXPECT_EQ(four->width(), 200);
    EXPECT_EQ(four->height(), 150);
    // The model runs from -5000,-5000 to 25000,17000 (the site boundary):
    // 30000 wide, which at 200 x 150 needs a view 22500 high.
    EXPECT_EQ(four->viewCenter(), OxGePoint2d(10000, 6000));
    EXPECT_DOUBLE_EQ(four->viewHeight(), 22500);
    four->close();
    EXPECT_EQ(frozenIn(viewportOf(db, L"A1 Plan", 4)), (std::vector<std::string>{"A-ANNO-TEXT", "A-ANNO-DIMS"}));
    OxDbViewport* five = nullptr;
    ASSERT_EQ(oxdbOpenObject(five, viewportOf(db, L"A1 Plan", 5), OxDb::kForRead), Ox::eOk);
    EXPECT_EQ(five->width(), 841);
    EXPECT_EQ(five->height(), 594);
    five->close();
}

TEST(ListCommand, AViewportShowsItsLayoutFrozenLayersAndOverrides) {
    // Viewport 2 of "A3 Detail": centre 200,170, 360 x 240, left edge x 20.
    ScriptedSession s({"CTAB", "A3 Detail", "PSPACE", "LIST", "20,170", ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("    Number:        2\n    Layout:        A3 Detail\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Size:          width 360.0000  height 240.0000\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    View:          center X=14000.0000  Y=3000.0000  height 6000.0000\n"), std::string::npos)
        << t;
    EXPECT_NE(t.find("    Frozen layers: E-POWR, M-HVAC\n"), std::string::npos) << t;
    EXPECT_NE(t.find("    Override:      A-WALL: color red, lineweight 0.70 mm\n"), std::string::npos) << t;
}

TEST(ActiveView, ModelOrPaperSpace) {
    ScriptedSession s({});
    OxDbDatabase* db = s.database();
    ASSERT_NE(GetActiveGraphics(), nullptr);
    PavoGsView* view = GetActiveGraphics()->activeGsView();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->viewingSpace(), PavoGsView::kModelSpace);
    db->setTilemode(false);
    EXPECT_EQ(view->viewingSpace(), PavoGsView::kModelSpace) << "inside viewport 2";
    EXPECT_EQ(oxedPspace(), STATUS_NORMAL);
    EXPECT_EQ(view->viewingSpace(), PavoGsView::kPaperSpace);
}
