#include "OrderedCellSet.h"

#include <algorithm>
#include <bit>

namespace pavo::db {

namespace {
constexpr std::size_t kSmallest = 16;
} // namespace

// Cells are at least 16-byte aligned; Fibonacci hashing spreads the rest,
// and the upper bits of the product are the well mixed ones.
std::uint32_t OrderedCellSet::hashOf(const OxDbCell* cell) {
    const auto key = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(cell) >> 4);
    return static_cast<std::uint32_t>((key * 0x9E3779B97F4A7C15ull) >> 32);
}

std::size_t OrderedCellSet::home(std::uint32_t hash) const {
    const unsigned bits = static_cast<unsigned>(std::countr_zero(m_slots.size()));
    return static_cast<std::size_t>(hash >> (32 - bits));
}

std::size_t OrderedCellSet::slotOf(const OxDbCell* cell) const {
    if (m_slots.empty()) return kNoSlot;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = home(hashOf(cell));; i = (i + 1) & mask) {
        const Slot slot = m_slots[i];
        if (slot == kEmpty) return kNoSlot;
        if (m_order[slot - 1] == cell) return i;
    }
}

void OrderedCellSet::index(std::uint32_t hash, std::uint32_t position) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = home(hash);
    while (m_slots[i] != kEmpty)
        i = (i + 1) & mask;
    m_slots[i] = position + 1;
}

void OrderedCellSet::unindex(std::size_t slot) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t hole = slot;
    for (std::size_t i = (slot + 1) & mask; m_slots[i] != kEmpty; i = (i + 1) & mask) {
        // An entry may move back into the hole unless its home lies
        // cyclically after the hole and at or before its own slot.
        const std::size_t h = home(hashOf(m_order[m_slots[i] - 1]));
        const bool stays = hole <= i ? (hole < h && h <= i) : (hole < h || h <= i);
        if (stays) continue;
        m_slots[hole] = m_slots[i];
        hole = i;
    }
    m_slots[hole] = kEmpty;
}

void OrderedCellSet::rebuild(std::size_t capacity) {
    m_slots = decltype(m_slots)(capacity);
    for (std::size_t p = 0; p < m_order.size(); ++p)
        if (m_order[p]) index(hashOf(m_order[p]), static_cast<std::uint32_t>(p));
}

bool OrderedCellSet::insert(OxDbCell* cell) {
    if (!cell || contains(cell)) return false;
    if (2 * (m_live + 1) > m_slots.size()) {
        compact();
        rebuild(std::max(kSmallest, 2 * m_slots.size()));
    }
    m_order.push_back(cell);
    index(hashOf(cell), static_cast<std::uint32_t>(m_order.size() - 1));
    ++m_live;
    return true;
}

void OrderedCellSet::reserve(std::size_t more) {
    const std::size_t wanted = std::bit_ceil(std::max(kSmallest, 2 * (m_live + more)));
    if (wanted <= m_slots.size()) return;
    compact();
    m_order.reserve(m_live + more);
    rebuild(wanted);
}

bool OrderedCellSet::erase(const OxDbCell* cell) {
    if (!cell) return false;
    const std::size_t slot = slotOf(cell);
    if (slot == kNoSlot) return false;
    // Unindexed first: moving the run back reads the cells it holds.
    const std::uint32_t position = m_slots[slot] - 1;
    unindex(slot);
    m_order[position] = nullptr;
    if (--m_live == 0) {
        clear();
    } else if (m_order.size() > 64 && m_order.size() > 2 * m_live) {
        compact();
        rebuild(m_slots.size());
    }
    return true;
}

void OrderedCellSet::compact() {
    if (m_order.size() != m_live) std::erase(m_order, nullptr);
}

void OrderedCellSet::clear() {
    m_order.clear();
    m_slots.clear();
    m_live = 0;
}

} // namespace pavo::db
