// Elements at stable addresses, made in blocks of about 120 KB: the cells
// of a drawing of a million objects take a few hundred allocations rather
// than a hundred thousand (a deque's blocks hold nine).
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

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
        if (m_size == m_blocks.size() * kBlock) m_blocks.emplace_back(new Storage[kBlock]); // left unset: made on use
        T* made = new (&m_blocks[m_size / kBlock][m_size % kBlock]) T();
        ++m_size;
        return *made;
    }
    std::size_t size() const { return m_size; }

private:
    // Under the size the allocator maps on its own, so that blocks come from
    // the heap.
    static constexpr std::size_t kBlock = (120 * 1024) / sizeof(T);
    struct Storage {
        alignas(T) unsigned char bytes[sizeof(T)];
    };
    T& at(std::size_t i) { return *std::launder(reinterpret_cast<T*>(&m_blocks[i / kBlock][i % kBlock])); }

    std::vector<std::unique_ptr<Storage[]>> m_blocks;
    std::size_t m_size = 0;
};

} // namespace pavo::db
