// Values kept in large blocks that never move: appending copies nothing
// that is there already (a growing array copies it all each time it grows,
// touching fresh memory twice), and values appended together stay together.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <vector>

#include "render/LargeBuffer.h"

namespace pavo::render {

template <typename T>
class BlockStore {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // A copy of `count` values, in one piece; null when there is no memory.
    const T* append(const T* values, std::size_t count) {
        if (m_blocks.empty() || m_blocks.back().capacity - m_blocks.back().used < count) {
            Block block;
            block.capacity = std::max(kBlockBytes / sizeof(T), count);
            block.memory = LargeBuffer(block.capacity * sizeof(T));
            if (!block.memory.data()) return nullptr;
            m_blocks.push_back(std::move(block));
        }
        Block& block = m_blocks.back();
        T* at = reinterpret_cast<T*>(block.memory.data()) + block.used;
        if (count > 0) std::memcpy(static_cast<void*>(at), values, count * sizeof(T));
        block.used += count;
        m_size += count;
        return at;
    }

    std::size_t size() const { return m_size; }

    // Calls `f` on each value, in the order they were appended.
    template <typename F>
    void forEach(F&& f) const {
        for (const Block& block : m_blocks) {
            const T* values = reinterpret_cast<const T*>(block.memory.data());
            for (std::size_t i = 0; i < block.used; ++i) f(values[i]);
        }
    }

private:
    static constexpr std::size_t kBlockBytes = std::size_t(8) << 20;
    struct Block {
        LargeBuffer memory;
        std::size_t used = 0, capacity = 0;
    };
    std::vector<Block> m_blocks;
    std::size_t m_size = 0;
};

} // namespace pavo::render
