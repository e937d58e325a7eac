// A set of cells that keeps the order they were added in, with O(1)
// membership, insertion and removal: a viewport's frozen layers, which may
// be every layer of a drawing of a hundred thousand layers, in every one of
// a hundred viewports, and are frozen and thawed one at a time as often as
// all at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class OxDbCell;

namespace pavo::db {

class OrderedCellSet {
public:
    bool contains(const OxDbCell* cell) const;
    // Appends `cell`; false (nothing changed) when it is null or present.
    bool insert(OxDbCell* cell);
    // False when `cell` is not in the set.
    bool erase(const OxDbCell* cell);
    // Makes room for `more` cells beyond the present ones at once, so that a
    // large batch does not grow the set again and again.
    void reserve(std::size_t more);
    void clear();
    std::size_t size() const { return m_live; }
    bool empty() const { return m_live == 0; }

    // Calls `visit(cell)` for each cell in the order they were added.
    template <class Visit> void forEach(Visit visit) const {
        if (m_gone == 0) {
            for (OxDbCell* cell : m_order)
                visit(cell);
            return;
        }
        for (OxDbCell* cell : m_order)
            if (contains(cell)) visit(cell);
    }

private:
    // Membership is kept in bits: a cell's number is its address in units
    // of a cell (cells never overlap, so no two share a number, and the
    // cells of a layer table made together have numbers in a row), and
    // each group of 64 numbers is one entry of an open-addressing table
    // with a bit a cell. A viewport with a hundred thousand frozen layers
    // then needs about 100 KB of bits beside its list, and freezing a row
    // of layers touches one word a group.
    struct Group {
        std::uint64_t key = kNoGroup; // cell number / 64
        std::uint64_t in = 0;         // cells of the group in the set
        // Cells of the group taken out whose place in m_order is still
        // there; a cell put back while its old place is there makes the
        // list compact itself first, so that a cell has one live place.
        std::uint64_t gone = 0;
    };
    static constexpr std::uint64_t kNoGroup = ~std::uint64_t{0};

    static std::uint64_t numberOf(const OxDbCell* cell);
    // The group of `key`, or null.
    const Group* findGroup(std::uint64_t key) const;
    // The group of `key`, made when missing.
    Group& group(std::uint64_t key);
    void rehash(std::size_t capacity);
    // Drops the places of removed cells from m_order, and the groups with
    // nothing in the set.
    void compact();

    std::vector<OxDbCell*> m_order; // removed cells stay until compact()
    std::vector<Group> m_groups;    // a power of two in size, at most half full
    std::size_t m_groupCount = 0;
    mutable std::size_t m_lastGroup = 0; // where the last group looked for was
    std::size_t m_live = 0;
    std::size_t m_gone = 0; // places in m_order of removed cells
};

} // namespace pavo::db
