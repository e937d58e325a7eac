// SETBYLAYER at the command line, through the real host and module: the
// settings mask, the two questions, blocks, counts and messages.
#include <gtest/gtest.h>

#include "OxDbDictionary.h"
#include "base/Utf8.h"
#include "editor/SystemVariables.h"
#include "setbylayer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace setbylayertest;

namespace {

std::string variable(ScriptedSession& s, const wchar_t* name) {
    return pavo::toUtf8(s.session().variables().valueText(name));
}

// A ByBlock-coloured line at (0,0) and a red line at (10,10) in model space.
struct TwoLines {
    OxDbObjectId byBlock, red;
    explicit TwoLines(OxDbDatabase* db) {
        byBlock = modelLine(db, 0, 0, [](OxDbLine& l) { l.setColor(OxCmColor::byBlock()); });
        red = modelLine(db, 10, 10, [](OxDbLine& l) { l.setColorIndex(1); });
    }
};

// Block BOX (a red line and a ByBlock line) with two references in model
// space; the first one red itself.
struct BoxReferences {
    OxDbObjectId block, redLine, byBlockLine, first, second;
    explicit BoxReferences(OxDbDatabase* db) {
        block = addBlock(db, L"BOX", [&](OxDbBlockTableRecord& b) {
            redLine = appendTo<OxDbLine>(b, new OxDbLine(OxGePoint3d(0, 0), OxGePoint3d(5, 0)),
                                         [](OxDbLine& l) { l.setColorIndex(1); });
            byBlockLine = appendTo<OxDbLine>(b, new OxDbLine(OxGePoint3d(0, 1), OxGePoint3d(5, 1)),
                                             [](OxDbLine& l) { l.setColor(OxCmColor::byBlock()); });
        });
        first = modelReference(db, block, 100, 100, [](OxDbBlockReference& r) { r.setColorIndex(1); });
        second = modelReference(db, block, 200, 100);
    }
};

} // namespace

TEST(SetByLayer, ByBlockColourChangesOnlyWhenBit32IsSet) {
    // Mask 33: colour and ByBlock to ByLayer.
    ScriptedSession with({"SETBYLAYERMODE", "33", "SETBYLAYER", "0.5,0.5", "", "", ""}, Drawing::New);
    const TwoLines lines(with.database());
    ASSERT_EQ(with.run(), 0) << with.transcript();
    EXPECT_TRUE(colorOf(lines.byBlock).isByLayer());
    EXPECT_NE(with.transcript().find("Change ByBlock to ByLayer? [Yes/No] <Yes>:"), std::string::npos);
    EXPECT_NE(with.transcript().find("Include blocks? [Yes/No] <No>: "), std::string::npos);
    EXPECT_NE(with.transcript().find("\n1 object(s) modified."), std::string::npos) << with.transcript();

    // Mask 1: the ByBlock line is left alone and reported as not needing change.
    ScriptedSession without({"SETBYLAYERMODE", "1", "SETBYLAYER", "0.5,0.5", "10.5,10.5", "", "", ""},
                            Drawing::New);
    const TwoLines again(without.database());
    ASSERT_EQ(without.run(), 0) << without.transcript();
    EXPECT_TRUE(colorOf(again.byBlock).isByBlock());
    EXPECT_TRUE(colorOf(again.red).isByLayer());
    EXPECT_NE(without.transcript().find("Change ByBlock to ByLayer? [Yes/No] <No>:"), std::string::npos);
    EXPECT_NE(without.transcript().find("\n1 object(s) modified, 1 object(s) did not need to change."),
              std::string::npos)
        << without.transcript();
}

TEST(SetByLayer, NothingToChangeSaysSoWhenEverythingIsByLayer) {
    ScriptedSession s({"SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    modelLine(s.database(), 0, 0);
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("\nAll object properties have been set to ByLayer. No objects modified."),
              std::string::npos)
        << s.transcript();
}

TEST(SetByLayer, EveryPropertyOfTheMaskIsResetUnderNamedPlotStyles) {
    // A new drawing uses named plot styles.
    ScriptedSession s({"SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    OxDbObjectId style;
    {
        OxDbDictionary* styles = nullptr;
        ASSERT_EQ(db->getPlotStyleNameDictionary(styles, OxDb::kForRead), Ox::eOk);
        styles->getAt(L"Normal", style);
        styles->close();
    }
    const OxDbObjectId line = modelLine(db, 0, 0, [&](OxDbLine& l) {
        l.setColor(OxCmColor::fromRgb(10, 20, 30));
        l.setLinetype(db->continuousLinetype());
        l.setLineWeight(OxDb::kLnWt050);
        l.setTransparency(OxCmTransparency(128));
        l.setPlotStyleName(OxDb::kPlotStyleNameById, style);
        l.setMaterial(db->globalMaterial());
    });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("Current active settings: Color Linetype Lineweight Transparency Material Plot style"),
              std::string::npos)
        << s.transcript();
    readEntity<int>(line, [&](const OxDbEntity& e) {
        EXPECT_TRUE(e.color().isByLayer());
        EXPECT_EQ(e.linetypeId(), db->byLayerLinetype());
        EXPECT_EQ(e.lineWeight(), OxDb::kLnWtByLayer);
        EXPECT_TRUE(e.transparency().isByLayer());
        OxDbObjectId id;
        EXPECT_EQ(e.getPlotStyleNameId(id), OxDb::kPlotStyleNameByLayer);
        EXPECT_EQ(e.materialId(), db->byLayerMaterial());
        return 0;
    });
    EXPECT_NE(s.transcript().find("\n1 object(s) modified."), std::string::npos);
}

TEST(SetByLayer, ColourDependentPlotStylesLeaveThePlotStyleAlone) {
    ScriptedSession s({"PSTYLEMODE", "1", "SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    const OxDbObjectId line =
        modelLine(s.database(), 0, 0, [](OxDbLine& l) { l.setPlotStyleName(OxDb::kPlotStyleNameIsDictDefault); });
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Current active settings: Color Linetype Lineweight Transparency Material\n"),
              std::string::npos)
        << s.transcript();
    OxDbObjectId id;
    EXPECT_EQ(readEntity<int>(line, [&](const OxDbEntity& e) { return int(e.getPlotStyleNameId(id)); }),
              OxDb::kPlotStyleNameIsDictDefault);
    EXPECT_NE(s.transcript().find("No objects modified."), std::string::npos);
}

TEST(SetByLayer, NoPropertiesSelectedForMaskZeroAndForPlotStyleAloneUnderColourStyles) {
    for (const char* mask : {"0", "16"}) {
        ScriptedSession s({"PSTYLEMODE", "1", "SETBYLAYERMODE", mask, "SETBYLAYER", "ALL", ""}, Drawing::New);
        const TwoLines lines(s.database());
        ASSERT_EQ(s.run(), 0) << s.transcript();
        EXPECT_NE(s.transcript().find("\nNo properties selected to change."), std::string::npos) << s.transcript();
        EXPECT_EQ(countOf(s.transcript(), "Change ByBlock"), 0);
        EXPECT_TRUE(colorOf(lines.red) == OxCmColor::fromIndex(1));
    }
    // Under named plot styles, mask 16 has work to do.
    ScriptedSession named({"PSTYLEMODE", "0", "SETBYLAYERMODE", "16", "SETBYLAYER", "ALL", "", "", ""},
                          Drawing::New);
    ASSERT_EQ(named.run(), 0);
    EXPECT_EQ(countOf(named.transcript(), "No properties selected"), 0) << named.transcript();
    EXPECT_NE(named.transcript().find("Current active settings: Plot style"), std::string::npos);
}

TEST(SetByLayer, ReferenceWithBlocksExcludedDidNotNeedToChangeEvenWhenRed) {
    // Mask 1: colour, blocks not included.
    ScriptedSession s({"SETBYLAYERMODE", "1", "SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    const BoxReferences box(s.database());
    modelLine(s.database(), 0, 0, [](OxDbLine& l) { l.setColorIndex(3); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("\n1 object(s) modified, 2 object(s) did not need to change."),
              std::string::npos)
        << s.transcript();
    EXPECT_TRUE(colorOf(box.first) == OxCmColor::fromIndex(1));
    EXPECT_TRUE(colorOf(box.redLine) == OxCmColor::fromIndex(1));
    EXPECT_TRUE(regenQueue(s.database()).empty());
}

TEST(SetByLayer, IncludedBlockCountsTheSelectedReferenceOnceAndRegeneratesEveryReference) {
    // Mask 65: colour and blocks; the second reference is picked alone.
    ScriptedSession s({"SETBYLAYERMODE", "65", "SETBYLAYER", "200.5,100", "", "", ""}, Drawing::New);
    const BoxReferences box(s.database());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("\n1 object(s) modified."), std::string::npos) << s.transcript();
    EXPECT_TRUE(colorOf(box.redLine).isByLayer());
    EXPECT_TRUE(colorOf(box.byBlockLine).isByBlock()); // bit 32 clear
    EXPECT_TRUE(colorOf(box.first) == OxCmColor::fromIndex(1)); // not selected
    const std::vector<OxDbObjectId>& queued = regenQueue(s.database());
    EXPECT_EQ(std::count(queued.begin(), queued.end(), box.first), 1);
    EXPECT_EQ(std::count(queued.begin(), queued.end(), box.second), 1);
}

TEST(SetByLayer, NestedReferencesAndAttributesAreWalkedAndDefinitionsRevisitedPerReference) {
    ScriptedSession s({"SETBYLAYERMODE", "97", "SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    OxDbObjectId innerLine, innerReference;
    const OxDbObjectId inner = addBlock(db, L"INNER", [&](OxDbBlockTableRecord& b) {
        innerLine = appendTo<OxDbLine>(b, new OxDbLine(OxGePoint3d(0, 0), OxGePoint3d(1, 0)),
                                       [](OxDbLine& l) { l.setColor(OxCmColor::byBlock()); });
    });
    const OxDbObjectId outer = addBlock(db, L"OUTER", [&](OxDbBlockTableRecord& b) {
        innerReference = appendTo<OxDbBlockReference>(b, new OxDbBlockReference(OxGePoint3d(0, 0), inner));
    });
    OxDbObjectId attribute;
    const OxDbObjectId reference = modelReference(db, outer, 50, 50);
    modelReference(db, outer, 60, 50);
    {
        OxDbBlockReference* r = nullptr;
        ASSERT_EQ(oxdbOpenObject(r, reference, OxDb::kForWrite), Ox::eOk);
        auto* a = new OxDbAttribute();
        a->setTag(L"NAME");
        a->setColorIndex(4);
        ASSERT_EQ(r->appendAttribute(attribute, a), Ox::eOk);
        a->close();
        r->close();
    }
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(colorOf(innerLine).isByLayer());
    EXPECT_TRUE(colorOf(attribute).isByLayer());
    // The first reference changed the shared definitions; the second found
    // nothing left to change there.
    EXPECT_NE(s.transcript().find("\n1 object(s) modified, 1 object(s) did not need to change."),
              std::string::npos)
        << s.transcript();
    // Each selected reference queued OUTER's two references and INNER's one.
    const std::vector<OxDbObjectId>& queued = regenQueue(db);
    EXPECT_EQ(queued.size(), 6u);
    EXPECT_EQ(std::count(queued.begin(), queued.end(), innerReference), 2);
}

TEST(SetByLayer, ABlockThatContainsItselfDoesNotSendTheWalkRoundForever) {
    ScriptedSession s({"SETBYLAYERMODE", "65", "SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    OxDbObjectId line;
    const OxDbObjectId loop = addBlock(db, L"LOOP", [&](OxDbBlockTableRecord& b) {
        line = appendTo<OxDbLine>(b, new OxDbLine(OxGePoint3d(0, 0), OxGePoint3d(1, 0)),
                                  [](OxDbLine& l) { l.setColorIndex(2); });
    });
    {
        OxDbBlockTableRecord* b = nullptr;
        ASSERT_EQ(oxdbOpenObject(b, loop, OxDb::kForWrite), Ox::eOk);
        // The database refuses the reference that would make LOOP contain itself.
        auto* self = new OxDbBlockReference(OxGePoint3d(0, 0), loop);
        OxDbObjectId selfId;
        EXPECT_EQ(b->appendOxDbEntity(selfId, self), Ox::eSelfReference);
        delete self;
        b->close();
    }
    modelReference(db, loop, 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(colorOf(line).isByLayer());
    EXPECT_NE(s.transcript().find("\n1 object(s) modified."), std::string::npos) << s.transcript();
}

TEST(SetByLayer, EnterAtBothQuestionsKeepsTheBitsAndAnswersChangeThem) {
    ScriptedSession s({"SETBYLAYERMODE", "97", "SETBYLAYER", "ALL", "", "", "", "SETBYLAYER", "ALL", "", "n", "YES"},
                      Drawing::New);
    modelLine(s.database(), 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("Change ByBlock to ByLayer? [Yes/No] <Yes>:\nInclude blocks? [Yes/No] <Yes>:"),
              std::string::npos)
        << s.transcript();
    // The second run cleared bit 32 and set bit 64 again: 97 - 32.
    EXPECT_EQ(variable(s, L"SETBYLAYERMODE"), "65");
}

TEST(SetByLayer, PreselectionIsCountedWithoutAPrompt) {
    ScriptedSession s({"0.5,0.5", "10.5,10.5", "SETBYLAYER", "", ""}, Drawing::New);
    const TwoLines lines(s.database());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "Select Objects"), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("\n2 found"), std::string::npos);
    EXPECT_TRUE(colorOf(lines.red).isByLayer());
    EXPECT_TRUE(colorOf(lines.byBlock).isByLayer()); // 255 includes bit 32
}

TEST(SetByLayer, CancelAtTheSelectionOrAQuestionChangesNothing) {
    ScriptedSession atSelection({"SETBYLAYER", "ALL", "^C"}, Drawing::New);
    const TwoLines lines(atSelection.database());
    ASSERT_EQ(atSelection.run(), 0);
    EXPECT_EQ(countOf(atSelection.transcript(), "Change ByBlock"), 0);
    EXPECT_TRUE(colorOf(lines.red) == OxCmColor::fromIndex(1));

    // "No" at the first question, then Escape: the variable keeps its value.
    ScriptedSession atQuestion({"SETBYLAYER", "ALL", "", "No", "^C"}, Drawing::New);
    const TwoLines again(atQuestion.database());
    ASSERT_EQ(atQuestion.run(), 0);
    EXPECT_TRUE(colorOf(again.red) == OxCmColor::fromIndex(1));
    EXPECT_EQ(variable(atQuestion, L"SETBYLAYERMODE"), "255");
    EXPECT_EQ(countOf(atQuestion.transcript(), "modified"), 0);
}

TEST(SetByLayer, ObjectsOnLockedLayersAreSkippedAndCountedAsUnchanged) {
    ScriptedSession s({"SETBYLAYER", "ALL", "", "", ""}, Drawing::New);
    layertest::addLayer(s.database(), L"Locked", [](OxDbLayerTableRecord& l) { l.setIsLocked(true); });
    const OxDbObjectId locked =
        modelLine(s.database(), 0, 0, [&](OxDbLine& l) { l.setLayer(layerId(s.database(), L"Locked")); l.setColorIndex(1); });
    modelLine(s.database(), 5, 5, [](OxDbLine& l) { l.setColorIndex(1); });
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(colorOf(locked) == OxCmColor::fromIndex(1));
    EXPECT_NE(s.transcript().find("\n1 object(s) modified, 1 object(s) did not need to change."),
              std::string::npos)
        << s.transcript();
}

TEST(SetByLayer, SettingsWithoutADisplaySayWhyAndTheSelectionGoesOn) {
    ScriptedSession s({"SETBYLAYER", "S", "ALL", "", "", ""}, Drawing::New);
    modelLine(s.database(), 0, 0, [](OxDbLine& l) { l.setColorIndex(1); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("Select Objects or [Setting(S)]:S\nDialogs are turned off (--no-dialogs). The "
                                  "dialog was not shown.\nSelect Objects or [Setting(S)]:ALL"),
              std::string::npos)
        << s.transcript();
    EXPECT_NE(s.transcript().find("\n1 object(s) modified."), std::string::npos);
}

TEST(SetByLayer, EachWayOfEndingReturnsItsStatus) {
    struct Case {
        std::vector<std::string> lines;
        int status;
    };
    const Case cases[] = {
        {{"SETBYLAYER", "ALL", "", "", ""}, STATUS_NORMAL},
        {{"SETBYLAYER", "^C"}, STATUS_FAIL},                          // selection cancelled
        {{"SETBYLAYER", ""}, STATUS_FAIL},                            // nothing selected
        {{"SETBYLAYER", "ALL", "", "^C"}, STATUS_NORMAL},             // a question cancelled
        {{"SETBYLAYERMODE", "0", "SETBYLAYER", "ALL", ""}, STATUS_NONE}, // no properties
    };
    for (const Case& c : cases) {
        std::vector<std::string> lines = c.lines;
        lines.push_back("^C"); // ends a script left inside the command
        ScriptedSession s(lines, Drawing::New);
        modelLine(s.database(), 0, 0, [](OxDbLine& l) { l.setColorIndex(1); });
        s.run();
        EXPECT_EQ(s.session().lastCommandStatus(), c.status) << s.transcript();
    }
}
