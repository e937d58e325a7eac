#include "layermanager/LayerManagerDialog.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <algorithm>
#include <unordered_set>

#include "layerhelper/LayerNameList.h"
#include "layermanager/LayerTableModel.h"
#include "layermanager/PropertyDelegate.h"
#include "ui/DialogScript.h"

namespace layermanager {

namespace {

// Room for each column's values; a heading wider than that widens it.
constexpr int kColumnWidths[kColumnCount] = {52, 220, 44, 56, 56, 48, 130, 120, 96, 96, 90, 104, 240,
                                             72, 130, 120, 96, 96, 90};

template <class W> W* control(COxUiDialog& dialog, const char* name) {
    return qobject_cast<W*>(dialog.getWidgetsFromOrignal(name));
}

} // namespace

LayerManagerDialog::LayerManagerDialog(CWnd* parent, OxDbDatabase* db) : COxUiDialog(parent), m_sheet(db) {
    if (!generateUICtrls(L"VxLayerManagerRes/VxLayerManager", L"IDD_LAYER_MANAGER", true)) return;
    bindSingals();
    m_table = control<QTableView>(*this, "IDC_LAYER_TABLE");
    m_filter = control<QLineEdit>(*this, "IDC_LAYER_FILTER");
    m_status = control<QLabel>(*this, "IDC_LAYER_STATUS");
    m_message = control<QLabel>(*this, "IDC_LAYER_MESSAGE");
    const struct {
        const char* name;
        const char* slot;
    } buttons[] = {
        {"IDC_LAYER_NEW", SLOT(OnClickedNew())},
        {"IDC_LAYER_DELETE", SLOT(OnClickedDelete())},
        {"IDC_LAYER_CURRENT", SLOT(OnClickedCurrent())},
        {"IDC_LAYER_APPLY", SLOT(OnClickedApply())},
    };
    for (const auto& b : buttons)
        if (QWidget* w = getWidgetsFromOrignal(b.name)) connect(w, SIGNAL(clicked()), this, b.slot);
    if (m_filter) connect(m_filter, &QLineEdit::textChanged, this, &LayerManagerDialog::OnFilterChanged);
    setUpTable();
    addScriptActions();
}

LayerManagerDialog::~LayerManagerDialog() = default;

void LayerManagerDialog::setUpTable() {
    if (!m_table) return;
    m_model = new LayerTableModel(m_sheet, this);
    m_table->setModel(m_model);
    m_model->setSelectionModel(m_table->selectionModel());
    m_model->onMessage = [this](const std::wstring& message) {
        report(message);
        updateStatus();
    };
    m_table->setItemDelegate(new PropertyDelegate(m_sheet, m_table));
    // Every row the same height, fixed: the view then never measures rows.
    QHeaderView* rows = m_table->verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    rows->hide();
    QHeaderView* columns = m_table->horizontalHeader();
    for (int c = 0; c < kColumnCount; ++c) {
        const QString heading = QString::fromWCharArray(columnHeading(static_cast<LayerColumn>(c)));
        columns->resizeSection(c, std::max(kColumnWidths[c], columns->fontMetrics().horizontalAdvance(heading) + 28));
        // The viewport's columns, only in a viewport; Description then
        // comes last but for them.
        if (isViewportColumn(static_cast<LayerColumn>(c))) m_table->setColumnHidden(c, !m_sheet.hasViewport());
    }
    if (m_sheet.hasViewport()) {
        // The viewport's columns stand beside the layer's own, before New VP
        // Freeze and Description, and the dialog widens for them.
        const int before = columns->visualIndex(static_cast<int>(LayerColumn::NewVpFreeze));
        for (int c = kLayerColumnCount; c < kColumnCount; ++c)
            columns->moveSection(columns->visualIndex(c), before + (c - kLayerColumnCount));
        resize(width() + 480, height());
    }
    columns->setStretchLastSection(true);
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(static_cast<int>(LayerColumn::Name), Qt::AscendingOrder);
    connect(columns, &QHeaderView::sortIndicatorChanged, this,
            [this](int column, Qt::SortOrder order) { m_model->sort(column, order); });
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::SelectedClicked);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { updateStatus(); });
}

int LayerManagerDialog::OnInitDialog() {
    COxUiDialog::OnInitDialog();
    if (m_table && m_sheet.current() != kNoEntry) {
        const int row = m_model->shownRow(m_sheet.current());
        if (row >= 0) {
            m_table->selectRow(row);
            m_table->scrollTo(m_model->index(row, 0));
        }
    }
    report(L"");
    updateStatus();
    return 1;
}

void LayerManagerDialog::OnOK() {
    m_sheet.apply();
    COxUiDialog::OnOK();
}

void LayerManagerDialog::report(const std::wstring& message) {
    const QString text = QString::fromStdWString(message);
    if (m_message) m_message->setText(text);
    if (!text.isEmpty())
        for (const QString& line : text.split(QLatin1Char('\n'))) say(line);
}

void LayerManagerDialog::updateStatus() {
    if (!m_status) return;
    const std::size_t selected = m_model ? m_model->selectedRows().size() : 0;
    QString text = QStringLiteral("%1 layers, %2 shown, %3 selected")
                       .arg(m_sheet.layerCount())
                       .arg(m_sheet.shown().size())
                       .arg(selected);
    if (m_sheet.hasChanges()) text += QStringLiteral(" (changes not applied)");
    m_status->setText(text);
}

void LayerManagerDialog::selectSheetRows(const RowList& rows) {
    if (!m_table) return;
    std::vector<int> shown;
    shown.reserve(rows.size());
    std::vector<int> position(m_sheet.rows().size(), -1);
    for (std::size_t i = 0; i < m_sheet.shown().size(); ++i) position[m_sheet.shown()[i]] = static_cast<int>(i);
    for (std::uint32_t r : rows)
        if (position[r] >= 0) shown.push_back(position[r]);
    std::sort(shown.begin(), shown.end());
    // Runs of neighbouring rows become one range each.
    QItemSelection selection;
    for (std::size_t i = 0; i < shown.size();) {
        std::size_t j = i;
        while (j + 1 < shown.size() && shown[j + 1] == shown[j] + 1) ++j;
        selection.select(m_model->index(shown[i], 0), m_model->index(shown[j], kColumnCount - 1));
        i = j + 1;
    }
    m_table->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!shown.empty()) {
        m_table->selectionModel()->setCurrentIndex(m_model->index(shown.front(), 1), QItemSelectionModel::NoUpdate);
        m_table->scrollTo(m_model->index(shown.front(), 1));
    }
    updateStatus();
}

// ---------------------------------------------------------------- buttons

void LayerManagerDialog::OnClickedNew() {
    const std::uint32_t row = m_sheet.newLayer();
    m_model->sheetReset();
    selectSheetRows({row});
    report(L"");
    // A person names the new layer at once; a script does it with @set.
    if (!pavo::ui::scriptDrivesDialogs())
        m_table->edit(m_model->index(m_model->shownRow(row), static_cast<int>(LayerColumn::Name)));
}

void LayerManagerDialog::OnClickedDelete() {
    RowList rows = m_model->selectedRows();
    const std::wstring message = m_sheet.deleteRows(rows);
    m_model->sheetReset();
    // The layers that were refused stay selected.
    std::erase_if(rows, [&](std::uint32_t r) { return m_sheet.row(r).deleted; });
    selectSheetRows(rows);
    report(message);
}

void LayerManagerDialog::OnClickedCurrent() {
    const RowList rows = m_model->selectedRows();
    if (rows.size() != 1) {
        report(L"Select one layer to make current.");
        return;
    }
    report(m_sheet.makeCurrent(rows.front()));
    m_model->valuesChanged();
    updateStatus();
}

void LayerManagerDialog::OnClickedApply() {
    // Rows are read again from the drawing: the selection is kept by name.
    std::unordered_set<std::wstring> selected;
    for (std::uint32_t r : m_model->selectedRows()) selected.insert(m_sheet.row(r).name.str());
    m_sheet.apply();
    m_model->sheetReset();
    RowList rows;
    for (std::uint32_t r : m_sheet.shown())
        if (selected.count(m_sheet.row(r).name.str())) rows.push_back(r);
    selectSheetRows(rows);
    report(L"");
}

void LayerManagerDialog::OnFilterChanged(const QString& text) {
    m_sheet.setFilter(text.toStdWString());
    m_model->sheetReset();
    updateStatus();
}

// ---------------------------------------------------------------- scripts

void LayerManagerDialog::addScriptActions() {
    const auto click = [this](const char* name) {
        return [this, name](const QString&) { runScriptLine(QStringLiteral("@click ") + QLatin1String(name)); };
    };
    addScriptAction(QStringLiteral("filter"), QStringLiteral("@filter TEXT"), [this](const QString& text) {
        if (m_filter) m_filter->setText(text);
        say(m_status ? m_status->text() : QString());
    });
    addScriptAction(QStringLiteral("select"), QStringLiteral("@select NAME[,NAME...]"),
                    [this](const QString& list) { scriptSelect(list); });
    addScriptAction(QStringLiteral("set"), QStringLiteral("@set COLUMN VALUE"),
                    [this](const QString& arguments) { scriptSet(arguments); });
    addScriptAction(QStringLiteral("current"), QStringLiteral("@current"), click("IDC_LAYER_CURRENT"));
    addScriptAction(QStringLiteral("new"), QStringLiteral("@new"), click("IDC_LAYER_NEW"));
    addScriptAction(QStringLiteral("delete"), QStringLiteral("@delete"), click("IDC_LAYER_DELETE"));
    addScriptAction(QStringLiteral("apply"), QStringLiteral("@apply"), click("IDC_LAYER_APPLY"));
    addScriptAction(QStringLiteral("sort"), QStringLiteral("@sort COLUMN [descending]"),
                    [this](const QString& arguments) { scriptSort(arguments); });
    addScriptAction(QStringLiteral("rows"), QStringLiteral("@rows"), [this](const QString&) { scriptRows(); });
}

void LayerManagerDialog::scriptSelect(const QString& list) {
    if (list.trimmed().isEmpty()) {
        say(QStringLiteral("@select needs a layer name list."));
        return;
    }
    const vxlayer::LayerNameList names(list.toStdWString(), false);
    RowList rows;
    for (std::uint32_t r : m_sheet.shown())
        if (names.selects(m_sheet.row(r).name)) rows.push_back(r);
    if (rows.empty()) say(QStringLiteral("No layer shown matches %1; nothing is selected.").arg(list));
    selectSheetRows(rows);
    say(m_status ? m_status->text() : QString());
}

void LayerManagerDialog::scriptSet(const QString& arguments) {
    // The longest heading the line starts with ("Plot Style" before "Plot").
    std::optional<LayerColumn> column;
    int headingLength = 0;
    for (int c = 1; c < kColumnCount; ++c) {
        const QString heading = QString::fromWCharArray(columnHeading(static_cast<LayerColumn>(c)));
        const bool starts = arguments.startsWith(heading, Qt::CaseInsensitive) &&
                            (arguments.size() == heading.size() || arguments[heading.size()] == QLatin1Char(' '));
        if (starts && heading.size() > headingLength) {
            column = static_cast<LayerColumn>(c);
            headingLength = static_cast<int>(heading.size());
        }
    }
    if (!column) {
        const QString word = arguments.section(QLatin1Char(' '), 0, 0);
        say(QStringLiteral("Unknown column \"%1\"; nothing changed. The columns are %2.")
                .arg(word, QString::fromWCharArray(settableHeadings())));
        return;
    }
    const QString value = arguments.mid(headingLength).trimmed();
    report(m_sheet.setValue(m_model->selectedRows(), *column, value.toStdWString()));
    m_model->valuesChanged();
    updateStatus();
}

void LayerManagerDialog::scriptSort(const QString& arguments) {
    QString heading = arguments.trimmed();
    Qt::SortOrder order = Qt::AscendingOrder;
    for (const QString& word : {QStringLiteral("descending"), QStringLiteral("ascending")}) {
        if (!heading.endsWith(QLatin1Char(' ') + word, Qt::CaseInsensitive)) continue;
        if (word == QLatin1String("descending")) order = Qt::DescendingOrder;
        heading.chop(word.size() + 1);
        heading = heading.trimmed();
    }
    const std::optional<LayerColumn> column = heading.compare(QLatin1String("Status"), Qt::CaseInsensitive) == 0
                                                  ? std::optional<LayerColumn>(LayerColumn::Status)
                                                  : settableColumn(heading.toStdWString());
    if (!column) {
        say(QStringLiteral("Unknown column \"%1\". The columns are Status, %2.")
                .arg(heading, QString::fromWCharArray(settableHeadings())));
        return;
    }
    // As a click on the column's heading does it.
    if (m_table) m_table->horizontalHeader()->setSortIndicator(static_cast<int>(*column), order);
}

void LayerManagerDialog::scriptRows() {
    say(m_status ? m_status->text() : QString());
    for (std::uint32_t r : m_sheet.shown()) {
        const LayerRow& row = m_sheet.row(r);
        QString line = QString::fromStdWString(row.name.str());
        if (m_sheet.isCurrent(row)) line += QStringLiteral(" (current)");
        line += QLatin1Char(':');
        const int columns = m_sheet.hasViewport() ? kColumnCount : kLayerColumnCount;
        for (int c = 2; c < columns; ++c) {
            const auto column = static_cast<LayerColumn>(c);
            line += QStringLiteral(" %1=%2").arg(QString::fromWCharArray(columnHeading(column)),
                                                 QString::fromStdWString(m_sheet.displayText(row, column)));
            if (row.isOverridden(column)) line += QStringLiteral(" (override)");
        }
        say(line);
    }
}

} // namespace layermanager
