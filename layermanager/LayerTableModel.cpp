#include "layermanager/LayerTableModel.h"

#include <QColor>
#include <QFont>
#include <QItemSelectionModel>
#include <QPainter>
#include <algorithm>

namespace layermanager {

namespace {

LayerColumn columnOf(const QModelIndex& index) { return static_cast<LayerColumn>(index.column()); }

QColor swatchOf(const OxCmColor& color) {
    if (color.isByACI()) {
        std::uint8_t r = 0, g = 0, b = 0;
        OxCmEntityColor::indexToRgb(color.colorIndex(), r, g, b);
        return QColor(r, g, b);
    }
    if (color.isByColor()) return QColor(color.red(), color.green(), color.blue());
    return QColor();
}


// Cells the current viewport overrides are tinted.
const QColor kOverrideTint(214, 232, 255);

} // namespace

LayerTableModel::LayerTableModel(LayerSheet& sheet, QObject* parent) : QAbstractTableModel(parent), m_sheet(sheet) {}

QVariant LayerTableModel::swatch(const OxCmColor& color) const {
    const QColor fill = swatchOf(color);
    if (!fill.isValid()) return {};
    // One small picture a colour, framed so that white shows on white.
    QPixmap& picture = m_swatches[fill.rgb()];
    if (picture.isNull()) {
        picture = QPixmap(12, 12);
        picture.fill(fill);
        QPainter painter(&picture);
        painter.setPen(QColor(96, 96, 96));
        painter.drawRect(0, 0, 11, 11);
    }
    return picture;
}

int LayerTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_sheet.shown().size());
}

int LayerTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumnCount; }

QVariant LayerTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const LayerRow& row = m_sheet.row(sheetRow(index.row()));
    const LayerColumn column = columnOf(index);
    switch (role) {
    case Qt::DisplayRole:
        if (isSwitchColumn(column)) return {};
        if (column == LayerColumn::Status) return m_sheet.isCurrent(row) ? QStringLiteral("\u2713") : QString();
        return QString::fromStdWString(m_sheet.displayText(row, column));
    case Qt::EditRole:
        return QString::fromStdWString(m_sheet.displayText(row, column));
    case Qt::CheckStateRole:
        if (isSwitchColumn(column)) return switchOf(row, column) ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::DecorationRole:
        if (column == LayerColumn::Color) return swatch(row.color);
        if (column == LayerColumn::VpColor)
            return swatch(row.isOverridden(column) ? row.vpColor : row.color);
        return {};
    case Qt::BackgroundRole:
        if (row.isOverridden(column)) return kOverrideTint;
        return {};
    case Qt::FontRole:
        if (m_sheet.isCurrent(row)) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    case Qt::ToolTipRole:
        if (row.isOverridden(column))
            return QStringLiteral("%1 in this viewport (the layer's own: %2)")
                .arg(QString::fromStdWString(m_sheet.displayText(row, column)),
                     QString::fromStdWString(m_sheet.displayText(row, overriddenColumn(column))));
        if (isSwitchColumn(column) || column == LayerColumn::Status)
            return QString::fromStdWString(m_sheet.displayText(row, column));
        return {};
    case Qt::TextAlignmentRole:
        if (column == LayerColumn::Status) return Qt::AlignCenter;
        return {};
    default:
        return {};
    }
}

QVariant LayerTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumnCount) return {};
    return QString::fromWCharArray(columnHeading(static_cast<LayerColumn>(section)));
}

Qt::ItemFlags LayerTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const LayerColumn column = columnOf(index);
    if (isViewportColumn(column) && !m_sheet.hasViewport()) return f;
    if (isSwitchColumn(column)) return f | Qt::ItemIsUserCheckable;
    if (column == LayerColumn::Status) return f;
    if (overriddenColumn(column) == LayerColumn::PlotStyle && !m_sheet.namedPlotStyles()) return f;
    return f | Qt::ItemIsEditable;
}

RowList LayerTableModel::selectedRows() const {
    RowList rows;
    if (!m_selection) return rows;
    for (const QItemSelectionRange& range : m_selection->selection())
        for (int r = range.top(); r <= range.bottom(); ++r) rows.push_back(sheetRow(r));
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

RowList LayerTableModel::editedRows(const QModelIndex& index) const {
    if (m_selection && m_selection->isRowSelected(index.row(), QModelIndex())) return selectedRows();
    return {sheetRow(index.row())};
}

bool LayerTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.row() >= rowCount()) return false;
    const LayerColumn column = columnOf(index);
    std::wstring message;
    if (role == Qt::CheckStateRole && isSwitchColumn(column))
        message = m_sheet.setSwitch(editedRows(index), column, value.toInt() == Qt::Checked);
    else if (role == Qt::EditRole && !isSwitchColumn(column) && value.toString() == data(index, Qt::EditRole).toString())
        return true; // an editor closed on the value it opened with
    else if (role == Qt::EditRole && !isSwitchColumn(column))
        message = m_sheet.setValue(editedRows(index), column, value.toString().toStdWString());
    else
        return false;
    if (onMessage) onMessage(message);
    valuesChanged();
    return message.empty();
}

void LayerTableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= kColumnCount) return;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    // The selection and the current cell follow their layers.
    const QModelIndexList before = persistentIndexList();
    std::vector<std::uint32_t> layers;
    layers.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& i : before) layers.push_back(sheetRow(i.row()));
    m_sheet.sortBy(static_cast<LayerColumn>(column), order == Qt::AscendingOrder);
    std::vector<int> position(m_sheet.rows().size(), -1);
    for (std::size_t i = 0; i < m_sheet.shown().size(); ++i) position[m_sheet.shown()[i]] = static_cast<int>(i);
    QModelIndexList after;
    after.reserve(before.size());
    for (int i = 0; i < before.size(); ++i) after.push_back(index(position[layers[static_cast<std::size_t>(i)]], before[i].column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int LayerTableModel::shownRow(std::uint32_t row) const {
    const RowList& shown = m_sheet.shown();
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (shown[i] == row) return static_cast<int>(i);
    return -1;
}

void LayerTableModel::sheetReset() {
    beginResetModel();
    endResetModel();
}

void LayerTableModel::valuesChanged() {
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
}

} // namespace layermanager
