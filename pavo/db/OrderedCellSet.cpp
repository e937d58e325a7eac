#include "OrderedCellSet.h"

#include <algorithm>
#include <bit>

#include "DbStore.h"

namespace pavo::db {

namespace {

constexpr std::size_t kSmallest = 8;

std::uint64_t bitOf(std::uint64_t number) { return std::uint64_t{1} << (number & 63); }

// Fibonacci hashing: the upper bits of the product are the well mixed ones.
std::size_t slotOf(std::uint64_t key, std::size_t capacity) {
    const unsigned bits = static_cast<unsigned>(std::countr_zero(capacity));
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> (64 - bits));
}

} // namespace

std::uint64_t OrderedCellSet::numberOf(const OxDbCell* cell) {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(cell) / sizeof(OxDbCell));
}

const OrderedCellSet::Group* OrderedCellSet::findGroup(std::uint64_t key) const {
    if (m_groups.empty()) return nullptr;
    // Cells made together come one after the other.
    if (m_lastGroup < m_groups.size() && m_groups[m_lastGroup].key == key) return &m_groups[m_lastGroup];
    const std::size_t mask = m_groups.size() - 1;
    for (std::size_t i = slotOf(key, m_groups.size());; i = (i + 1) & mask) {
        const Group& g = m_groups[i];
        if (g.key == key) {
            m_lastGroup = i;
            return &g;
        }
        if (g.key == kNoGroup) return nullptr;
    }
}

OrderedCellSet::Group& OrderedCellSet::group(std::uint64_t key) {
    if (const Group* found = findGroup(key)) return const_cast<Group&>(*found);
    if (2 * (m_groupCount + 1) > m_groups.size()) rehash(std::max(kSmallest, 2 * m_groups.size()));
    const std::size_t mask = m_groups.size() - 1;
    std::size_t i = slotOf(key, m_groups.size());
    while (m_groups[i].key != kNoGroup)
        i = (i + 1) & mask;
    ++m_groupCount;
    m_groups[i].key = key;
    m_lastGroup = i;
    return m_groups[i];
}

void OrderedCellSet::rehash(std::size_t capacity) {
    std::vector<Group> old(capacity);
    old.swap(m_groups);
    const std::size_t mask = capacity - 1;
    for (const Group& g : old) {
        if (g.key == kNoGroup) continue;
        std::size_t i = slotOf(g.key, capacity);
        while (m_groups[i].key != kNoGroup)
            i = (i + 1) & mask;
        m_groups[i] = g;
    }
}

bool OrderedCellSet::contains(const OxDbCell* cell) const {
    if (!cell) return false;
    const std::uint64_t number = numberOf(cell);
    const Group* g = findGroup(number >> 6);
    return g && (g->in & bitOf(number));
}

bool OrderedCellSet::insert(OxDbCell* cell) {
    if (!cell) return false;
    const std::uint64_t number = numberOf(cell);
    Group* g = &group(number >> 6);
    if (g->in & bitOf(number)) return false;
    if (g->gone & bitOf(number)) {
        compact();
        g = &group(number >> 6);
    }
    g->in |= bitOf(number);
    m_order.push_back(cell);
    ++m_live;
    return true;
}

void OrderedCellSet::reserve(std::size_t more) {
    // Geometric growth, so that cells added one at a time with a reserve
    // each are not copied again and again.
    const std::size_t needed = m_order.size() + more;
    if (needed > m_order.capacity()) m_order.reserve(std::max(needed, 2 * m_order.capacity()));
}

bool OrderedCellSet::erase(const OxDbCell* cell) {
    if (!cell) return false;
    const std::uint64_t number = numberOf(cell);
    const Group* found = findGroup(number >> 6);
    if (!found || !(found->in & bitOf(number))) return false;
    Group& g = const_cast<Group&>(*found);
    g.in &= ~bitOf(number);
    g.gone |= bitOf(number);
    ++m_gone;
    if (--m_live == 0) {
        clear();
    } else if (m_order.size() > 64 && m_gone > m_live) {
        // Walking the set stays proportional to its size.
        compact();
    }
    return true;
}

void OrderedCellSet::compact() {
    if (m_gone == 0) return;
    std::erase_if(m_order, [&](const OxDbCell* cell) { return !contains(cell); });
    m_gone = 0;
    // The groups again, from the cells still in the set.
    std::vector<Group> kept;
    kept.reserve(m_groupCount);
    for (const Group& g : m_groups)
        if (g.key != kNoGroup && g.in) kept.push_back({g.key, g.in, 0});
    m_groups.assign(std::max(kSmallest, std::bit_ceil(2 * kept.size() + 1)), Group{});
    m_groupCount = 0;
    for (const Group& g : kept)
        group(g.key).in = g.in;
}

void OrderedCellSet::clear() {
    m_order = {};
    m_groups = {};
    m_groupCount = 0;
    m_live = 0;
    m_gone = 0;
}

} // namespace pavo::db
