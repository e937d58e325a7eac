// Editors of the layer table's cells: a list to choose from for linetypes,
// lineweights and plot styles, a number box for transparency, a line to
// type into for names, colours and descriptions. Whatever the editor, the
// value reaches the sheet as text, read as a typed value is.
#pragma once

#include <QStyledItemDelegate>

namespace layermanager {

class LayerSheet;

class PropertyDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    PropertyDelegate(const LayerSheet& sheet, QObject* parent) : QStyledItemDelegate(parent), m_sheet(sheet) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

private:
    const LayerSheet& m_sheet;
};

} // namespace layermanager
