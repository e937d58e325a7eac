// The layer manager's working copy of the layer table: every layer read
// once when the dialog opens, edited here, and written to the drawing only
// by apply(), so that Cancel leaves the drawing exactly as it was. Which
// layers are shown (the filter, a name list as "-LAYER" reads it) and in
// which order (the sort) is a list of row numbers, so that neither touches
// the rows themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layermanager/LayerRow.h"

class OxDbDatabase;

namespace layermanager {

using RowList = std::vector<std::uint32_t>;

class LayerSheet {
public:
    // Reads the layers of `db`; nothing is written until apply().
    explicit LayerSheet(OxDbDatabase* db);

    OxDbDatabase* database() const { return m_db; }
    const std::vector<LayerRow>& rows() const { return m_rows; }
    const LayerRow& row(std::uint32_t index) const { return m_rows[index]; }
    const NamedEntries& linetypes() const { return m_linetypes; }
    const NamedEntries& plotStyles() const { return m_plotStyles; }
    bool namedPlotStyles() const { return m_namedPlotStyles; }
    // The current layout's active model viewport, whose columns the sheet
    // shows; null in model space.
    const OxDbObjectId& viewport() const { return m_viewport; }
    bool hasViewport() const { return !m_viewport.isNull(); }
    // The current layer's row.
    std::uint32_t current() const { return m_current; }
    bool isCurrent(const LayerRow& row) const { return m_current != kNoEntry && &row == &m_rows[m_current]; }
    // Rows not deleted.
    std::size_t layerCount() const { return m_rows.size() - m_deletedCount; }
    bool hasChanges() const { return m_edited; }

    // ------------------------------------------------------------ showing
    // The rows shown, in the order shown.
    const RowList& shown() const { return m_shown; }
    // Shows the layers the name list `filter` selects (all for an empty
    // filter), in the current order.
    void setFilter(const std::wstring& filter);
    const std::wstring& filter() const { return m_filter; }
    // Orders the shown rows by `column` (then by name).
    void sortBy(LayerColumn column, bool ascending);
    LayerColumn sortColumn() const { return m_sortColumn; }
    bool sortAscending() const { return m_sortAscending; }

    // ------------------------------------------------------------ editing
    // Each returns what the user is told; empty when all went well.
    // Sets `column` to the value typed as `text` on `rows`; nothing changes
    // when the value is refused. A viewport column takes "Remove" too,
    // which drops the viewport's override.
    std::wstring setValue(const RowList& rows, LayerColumn column, const std::wstring& text);
    // Sets a switch column of `rows` on or off.
    std::wstring setSwitch(const RowList& rows, LayerColumn column, bool on);
    std::wstring makeCurrent(std::uint32_t row);
    // Adds a layer with the defaults of a new layer and a free name
    // ("Layer1", "Layer2" ...), shown whatever the filter; its row.
    std::uint32_t newLayer();
    // Deletes the rows that may be deleted; one line for each refused.
    std::wstring deleteRows(const RowList& rows);

    // The text shown for a cell (switches as "On"/"Off" and the like).
    std::wstring displayText(const LayerRow& row, LayerColumn column) const;

    // Writes every change to the drawing and reads it again.
    void apply();

private:
    void read();
    void refreshShown();
    std::wstring rename(std::uint32_t row, const std::wstring& text);
    std::wstring switchRefusal(const LayerRow& row, LayerColumn column, bool on) const;
    std::wstring setProperty(const RowList& rows, LayerColumn column, const std::wstring& text);
    std::uint32_t findName(const OxString& name) const;
    void touch(LayerRow& row, LayerColumn column);

    OxDbDatabase* m_db;
    std::vector<LayerRow> m_rows;
    NamedEntries m_linetypes;
    NamedEntries m_plotStyles;
    LayerRow m_newLayerDefaults;
    bool m_namedPlotStyles = false;
    OxDbObjectId m_viewport;
    std::uint32_t m_current = kNoEntry;
    std::uint32_t m_currentAtStart = kNoEntry;
    std::size_t m_deletedCount = 0;
    bool m_edited = false;
    std::vector<OxDbObjectId> m_deleted;

    RowList m_shown;
    std::wstring m_filter;
    LayerColumn m_sortColumn = LayerColumn::Name;
    bool m_sortAscending = true;
};

} // namespace layermanager
