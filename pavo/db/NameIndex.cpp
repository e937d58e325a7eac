#include "NameIndex.h"

#include <atomic>
#include <bit>
#include <cstdint>

#include "SymbolTableImpl.h"
#include "base/CaseFold.h"

namespace pavo::db {

void NameIndex::changed() {
    static std::atomic<std::uint64_t> generations{0};
    m_generation = ++generations;
}

std::size_t NameIndex::home(std::size_t hash) const {
    // Fibonacci hashing spreads the folded-name hash over the table's bits.
    const unsigned bits = static_cast<unsigned>(std::countr_zero(m_slots.size()));
    return static_cast<std::size_t>((static_cast<std::uint64_t>(hash) * 0x9E3779B97F4A7C15ull) >> (64 - bits));
}

std::size_t NameIndex::probe(std::wstring_view name, std::size_t hash) const {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = home(hash);; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (!slot.cell) return i;
        if (slot.hash == hash && equalNoCase(recordName(slot.cell), name)) return i;
    }
}

OxDbCell* NameIndex::find(std::wstring_view name) const {
    if (m_count == 0) return nullptr;
    return m_slots[probe(name, hashNoCase(name))].cell;
}

bool NameIndex::insert(std::wstring_view name, OxDbCell* cell) {
    if (2 * (m_count + 1) > m_slots.size()) grow();
    const std::size_t hash = hashNoCase(name);
    Slot& slot = m_slots[probe(name, hash)];
    if (slot.cell) return false;
    slot = Slot{hash, cell};
    ++m_count;
    changed();
    return true;
}

void NameIndex::erase(std::wstring_view name, const OxDbCell* cell) {
    if (m_count == 0) return;
    const std::size_t mask = m_slots.size() - 1;
    const std::size_t hash = hashNoCase(name);
    std::size_t hole = home(hash);
    for (; m_slots[hole].cell != cell; hole = (hole + 1) & mask)
        if (!m_slots[hole].cell) return; // not listed
    // Moves back the slots after the hole that would no longer be found
    // from their home, so that no probe stops short at the hole.
    for (std::size_t next = (hole + 1) & mask; m_slots[next].cell; next = (next + 1) & mask) {
        const std::size_t want = home(m_slots[next].hash);
        const bool reachable = hole <= next ? (want <= hole || want > next) : (want <= hole && want > next);
        if (reachable) {
            m_slots[hole] = m_slots[next];
            hole = next;
        }
    }
    m_slots[hole] = Slot{};
    --m_count;
    changed();
}

void NameIndex::grow() {
    std::vector<Slot> old(m_slots.empty() ? 16 : 2 * m_slots.size());
    old.swap(m_slots);
    const std::size_t mask = m_slots.size() - 1;
    for (const Slot& slot : old) {
        if (!slot.cell) continue;
        std::size_t i = home(slot.hash);
        while (m_slots[i].cell)
            i = (i + 1) & mask;
        m_slots[i] = slot;
    }
}

} // namespace pavo::db
