// One layer as the layer manager holds it: a compact copy of the record,
// changed in place by the dialog and written back only by Apply or OK.
#pragma once

#include <cstdint>
#include <vector>

#include "OxCmColor.h"
#include "OxDbObjectId.h"
#include "OxString.h"
#include "layermanager/LayerColumns.h"

namespace layermanager {

inline constexpr std::uint32_t kNoEntry = 0xFFFFFFFFu;

struct LayerRow {
    OxDbObjectId id; // null: made in the dialog, added to the drawing on Apply
    OxString name;
    OxString description;
    OxCmColor color = OxCmColor::fromIndex(7);
    OxCmTransparency transparency = OxCmTransparency(255);
    std::int16_t lineweight = -3;       // hundredths of a mm; -3 Default
    std::uint32_t linetype = kNoEntry;  // in LayerSheet::linetypes()
    std::uint32_t plotStyle = kNoEntry; // in LayerSheet::plotStyles()
    bool on = true, frozen = false, locked = false, plot = true, newVpFrozen = false;
    bool dependent = false; // belongs to an external reference ("X|NAME")
    bool deleted = false;
    std::uint32_t changed = 0; // a bit a column

    // In the current viewport: frozen there, and the overrides of the
    // layer's properties, each with its bit in vpOverrides (a bit a column).
    bool vpFrozen = false;
    std::uint32_t vpOverrides = 0;
    OxCmColor vpColor;
    OxCmTransparency vpTransparency;
    std::int16_t vpLineweight = -3;
    std::uint32_t vpLinetype = kNoEntry;
    std::uint32_t vpPlotStyle = kNoEntry;

    static std::uint32_t bit(LayerColumn column) { return 1u << static_cast<int>(column); }
    void markChanged(LayerColumn column) { changed |= bit(column); }
    bool isChanged(LayerColumn column) const { return (changed & bit(column)) != 0; }
    bool isOverridden(LayerColumn column) const { return (vpOverrides & bit(column)) != 0; }
};

// The state of a switch column (On, Frozen, Locked, Plot, New VP Freeze,
// VP Freeze), and setting it.
inline bool switchOf(const LayerRow& row, LayerColumn column) {
    switch (column) {
    case LayerColumn::On: return row.on;
    case LayerColumn::Frozen: return row.frozen;
    case LayerColumn::Locked: return row.locked;
    case LayerColumn::Plot: return row.plot;
    case LayerColumn::VpFreeze: return row.vpFrozen;
    default: return row.newVpFrozen;
    }
}

inline void setSwitchOf(LayerRow& row, LayerColumn column, bool on) {
    switch (column) {
    case LayerColumn::On: row.on = on; break;
    case LayerColumn::Frozen: row.frozen = on; break;
    case LayerColumn::Locked: row.locked = on; break;
    case LayerColumn::Plot: row.plot = on; break;
    case LayerColumn::VpFreeze: row.vpFrozen = on; break;
    default: row.newVpFrozen = on; break;
    }
}

// A linetype or plot style a row refers to by number: its name, and its
// record in the drawing (null while it is still to be loaded or made).
struct NamedEntry {
    OxString name;
    OxDbObjectId id;
};

// Entries found by id or by name (case ignored); numbers stay valid.
class NamedEntries {
public:
    std::uint32_t indexOfId(const OxDbObjectId& id) const;
    std::uint32_t indexOfName(const OxString& name) const;
    // The entry `name`, added (with a null id) when missing.
    std::uint32_t add(const OxString& name, const OxDbObjectId& id = OxDbObjectId());
    const NamedEntry& at(std::uint32_t index) const { return m_entries[index]; }
    NamedEntry& at(std::uint32_t index) { return m_entries[index]; }
    std::size_t size() const { return m_entries.size(); }
    const std::vector<NamedEntry>& entries() const { return m_entries; }

private:
    std::vector<NamedEntry> m_entries;
};

} // namespace layermanager
