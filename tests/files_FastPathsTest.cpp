// The reader and writer take shortcuts for the common case (plain keys and
// strings read in place, reference checks by the class kept in the cell, a
// writer that grows its buffer a slice at a time). These tests hold the
// uncommon cases to the same results.
#include <string>

#include "DbBuild.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "files_TestSupport.h"

namespace pavo::files::test {
namespace {

const std::string kPlainLine = R"({"t":"line","h":"30","l":"18","s":[8000,200])";

LoadError refuse(const std::string& json) {
    LoadError error;
    EXPECT_FALSE(readDrawing(json, "bad.pvd", error));
    return error;
}

TEST(DrawingFastPaths, EscapedKeysAndStringsReadLikePlainOnes) {
    const std::string plain = writeDrawing(*loadOrFail(embeddedSampleDrawing()));
    // "t", "h", "l" and a handle, each spelled with escapes.
    const std::string escaped =
        sampleWith(kPlainLine, R"({"\u0074":"l\u0069ne","h":"\u0033\u0030","\u006C":"1\u0038","s":[8000,200])");
    auto db = loadOrFail(escaped);
    ASSERT_TRUE(db);
    EXPECT_EQ(writeDrawing(*db), plain);
}

TEST(DrawingFastPaths, EscapedKeysAreNamedUnescapedWhenRefused) {
    const LoadError error = refuse(sampleWith("\"name\":\"A-DOOR\"", "\"name\":\"A-DOOR\",\"\\u0063olour\":3"));
    EXPECT_EQ(error.pointer, "/layers/2/colour");
    EXPECT_NE(error.problem.find("unknown key \"colour\""), std::string::npos) << error.message();
}

TEST(DrawingFastPaths, ReferencesOfTheWrongClassAreRefusedBackAndForward) {
    // A linetype is read before the entities, a block after the first ones.
    const LoadError backward = refuse(sampleWith(kPlainLine, R"({"t":"line","h":"30","l":"C","s":[8000,200])"));
    EXPECT_EQ(backward.pointer, "/blocks/0/entities/2/l");
    EXPECT_NE(backward.problem.find("is OxDbLinetypeTableRecord, not a layer"), std::string::npos)
        << backward.message();
    const LoadError forward = refuse(sampleWith(kPlainLine, R"({"t":"line","h":"30","l":"2A","s":[8000,200])"));
    EXPECT_EQ(forward.pointer, "/blocks/0/entities/2/l");
    EXPECT_NE(forward.problem.find(", not a layer"), std::string::npos) << forward.message();
}

TEST(DrawingFastPaths, AWildHandleSeedIsKeptWithoutReservingForIt) {
    auto db = loadOrFail(sampleWith(sampleHandseedEntry(), "\"handseed\":\"FFFFFFFFFFFF\""));
    ASSERT_TRUE(db);
    EXPECT_EQ(db->handseed(), 0xFFFFFFFFFFFFu);
}

TEST(DrawingFastPaths, LongAndUnusualTextRoundTripsExactly) {
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    // Longer than the writer's slice, with every kind of escape and a
    // character beyond the basic plane.
    std::wstring text(3u << 20, L'x');
    text += L"\"quote\" \\back\\ \n\r\t \x01 \u00e9 \U0001F600";
    {
        OxDbBlockTableRecord* model = nullptr;
        ASSERT_EQ(oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForWrite), Ox::eOk);
        auto* note = new OxDbText(OxGePoint3d(1, 2), text.c_str());
        OxDbObjectId id;
        ASSERT_EQ(model->appendOxDbEntity(id, note), Ox::eOk);
        note->close();
        model->close();
    }
    const std::string saved = writeDrawing(*db);
    EXPECT_GT(saved.size(), 3u << 20);
    auto again = loadOrFail(saved);
    ASSERT_TRUE(again);
    EXPECT_EQ(writeDrawing(*again), saved);
    EXPECT_NE(saved.find(R"(\"quote\" \\back\\ \n\r\t \u0001 )"), std::string::npos);
}

TEST(DrawingFastPaths, AnEntityTakesOnlyALayerAsItsLayer) {
    auto db = loadOrFail(embeddedSampleDrawing());
    ASSERT_TRUE(db);
    OxDbLine line(OxGePoint3d(0, 0), OxGePoint3d(1, 1));
    EXPECT_EQ(line.setLayer(db->continuousLinetype()), Ox::eInvalidLayer);
    EXPECT_EQ(line.setLayer(db->layerZero()), Ox::eOk);
    EXPECT_EQ(line.layerId(), db->layerZero());
}

} // namespace
} // namespace pavo::files::test
