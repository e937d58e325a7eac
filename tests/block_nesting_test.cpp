// A block never inserts itself: a drawing where one does is refused with the
// chain of blocks, INSERT and the database refuse to close such a loop, and
// deeply nested blocks are picked without recursion.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "files_TestSupport.h"

using pavo::files::LoadError;
using pavo::files::test::sampleWith;

namespace {

// The sample's blocks: *Model_Space 26 (entity 4 inserts DOOR), DOOR 29
// (blocks/3), TITLE 2A (blocks/4), *Paper_Space 27 (blocks/1, entity 3
// inserts TITLE).
const std::string kDoorLine = R"({"t":"line","h":"5E","s":[0,0],"e":[0,900]})";
const std::string kTitleFrame = R"({"t":"polyline","h":"60","v":[[0,0],[180,0],[180,60],[0,60]],"closed":true})";
const std::string kLastOfTitle = "\"tag\":\"SHEET\",\"prompt\":\"Sheet number\"}\n ]}";
const std::string kTitleReference = R"({"t":"insert","h":"68")";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string hex(int value) {
    char text[16];
    std::snprintf(text, sizeof text, "%X", value);
    return text;
}

std::string insertOf(const char* handle, const char* block) {
    return std::string(R"({"t":"insert","h":")") + handle + R"(","b":")" + block + R"(","p":[0,0]})";
}

LoadError refusal(const std::string& json) {
    LoadError error;
    EXPECT_FALSE(pavo::files::readDrawing(json, "loop.pvd", error));
    return error;
}

} // namespace

TEST(BlockNesting, DrawingsWhereABlockInsertsItselfAreRefusedWithTheChain) {
    struct Case {
        std::string json;
        const char* pointer;
        const char* problem;
        const char* reference; // the text of the reference that starts the loop
    };
    const Case cases[] = {
        {sampleWith(kDoorLine, kDoorLine + "," + insertOf("F0", "29")), "/blocks/3/entities/1/b",
         "block \"DOOR\" inserts itself: DOOR -> DOOR", R"("h":"F0")"},
        {replaced(sampleWith(kTitleFrame, kTitleFrame + "," + insertOf("F1", "29")), kDoorLine,
                  kDoorLine + "," + insertOf("F0", "2A")),
         "/blocks/3/entities/1/b", "block \"DOOR\" inserts itself: DOOR -> TITLE -> DOOR", R"("h":"F0")"},
        {sampleWith(kDoorLine, kDoorLine + "," + insertOf("F0", "26")), "/blocks/0/entities/4/b",
         "block \"*Model_Space\" inserts itself: *Model_Space -> DOOR -> *Model_Space", R"("h":"32")"},
        {sampleWith(kTitleReference, insertOf("F0", "27") + "," + kTitleReference), "/blocks/1/entities/3/b",
         "block \"*Paper_Space\" inserts itself: *Paper_Space -> *Paper_Space", R"("h":"F0")"},
    };
    for (const Case& c : cases) {
        const LoadError error = refusal(c.json);
        EXPECT_EQ(error.pointer, c.pointer);
        EXPECT_EQ(error.problem, c.problem);
        const auto at = c.json.begin() + static_cast<std::ptrdiff_t>(c.json.find(c.reference));
        EXPECT_EQ(error.line, static_cast<std::size_t>(std::count(c.json.begin(), at, '\n') + 1)) << error.message();
    }
}

TEST(BlockNesting, InsertRefusesABlockThatInsertsTheCurrentSpace) {
    pavotest::TempFolder dir;
    // TITLE inserts model space: no loop until TITLE goes into model space.
    dir.write("title.pvd", sampleWith(kTitleFrame, kTitleFrame + "," + insertOf("F1", "26")));
    pavotest::ScriptedSession s({"INSERT", "TITLE", "DOOR", "0,0", "", "", "SELECT", "0,0", ""},
                                pavotest::Drawing::None);
    ASSERT_TRUE(s.session().openDrawing(dir.path("title.pvd")));
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter block name: TITLE\nBlock \"TITLE\" cannot be inserted here: a block would insert itself "
                     "(*Model_Space -> TITLE -> *Model_Space).\nEnter block name: DOOR\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("1 found"), std::string::npos) << t;
}

TEST(BlockNesting, TheDatabaseRefusesAReferenceThatClosesALoop) {
    OxDbDatabase db(true);
    OxDbBlockTable* table = nullptr;
    ASSERT_EQ(db.getBlockTable(table, OxDb::kForWrite), Ox::eOk);
    auto* outer = new OxDbBlockTableRecord();
    outer->setName(L"OUTER");
    auto* inner = new OxDbBlockTableRecord();
    inner->setName(L"INNER");
    OxDbObjectId outerId, innerId;
    ASSERT_EQ(table->add(outerId, outer), Ox::eOk);
    ASSERT_EQ(table->add(innerId, inner), Ox::eOk);
    table->close();

    // INNER in OUTER is fine; OUTER in INNER, or INNER in itself, is not.
    auto* down = new OxDbBlockReference(OxGePoint3d(), innerId);
    OxDbObjectId downId;
    EXPECT_EQ(outer->appendOxDbEntity(downId, down), Ox::eOk);
    down->close();
    for (const OxDbObjectId& target : {outerId, innerId}) {
        auto* up = new OxDbBlockReference(OxGePoint3d(), target);
        OxDbObjectId upId;
        EXPECT_EQ(inner->appendOxDbEntity(upId, up), Ox::eSelfReference);
        EXPECT_TRUE(upId.isNull());
        delete up;
    }
    // Nor may an existing reference be pointed at a block that closes one.
    auto* other = new OxDbBlockTableRecord();
    other->setName(L"OTHER");
    ASSERT_EQ(db.getBlockTable(table, OxDb::kForWrite), Ox::eOk);
    OxDbObjectId otherId;
    ASSERT_EQ(table->add(otherId, other), Ox::eOk);
    table->close();
    other->close();
    auto* sideways = new OxDbBlockReference(OxGePoint3d(), otherId);
    OxDbObjectId sidewaysId;
    ASSERT_EQ(inner->appendOxDbEntity(sidewaysId, sideways), Ox::eOk);
    EXPECT_EQ(sideways->setBlockTableRecord(outerId), Ox::eSelfReference);
    EXPECT_EQ(sideways->blockTableRecord(), otherId);
    sideways->close();
    inner->close();
    outer->close();
}

// Each block inserts the next one twice: a walk that measured every
// reference anew would take 2^depth steps, and a recursive one would need a
// stack as deep as the nesting.
TEST(BlockNesting, DeeplyNestedBlocksArePickedAndListed) {
    constexpr int kDepth = 20000;
    const auto handle = [](int block, int item) { return hex(0x10000 + 3 * block + item); };
    std::string blocks;
    for (int i = 0; i < kDepth; ++i) {
        blocks += R"(,{"h":")" + handle(i, 0) + R"(","name":"B)" + std::to_string(i) + R"(","entities":[)";
        if (i + 1 < kDepth)
            blocks += R"({"t":"insert","h":")" + handle(i, 1) + R"(","b":")" + handle(i + 1, 0) +
                      R"(","p":[1,0]},{"t":"insert","h":")" + handle(i, 2) + R"(","b":")" + handle(i + 1, 0) +
                      R"(","p":[0,1]})";
        else
            blocks += R"({"t":"line","h":")" + handle(i, 1) + R"(","s":[0,0],"e":[1,1]})";
        blocks += "]}";
    }
    const std::string json = replaced(
        sampleWith(kLastOfTitle, kLastOfTitle + blocks), R"({"t":"insert","h":"32","l":"19","b":"29","p":[3000,0]})",
        R"({"t":"insert","h":"32","l":"19","b":")" + handle(0, 0) + R"(","p":[-90000,0]})");
    pavotest::TempFolder dir;
    dir.write("deep.pvd", json);
    pavotest::ScriptedSession s({"SELECT", "-90000,0", "", "LIST", "P", ""}, pavotest::Drawing::None);
    ASSERT_TRUE(s.session().openDrawing(dir.path("deep.pvd")));
    EXPECT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("1 found"), std::string::npos) << s.transcript().substr(0, 2000);
    EXPECT_NE(s.transcript().find("Block:         B0"), std::string::npos) << s.transcript().substr(0, 4000);
}
