// The layer manager dialog: the layer table, its filter and status line,
// New, Delete, Set Current, and OK, Cancel, Apply. Every edit is held in the
// sheet until Apply or OK; Cancel leaves the drawing as it was.
#pragma once

#include <memory>

#include "OxUiDialog.h"
#include "layermanager/LayerSheet.h"

class QLabel;
class QLineEdit;
class QTableView;

namespace layermanager {

class LayerTableModel;

class LayerManagerDialog : public COxUiDialog {
    Q_OBJECT
public:
    LayerManagerDialog(CWnd* parent, OxDbDatabase* db);
    ~LayerManagerDialog() override;

    int OnInitDialog() override;
    void OnOK() override;

public slots:
    void OnClickedNew();
    void OnClickedDelete();
    void OnClickedCurrent();
    void OnClickedApply();
    void OnFilterChanged(const QString& text);

private:
    void setUpTable();
    void addScriptActions();
    // Shows (and prints) what an action said; clears the line when empty.
    void report(const std::wstring& message);
    void updateStatus();
    void selectSheetRows(const RowList& rows);
    void scriptSelect(const QString& list);
    void scriptSet(const QString& arguments);
    void scriptSort(const QString& arguments);
    void scriptRows();

    LayerSheet m_sheet;
    LayerTableModel* m_model = nullptr;
    QTableView* m_table = nullptr;
    QLineEdit* m_filter = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_message = nullptr;
};

} // namespace layermanager
