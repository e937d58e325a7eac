#include "OrderedCellSet.h"

#include <bit>

namespace pavo::db {

std::size_t OrderedCellSet::home(const OxDbCell* cell) const {
    // Cells are at least 16-byte aligned; Fibonacci hashing spreads the rest.
    const auto key = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(cell) >> 4);
    const unsigned bits = static_cast<unsigned>(std::countr_zero(m_slots.size()));
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> (64 - bits));
}

std::uint32_t OrderedCellSet::find(const OxDbCell* cell) const {
    if (m_slots.empty()) return kNone;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = home(cell);; i = (i + 1) & mask) {
        if (m_slots[i].cell == cell) return m_slots[i].position;
        if (!m_slots[i].cell) return kNone;
    }
}

void OrderedCellSet::index(const OxDbCell* cell, std::uint32_t position) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = home(cell);
    while (m_slots[i].cell)
        i = (i + 1) & mask;
    m_slots[i] = Slot{cell, position};
}

void OrderedCellSet::unindex(std::size_t slot) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t hole = slot;
    for (std::size_t i = (slot + 1) & mask; m_slots[i].cell; i = (i + 1) & mask) {
        // An entry may move back into the hole unless its home lies
        // cyclically after the hole and at or before its own slot.
        const std::size_t h = home(m_slots[i].cell);
        const bool stays = hole <= i ? (hole < h && h <= i) : (hole < h || h <= i);
        if (stays) continue;
        m_slots[hole] = m_slots[i];
        hole = i;
    }
    m_slots[hole] = Slot{};
}

void OrderedCellSet::rebuild(std::size_t capacity) {
    m_slots.assign(capacity, Slot{});
    for (std::size_t p = 0; p < m_order.size(); ++p)
        if (m_order[p]) index(m_order[p], static_cast<std::uint32_t>(p));
}

bool OrderedCellSet::insert(OxDbCell* cell) {
    if (!cell || contains(cell)) return false;
    if (2 * (m_live + 1) > m_slots.size()) {
        compactIfSparse();
        rebuild(std::bit_ceil(std::max<std::size_t>(16, 4 * (m_live + 1))));
    }
    m_order.push_back(cell);
    index(cell, static_cast<std::uint32_t>(m_order.size() - 1));
    ++m_live;
    return true;
}

bool OrderedCellSet::erase(const OxDbCell* cell) {
    if (!cell || m_slots.empty()) return false;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = home(cell); m_slots[i].cell; i = (i + 1) & mask) {
        if (m_slots[i].cell != cell) continue;
        m_order[m_slots[i].position] = nullptr;
        unindex(i);
        --m_live;
        if (m_live == 0) {
            clear();
        } else if (m_order.size() > 64 && m_order.size() > 2 * m_live) {
            compactIfSparse();
            rebuild(m_slots.size());
        }
        return true;
    }
    return false;
}

void OrderedCellSet::compactIfSparse() {
    if (m_order.size() == m_live) return;
    std::erase(m_order, nullptr);
}

void OrderedCellSet::clear() {
    m_order.clear();
    m_slots.clear();
    m_live = 0;
}

} // namespace pavo::db
