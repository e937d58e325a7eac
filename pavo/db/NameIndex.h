// The name index of a symbol table: the live records by name, any letter
// case. An open-addressing table of (hash of the folded name, cell): names
// are not copied, since each record holds its own, and a name not in the
// table (every record of a drawing being read) costs one probe of one array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class OxDbCell;

namespace pavo::db {

class NameIndex {
public:
    // The live record called `name` (any case), or null.
    OxDbCell* find(std::wstring_view name) const;
    // Lists `cell`, a record called `name`; false (and nothing changed) when
    // another record has that name.
    bool insert(std::wstring_view name, OxDbCell* cell);
    // Unlists `cell`, listed under `name` (its name when it was listed).
    void erase(std::wstring_view name, const OxDbCell* cell);
    std::size_t size() const { return m_count; }
    // Changes whenever a name is listed or unlisted, to a value no index
    // ever had: equal generations mean the same names (a copy of an index
    // keeps its generation, as it keeps its names).
    std::uint64_t generation() const { return m_generation; }

private:
    struct Slot {
        std::size_t hash = 0;
        OxDbCell* cell = nullptr; // null: empty
    };
    std::size_t home(std::size_t hash) const;
    // The slot of `name`, or the empty slot where it would go.
    std::size_t probe(std::wstring_view name, std::size_t hash) const;
    void grow();

    void changed();

    std::vector<Slot> m_slots; // a power of two in size, at most half full
    std::size_t m_count = 0;
    std::uint64_t m_generation = 0;
};

} // namespace pavo::db
