#include "layermanager/PropertyDelegate.h"

#include <QComboBox>
#include <QSpinBox>

#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/LineWeightTable.h"
#include "layermanager/LayerSheet.h"
#include "layermanager/LayerValues.h"

namespace layermanager {

namespace {

QStringList linetypeChoices(const LayerSheet& sheet) {
    QStringList names;
    for (const NamedEntry& e : sheet.linetypes().entries()) {
        const OxString& name = e.name;
        if (name.compareNoCase(L"ByLayer") == 0 || name.compareNoCase(L"ByBlock") == 0) continue;
        names << QString::fromStdWString(name.str());
    }
    return names;
}

QStringList lineweightChoices() {
    QStringList texts{QString::fromStdWString(lineweightText(-3))};
    for (int weight : vxlayer::kValidLineWeights) texts << QString::fromStdWString(lineweightText(weight));
    return texts;
}

QStringList plotStyleChoices() {
    OxArray<OxString> names;
    PavoLayerHelper::getAllPlotStyleName(names);
    QStringList texts;
    for (const OxString& name : names) texts << QString::fromStdWString(name.str());
    return texts;
}

} // namespace

QWidget* PropertyDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    QStringList choices;
    switch (overriddenColumn(static_cast<LayerColumn>(index.column()))) {
    case LayerColumn::Linetype: choices = linetypeChoices(m_sheet); break;
    case LayerColumn::Lineweight: choices = lineweightChoices(); break;
    case LayerColumn::PlotStyle: choices = plotStyleChoices(); break;
    case LayerColumn::Transparency: {
        auto* box = new QSpinBox(parent);
        box->setRange(0, 90);
        return box;
    }
    default: return QStyledItemDelegate::createEditor(parent, option, index);
    }
    auto* combo = new QComboBox(parent);
    combo->addItems(choices);
    return combo;
}

void PropertyDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        const int found = combo->findText(text, Qt::MatchFixedString);
        if (found >= 0) combo->setCurrentIndex(found);
    } else if (auto* box = qobject_cast<QSpinBox*>(editor)) {
        box->setValue(text.toInt());
    } else {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

void PropertyDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    QString text;
    if (auto* combo = qobject_cast<QComboBox*>(editor))
        text = combo->currentText();
    else if (auto* box = qobject_cast<QSpinBox*>(editor))
        text = QString::number(box->value());
    else
        return QStyledItemDelegate::setModelData(editor, model, index);
    // An editor closed on the value it opened with changes nothing.
    if (text != index.data(Qt::EditRole).toString()) model->setData(index, text, Qt::EditRole);
}

} // namespace layermanager
