// A set of cells that keeps the order they were added in, with O(1)
// membership, insertion and removal: a viewport's frozen layers, which may
// be every layer of a drawing of a hundred thousand layers, and are frozen
// and thawed one at a time as often as all at once.
#pragma once

#include <cstddef>
#include <cstdint>
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
    void clear();
    std::size_t size() const { return m_live; }
    bool empty() const { return m_live == 0; }

    // Calls `visit(cell)` for each cell in the order they were added.
    template <class Visit> void forEach(Visit visit) const {
        for (OxDbCell* cell : m_order)
            if (cell) visit(cell);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
    // An open-addressing index from cell to its position in m_order, with
    // linear probing and no tombstones (removal shifts the run back). A
    // slot keeps the upper half of the cell's hash, which also gives its
    // home slot, so that probing rarely looks at m_order.
    struct Slot {
        std::uint32_t position = kNone; // kNone: empty
        std::uint32_t tag = 0;
    };
    static std::uint32_t tagOf(const OxDbCell* cell);
    std::size_t home(std::uint32_t tag) const;
    // The slot holding `cell`, or kNoSlot.
    std::size_t slotOf(const OxDbCell* cell) const;
    void index(std::uint32_t tag, std::uint32_t position);
    void unindex(std::size_t slot);
    void rebuild(std::size_t capacity);
    // Drops the holes that removals left in m_order once they outnumber
    // the cells, so that walking the set stays proportional to its size.
    void compact();

    std::vector<OxDbCell*> m_order; // null: removed
    std::vector<Slot> m_slots;      // a power of two in size, at most half full
    std::size_t m_live = 0;
};

} // namespace pavo::db
