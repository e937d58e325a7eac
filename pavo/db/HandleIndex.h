// Cells by handle. Handles of a drawing are nearly dense (1 to the handle
// seed), so most live in a vector indexed by handle; a handle far beyond
// the others (hand-written files may have any) goes to a hash map.
#pragma once

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

class OxDbCell;

namespace pavo::db {

class HandleIndex {
public:
    OxDbCell* find(std::uint64_t handle) const {
        if (handle < m_dense.size()) return m_dense[handle];
        auto it = m_sparse.find(handle);
        return it == m_sparse.end() ? nullptr : it->second;
    }
    bool contains(std::uint64_t handle) const { return find(handle) != nullptr; }
    // Where the cell of a dense handle is kept (null for the others), for
    // fetching it into the cache ahead of use.
    const void* denseSlot(std::uint64_t handle) const { return handle < m_dense.size() ? &m_dense[handle] : nullptr; }
    // The cell of a dense handle, without looking further (null when none).
    OxDbCell* findDense(std::uint64_t handle) const { return handle < m_dense.size() ? m_dense[handle] : nullptr; }
    // Room for handles below `handles` without moving the index (a reader
    // that knows the drawing's handle seed).
    void reserve(std::uint64_t handles) { m_dense.reserve(static_cast<std::size_t>(handles)); }
    // `cell` must not be null and `handle` not yet present.
    void insert(std::uint64_t handle, OxDbCell* cell, std::size_t cellCount) {
        // Dense while the vector stays within a few times the number of
        // objects; a stray huge handle must not allocate gigabytes.
        const std::uint64_t limit = 4 * static_cast<std::uint64_t>(cellCount) + 4096;
        if (handle < m_dense.size()) {
            m_dense[handle] = cell;
        } else if (handle < limit) {
            m_dense.resize(std::max<std::uint64_t>(handle + 1, m_dense.size() * 3 / 2), nullptr);
            m_dense[handle] = cell;
            // Handles kept aside while they were far out may now be in range:
            // find() looks for those only in the vector.
            std::erase_if(m_sparse, [&](const auto& entry) {
                if (entry.first >= m_dense.size()) return false;
                m_dense[entry.first] = entry.second;
                return true;
            });
        } else {
            m_sparse.emplace(handle, cell);
        }
    }

private:
    std::vector<OxDbCell*> m_dense;
    std::unordered_map<std::uint64_t, OxDbCell*> m_sparse;
};

} // namespace pavo::db
