// The entry the module calls to show the SETBYLAYER settings dialog.
#include "DlgSetByLayer.h"
#include "PavoExport.h"
#include "commands/setbylayer/SettingsDialogLauncher.h"

PAVO_MODULE_EXPORT int VxSetByLayerSettingsDialog(std::uint16_t* mode, bool colorDependentPlotStyles) {
    if (!mode) return IDCANCEL;
    DlgSetByLayer dialog(AfxGetMainWnd());
    dialog.m_mode = *mode;
    dialog.m_bColorDependentPlotStyles = colorDependentPlotStyles;
    const int result = dialog.DoModal();
    if (result == IDOK) *mode = dialog.m_mode;
    return result;
}

// The entry's type must stay what the module calls.
static_assert(std::is_same_v<decltype(&VxSetByLayerSettingsDialog), vxlayer::setbylayer::SettingsDialogEntry>);
