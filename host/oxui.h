// What the host says about showing dialogs. Declared apart from the dialog
// classes (OxUiDialog.h) so that code which only asks does not pull in Qt.
#pragma once

#include "PavoExport.h"

// Results of a modal dialog (COxUiDialog::DoModal).
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

// 0 when a dialog can be shown now. Otherwise (dialogs turned off, no
// display) prints why in one line and returns IDCANCEL, the result of a
// dialog that was not shown.
PAVO_HOST_API int oxuiRefuseDialog();
