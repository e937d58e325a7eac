// The handle index keeps every cell findable while it grows.
#include <gtest/gtest.h>

#include "HandleIndex.h"

// A handle far beyond the others is kept aside; once the dense part has
// grown past it, it must still be found (a drawing file whose layers refer
// to a viewport far down the file lost that viewport this way).
TEST(HandleIndex, AFarHandleIsFoundAfterTheIndexGrowsPastIt) {
    pavo::db::HandleIndex index;
    std::vector<OxDbCell*> cells(20000);
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = reinterpret_cast<OxDbCell*>(0x1000 + 16 * i);
    index.insert(10000, cells[10000], 1); // far out while the index is nearly empty
    for (std::uint64_t h = 1; h < 10000; ++h)
        index.insert(h, cells[h], h + 1);
    for (std::uint64_t h = 10001; h < 20000; ++h)
        index.insert(h, cells[h], h + 1);
    for (std::uint64_t h = 1; h < 20000; ++h)
        ASSERT_EQ(index.find(h), cells[h]) << h;
    EXPECT_EQ(index.find(20000), nullptr);
}
