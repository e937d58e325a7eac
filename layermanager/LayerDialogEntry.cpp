// The module's one entry: "LAYER" calls it to show the layer manager on the
// drawing of the active document.
#include "PavoExport.h"
#include "layerhelper/WorkingDatabase.h"
#include "layermanager/LayerManagerDialog.h"
#include "oxui.h"

PAVO_MODULE_EXPORT void LayerDialog() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db || oxuiRefuseDialog()) return;
    layermanager::LayerManagerDialog dialog(AfxGetMainWnd(), db);
    dialog.DoModal();
}
