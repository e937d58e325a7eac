// The layer table as Qt's views see it: a row a shown layer, a column a
// property, read straight from the sheet when a cell is painted (no item or
// widget a cell, so a hundred thousand layers cost what the visible rows
// cost). Edits from the view go to the sheet for every selected layer.
#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QPixmap>
#include <functional>

#include "layermanager/LayerSheet.h"

class QItemSelectionModel;

namespace layermanager {

class LayerTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit LayerTableModel(LayerSheet& sheet, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    void sort(int column, Qt::SortOrder order) override;

    // The sheet row of a shown row.
    std::uint32_t sheetRow(int shownRow) const { return m_sheet.shown()[static_cast<std::size_t>(shownRow)]; }
    // The shown row of a sheet row, or -1.
    int shownRow(std::uint32_t sheetRow) const;

    // The rows an edit of the view applies to: the selected ones when the
    // edited row is selected, else the edited row alone.
    void setSelectionModel(QItemSelectionModel* selection) { m_selection = selection; }
    RowList selectedRows() const;
    // What the last edit from the view said; shown by the dialog.
    std::function<void(const std::wstring&)> onMessage;

    // Tell the view that the sheet changed as a whole (filter, sort, apply)
    // or in its values.
    void sheetReset();
    void valuesChanged();

private:
    RowList editedRows(const QModelIndex& index) const;
    QVariant swatch(const OxCmColor& color) const;

    LayerSheet& m_sheet;
    QItemSelectionModel* m_selection = nullptr;
    mutable QHash<QRgb, QPixmap> m_swatches;
};

} // namespace layermanager
