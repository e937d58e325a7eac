// A set of cells that keeps the order they were added in, with O(1)
// membership, insertion and removal: a viewport's frozen layers, which may
// be every layer of a drawing of a hundred thousand layers, and are frozen
// and thawed one at a time as often as all at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

class OxDbCell;

namespace pavo::db {

class OrderedCellSet {
public:
    bool contains(const OxDbCell* cell) const { return cell && slotOf(cell) != kNoSlot; }
    // Appends `cell`; false (nothing changed) when it is null or present.
    bool insert(OxDbCell* cell);
    // False when `cell` is not in the set.
    bool erase(const OxDbCell* cell);
    // Makes room for `more` cells beyond the present ones at once, so that a
    // large batch does not rebuild the index again and again.
    void reserve(std::size_t more);
    void clear();
    std::size_t size() const { return m_live; }
    bool empty() const { return m_live == 0; }

    // Calls `visit(cell)` for each cell in the order they were added.
    template <class Visit> void forEach(Visit visit) const {
        for (OxDbCell* cell : m_order)
            if (cell) visit(cell);
    }

private:
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
    // An open-addressing index from cell to its position in m_order, with
    // linear probing and no tombstones (removal shifts the run back). A
    // slot is the position plus one (0: empty), 4 bytes, so that the index
    // of a viewport with every layer of a large drawing frozen stays small.
    using Slot = std::uint32_t;
    static constexpr Slot kEmpty = 0;
    // Fresh slots come from calloc and are not written one by one: a large
    // index then starts as the system's zeroed pages.
    template <class T> struct ZeroedAllocator {
        using value_type = T;
        ZeroedAllocator() = default;
        template <class U> ZeroedAllocator(const ZeroedAllocator<U>&) {}
        T* allocate(std::size_t n) {
            if (void* p = std::calloc(n, sizeof(T))) return static_cast<T*>(p);
            throw std::bad_alloc();
        }
        void deallocate(T* p, std::size_t) { std::free(p); }
        template <class U> void construct(U* p) { ::new (static_cast<void*>(p)) U; }
        template <class U, class... Args> void construct(U* p, Args&&... args) {
            ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
        }
        template <class U> bool operator==(const ZeroedAllocator<U>&) const { return true; }
    };
    static std::uint32_t hashOf(const OxDbCell* cell);
    std::size_t home(std::uint32_t hash) const;
    // The slot holding `cell`, or kNoSlot.
    std::size_t slotOf(const OxDbCell* cell) const;
    void index(std::uint32_t hash, std::uint32_t position);
    void unindex(std::size_t slot);
    void rebuild(std::size_t capacity);
    // Drops the holes that removals left in m_order once they outnumber
    // the cells, so that walking the set stays proportional to its size.
    void compact();

    std::vector<OxDbCell*> m_order; // null: removed
    std::vector<Slot, ZeroedAllocator<Slot>> m_slots; // a power of two in size, at most half full
    std::size_t m_live = 0;
};

} // namespace pavo::db
