// Elements at stable addresses, made in blocks: the cells of a drawing of a
// million objects take a few dozen blocks rather than a million
// allocations. The first block, all that a small drawing needs, comes from
// the heap; the others are mappings of 2 MB in huge pages where the system
// gives them, so that a large drawing's cells cost few page faults.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "base/MappedBuffer.h"

namespace pavo::db {

template <class T> class StablePool {
public:
    StablePool() = default;
    StablePool(const StablePool&) = delete;
    StablePool& operator=(const StablePool&) = delete;
    ~StablePool() {
        // In order of making, as a deque would.
        for (std::size_t i = 0; i < m_size; ++i)
            at(i).~T();
    }

    // A default-made element; its address never changes.
    T& emplace_back() {
        if (!m_first)
            m_first.reset(new Storage[kFirst]); // left unset: made on use
        else if (m_size == kFirst + m_blocks.size() * kBlock)
            m_blocks.emplace_back(kBlock * sizeof(Storage));
        T* made = new (slot(m_size)) T();
        ++m_size;
        return *made;
    }
    std::size_t size() const { return m_size; }

private:
    struct Storage {
        alignas(T) unsigned char bytes[sizeof(T)];
    };
    // Under the size the allocator maps on its own, so that the first block
    // comes from the heap.
    static constexpr std::size_t kFirst = (120 * 1024) / sizeof(T);
    static constexpr std::size_t kBlock = MappedBuffer::kHugePage / sizeof(T);

    void* slot(std::size_t i) {
        if (i < kFirst) return &m_first[i];
        i -= kFirst;
        return m_blocks[i / kBlock].data() + (i % kBlock) * sizeof(Storage);
    }
    T& at(std::size_t i) { return *std::launder(reinterpret_cast<T*>(slot(i))); }

    std::unique_ptr<Storage[]> m_first;
    std::vector<MappedBuffer> m_blocks;
    std::size_t m_size = 0;
};

} // namespace pavo::db
