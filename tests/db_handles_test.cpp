// Handles never run out: past the last one, new objects take free handles
// from 1 up, never 0 and never one in use.
#include <gtest/gtest.h>

#include <set>

#include "OxDbEntity.h"
#include "RunPavo.h"
#include "SessionHarness.h"
#include "db_test_support.h"
#include "files/DrawingFile.h"
#include "files_TestSupport.h"

TEST(HandleSeed, ASeedAtTheTopOfTheRangeGoesOnWithFreeHandles) {
    auto db = pavo::files::test::loadOrFail(
        pavo::files::test::sampleWith(pavo::files::test::sampleHandseedEntry(), "\"handseed\":\"FFFFFFFFFFFFFFFF\""));
    ASSERT_TRUE(db);
    std::set<std::uint64_t> handles;
    for (int i = 0; i < 3; ++i) {
        const OxDbObjectId id = dbtest::append(db->modelSpaceId(), new OxDbLine(OxGePoint3d(), OxGePoint3d(1, 1)));
        ASSERT_FALSE(id.isNull());
        handles.insert(id.handle().value());
    }
    // The sample's handles run from 1 to one below its seed.
    const std::uint64_t seed = pavo::files::test::sampleHandseed();
    EXPECT_EQ(handles, (std::set<std::uint64_t>{0xFFFFFFFFFFFFFFFF, seed, seed + 1}));
    // Saved and read again, the drawing is the same.
    const std::string saved = pavo::files::writeDrawing(*db);
    auto again = pavo::files::test::loadOrFail(saved);
    ASSERT_TRUE(again);
    EXPECT_EQ(pavo::files::writeDrawing(*again), saved);
}

TEST(HandleSeed, CommandsDrawAfterASeedAtTheTop) {
    pavotest::TempFolder dir;
    dir.write("top.pvd", pavo::files::test::sampleWith(pavo::files::test::sampleHandseedEntry(), "\"handseed\":\"FFFFFFFFFFFFFFFF\""));
    pavotest::ScriptedSession s({"LINE", "0,0", "1,1", "", "LINE", "0,0", "2,2", "", "CIRCLE", "5,5", "1"},
                                pavotest::Drawing::None);
    ASSERT_TRUE(s.session().openDrawing(dir.path("top.pvd")));
    EXPECT_EQ(s.run(), 0) << s.transcript();
}
