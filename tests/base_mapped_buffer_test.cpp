// Memory of its own mappings: the buffer that holds a drawing's text and
// the pool that holds its cells.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "StablePool.h"
#include "base/MappedBuffer.h"

TEST(MappedBuffer, ReadsZerosPastWhatIsWrittenAndKeepsItWhenGrown) {
    pavo::MappedBuffer buffer(100);
    ASSERT_NE(buffer.data(), nullptr);
    EXPECT_GE(buffer.capacity(), 100u);
    std::memcpy(buffer.data(), "drawing", 7);
    for (std::size_t i = 7; i < buffer.capacity(); ++i)
        ASSERT_EQ(buffer.data()[i], 0) << i; // the parser's padding
    // Past a huge page: a mapping of its own, the content copied.
    buffer.grow(5u << 20, 7);
    EXPECT_GE(buffer.capacity(), 5u << 20);
    EXPECT_EQ(std::string(buffer.data(), 8), std::string("drawing\0", 8));
    buffer.data()[(5u << 20) - 1] = 'x';
    pavo::MappedBuffer moved(std::move(buffer));
    EXPECT_EQ(buffer.data(), nullptr);
    EXPECT_EQ(buffer.capacity(), 0u);
    EXPECT_EQ(moved.data()[(5u << 20) - 1], 'x');
    buffer = std::move(moved);
    EXPECT_EQ(std::string(buffer.data(), 7), "drawing");
}

namespace {

struct Counted {
    static std::vector<int>& destroyed() {
        static std::vector<int> order;
        return order;
    }
    int value = -1;
    char room[52] = {};
    ~Counted() { destroyed().push_back(value); }
};

} // namespace

TEST(StablePool, ElementsKeepTheirPlacesAcrossBlocksAndGoInOrderOfMaking) {
    Counted::destroyed().clear();
    constexpr int kCount = 100000; // the heap's block and several mapped ones
    {
        pavo::db::StablePool<Counted> pool;
        std::vector<Counted*> places;
        for (int i = 0; i < kCount; ++i) {
            Counted& c = pool.emplace_back();
            EXPECT_EQ(c.value, -1);
            c.value = i;
            places.push_back(&c);
        }
        EXPECT_EQ(pool.size(), std::size_t(kCount));
        for (int i = 0; i < kCount; ++i)
            ASSERT_EQ(places[static_cast<std::size_t>(i)]->value, i);
    }
    ASSERT_EQ(Counted::destroyed().size(), std::size_t(kCount));
    for (int i = 0; i < kCount; ++i)
        ASSERT_EQ(Counted::destroyed()[static_cast<std::size_t>(i)], i);
}
