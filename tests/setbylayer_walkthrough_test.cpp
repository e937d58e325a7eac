// The README's SETBYLAYER walk-through (docs/examples/setbylayer.scr) on the
// sample drawing, run exactly as written: the transcript the README shows,
// and the objects as the README says they end up.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "DocExamples.h"
#include "OxDbSymbolTable.h"
#include "base/Utf8.h"
#include "editor/SystemVariables.h"
#include "setbylayer_TestSupport.h"

using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace setbylayertest;

namespace {

// The entities of block `name` ("*Model_Space", "DINING").
std::vector<OxDbObjectId> entitiesOf(OxDbDatabase* db, const wchar_t* name) {
    std::vector<OxDbObjectId> ids;
    OxDbBlockTable* table = nullptr;
    OxDbBlockTableRecord* block = nullptr;
    OxDbObjectId blockId;
    if (db->getBlockTable(table, OxDb::kForRead) != Ox::eOk) return ids;
    table->getIdAt(name, blockId);
    table->close();
    if (oxdbOpenObject(block, blockId, OxDb::kForRead) != Ox::eOk) return ids;
    OxDbBlockTableRecordIterator* made = nullptr;
    block->newIterator(made);
    block->close();
    const std::unique_ptr<OxDbBlockTableRecordIterator> it(made);
    for (; it && !it->done(); it->step()) {
        OxDbObjectId id;
        if (it->getEntityId(id) == Ox::eOk) ids.push_back(id);
    }
    return ids;
}

// Which of the six properties SETBYLAYER resets are not ByLayer: "c" colour,
// "t" linetype, "w" lineweight, "r" transparency, "s" plot style, "m"
// material.
std::string ownProperties(OxDbDatabase* db, const OxDbObjectId& id) {
    return readEntity<std::string>(id, [&](const OxDbEntity& e) {
        std::string own;
        OxDbObjectId style;
        if (!e.color().isByLayer()) own += 'c';
        if (e.linetypeId() != db->byLayerLinetype()) own += 't';
        if (e.lineWeight() != OxDb::kLnWtByLayer) own += 'w';
        if (!e.transparency().isByLayer()) own += 'r';
        if (e.getPlotStyleNameId(style) != OxDb::kPlotStyleNameByLayer) own += 's';
        if (e.materialId() != db->byLayerMaterial()) own += 'm';
        return own;
    });
}

// ownProperties of every entity of the blocks that hold the sample's
// SETBYLAYER objects, in drawing order, without the ones that follow
// their layer.
std::vector<std::string> whatDoesNotFollowLayers(OxDbDatabase* db) {
    std::vector<std::string> found;
    for (const wchar_t* block : {L"*Model_Space", L"DINING", L"CHAIR"})
        for (const OxDbObjectId& id : entitiesOf(db, block))
            if (std::string own = ownProperties(db, id); !own.empty())
                found.push_back(pavo::toUtf8(block) + ":" + readEntity<std::string>(id, [](const OxDbEntity& e) {
                                    return pavo::toUtf8(e.isA()->name());
                                }) + ":" + own);
    return found;
}

const std::vector<std::string> kScript =
    pavotest::scriptLines(pavotest::repositoryFile("docs/examples/setbylayer.scr"));

} // namespace

TEST(SetByLayerWalkthrough, TheSampleStartsWithTheObjectsTheReadmeNames) {
    ScriptedSession s({});
    EXPECT_EQ(whatDoesNotFollowLayers(s.database()),
              (std::vector<std::string>{
                  "*Model_Space:OxDbBlockReference:cw", "*Model_Space:OxDbBlockReference:c",
                  "*Model_Space:OxDbLine:cw", "*Model_Space:OxDbCircle:cr", "*Model_Space:OxDbPolyline:twsm",
                  "*Model_Space:OxDbText:c", "DINING:OxDbPolyline:cw", "DINING:OxDbBlockReference:cw",
                  "DINING:OxDbBlockReference:cw", "DINING:OxDbBlockReference:cw", "DINING:OxDbBlockReference:cw",
                  "CHAIR:OxDbPolyline:ctwr", "CHAIR:OxDbLine:cw"}));
}

TEST(SetByLayerWalkthrough, TheFirstRunKeepsLineweightsByBlockValuesAndBlocks) {
    const auto second = std::find(kScript.begin() + 1, kScript.end(), "SETBYLAYER");
    ASSERT_NE(second, kScript.end());
    ScriptedSession s(std::vector<std::string>(kScript.begin(), second), Drawing::Sample, dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    // The wall and the duct keep their lineweights; the lamp follows its
    // layer; the references, their blocks and the ByBlock text are as they were.
    EXPECT_EQ(whatDoesNotFollowLayers(s.database()),
              (std::vector<std::string>{
                  "*Model_Space:OxDbBlockReference:cw", "*Model_Space:OxDbBlockReference:c",
                  "*Model_Space:OxDbLine:w", "*Model_Space:OxDbPolyline:w", "*Model_Space:OxDbText:c",
                  "DINING:OxDbPolyline:cw", "DINING:OxDbBlockReference:cw", "DINING:OxDbBlockReference:cw",
                  "DINING:OxDbBlockReference:cw", "DINING:OxDbBlockReference:cw", "CHAIR:OxDbPolyline:ctwr",
                  "CHAIR:OxDbLine:cw"}));
}

TEST(SetByLayerWalkthrough, TheWholeScriptPrintsWhatTheReadmeShowsAndLeavesEverythingByLayer) {
    ScriptedSession s(kScript, Drawing::Sample, dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string shown =
        pavotest::textBlockStartingWith(pavotest::repositoryFile("README.md"), "Command: SETBYLAYER");
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(s.transcript().substr(0, shown.size()), shown);
    EXPECT_EQ(s.transcript().substr(shown.size()), "Command: \n");
    EXPECT_TRUE(whatDoesNotFollowLayers(s.database()).empty());
    EXPECT_EQ(pavo::toUtf8(s.session().variables().valueText(L"SETBYLAYERMODE")), "255");
}

TEST(SetByLayerWalkthrough, TheRunInTheCommandsPageIsWhatPavoPrints) {
    const std::string shown =
        pavotest::textBlockStartingWith(pavotest::repositoryFile("docs/setbylayer.md"), "Command: SETBYLAYER");
    ASSERT_FALSE(shown.empty());
    ScriptedSession s({"SETBYLAYER", "ALL", "", "", ""});
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(s.transcript().substr(0, shown.size()), shown);
}
