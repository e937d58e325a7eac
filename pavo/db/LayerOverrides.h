// A layer's per-viewport overrides: one list a property, each ordered by
// viewport id. A layer overridden in every viewport of a large drawing
// holds as many entries as there are viewports, so an entry is small (12
// bytes), lookups are binary searches, setting them for the viewports in
// the order of their ids (as "every viewport" gives them) appends, and
// removing them one viewport at a time marks entries gone until they are
// half of the list.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxDbObjectId.h"
#include "OxDbSymbolTable.h"

namespace pavo::db {

// One property's overrides of a layer: the viewports in id order, and for
// each the number of its value in a small table of the layer's distinct
// values (an override set in every viewport is mostly one value), 12 bytes
// an override.
template <class V> class ViewportValues {
public:
    void set(const OxDbObjectId& viewport, const V& value) {
        const std::uint32_t code = codeOf(value);
        if (m_viewports.empty() || m_viewports.back() < viewport) {
            m_viewports.push_back(viewport);
            m_codes.push_back(code);
            return;
        }
        const std::size_t at = lowerBound(viewport);
        if (at < m_viewports.size() && m_viewports[at] == viewport) {
            if (m_codes[at] == kGone) --m_gone;
            m_codes[at] = code;
        } else {
            m_viewports.insert(m_viewports.begin() + static_cast<std::ptrdiff_t>(at), viewport);
            m_codes.insert(m_codes.begin() + static_cast<std::ptrdiff_t>(at), code);
        }
    }
    const V* find(const OxDbObjectId& viewport) const {
        const std::size_t at = lowerBound(viewport);
        if (at == m_viewports.size() || m_viewports[at] != viewport || m_codes[at] == kGone) return nullptr;
        return &m_values[m_codes[at]];
    }
    void remove(const OxDbObjectId& viewport) {
        const std::size_t at = lowerBound(viewport);
        if (at == m_viewports.size() || m_viewports[at] != viewport || m_codes[at] == kGone) return;
        m_codes[at] = kGone;
        if (2 * ++m_gone >= m_viewports.size() && m_gone >= 8) compact();
    }
    bool empty() const { return m_viewports.size() == m_gone; }
    // Calls `visit(viewport, value)` for each override in viewport order.
    template <class Visit> void forEach(Visit visit) const {
        for (std::size_t i = 0; i < m_viewports.size(); ++i)
            if (m_codes[i] != kGone) visit(m_viewports[i], m_values[m_codes[i]]);
    }

private:
    static constexpr std::uint32_t kGone = 0xFFFFFFFFu;

    std::size_t lowerBound(const OxDbObjectId& viewport) const {
        return static_cast<std::size_t>(std::lower_bound(m_viewports.begin(), m_viewports.end(), viewport) -
                                        m_viewports.begin());
    }
    // The number of `value` in the table, added when new; the last one
    // used is tried first.
    std::uint32_t codeOf(const V& value) {
        if (m_lastCode < m_values.size() && m_values[m_lastCode] == value) return m_lastCode;
        for (std::uint32_t i = 0; i < m_values.size(); ++i)
            if (m_values[i] == value) return m_lastCode = i;
        m_values.push_back(value);
        return m_lastCode = static_cast<std::uint32_t>(m_values.size() - 1);
    }
    // Drops removed overrides, and values no override uses any more.
    void compact() {
        std::vector<OxDbObjectId> viewports;
        std::vector<std::uint32_t> codes;
        std::vector<V> values;
        std::vector<std::uint32_t> renumbered(m_values.size(), kGone);
        for (std::size_t i = 0; i < m_viewports.size(); ++i) {
            const std::uint32_t code = m_codes[i];
            if (code == kGone) continue;
            if (renumbered[code] == kGone) {
                renumbered[code] = static_cast<std::uint32_t>(values.size());
                values.push_back(m_values[code]);
            }
            viewports.push_back(m_viewports[i]);
            codes.push_back(renumbered[code]);
        }
        m_viewports = std::move(viewports);
        m_codes = std::move(codes);
        m_values = std::move(values);
        m_gone = 0;
        m_lastCode = 0;
    }

    std::vector<OxDbObjectId> m_viewports;
    std::vector<std::uint32_t> m_codes; // kGone: removed
    std::vector<V> m_values;
    std::size_t m_gone = 0;
    std::uint32_t m_lastCode = 0;
};

// One property's overrides, made when the first is set: most layers with
// overrides have them for one or two properties.
template <class V> class OptionalViewportValues {
public:
    OptionalViewportValues() = default;
    OptionalViewportValues(const OptionalViewportValues& other)
        : m_values(other.m_values ? std::make_unique<ViewportValues<V>>(*other.m_values) : nullptr) {}
    OptionalViewportValues& operator=(const OptionalViewportValues& other) {
        if (this != &other) m_values = other.m_values ? std::make_unique<ViewportValues<V>>(*other.m_values) : nullptr;
        return *this;
    }

    void set(const OxDbObjectId& viewport, const V& value) {
        if (!m_values) m_values = std::make_unique<ViewportValues<V>>();
        m_values->set(viewport, value);
    }
    const V* find(const OxDbObjectId& viewport) const { return m_values ? m_values->find(viewport) : nullptr; }
    void remove(const OxDbObjectId& viewport) {
        if (m_values) m_values->remove(viewport);
    }
    bool empty() const { return !m_values || m_values->empty(); }
    template <class Visit> void forEach(Visit visit) const {
        if (m_values) m_values->forEach(visit);
    }

private:
    std::unique_ptr<ViewportValues<V>> m_values;
};

} // namespace pavo::db

struct OxDbLayerTableRecord::Overrides {
    pavo::db::OptionalViewportValues<OxCmColor> color;
    pavo::db::OptionalViewportValues<OxDbObjectId> linetype;
    pavo::db::OptionalViewportValues<OxDb::LineWeight> lineWeight;
    pavo::db::OptionalViewportValues<OxCmTransparency> transparency;
    pavo::db::OptionalViewportValues<OxDbObjectId> plotStyle;

    bool empty() const {
        return color.empty() && linetype.empty() && lineWeight.empty() && transparency.empty() && plotStyle.empty();
    }
};
