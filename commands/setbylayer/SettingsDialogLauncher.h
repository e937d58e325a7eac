// Opens the SETBYLAYER settings dialog. The dialog is a Qt widget, so it
// lives in a library of its own (VxLayerCmdsDlg.pvx) that is loaded the
// first time a dialog can really be shown: a session that shows none never
// loads Qt.
#pragma once

#include <cstdint>

#include "oxui.h"

namespace vxlayer::setbylayer {

inline constexpr int kDialogOk = IDOK;

// The exported entry of the dialog library: shows the dialog on `mode`
// (written back only on OK) and returns what DoModal returned.
using SettingsDialogEntry = int (*)(std::uint16_t* mode, bool colorDependentPlotStyles);
inline constexpr const wchar_t* kDialogLibrary = L"VxLayerCmdsDlg.pvx";
inline constexpr const char* kSettingsDialogEntry = "VxSetByLayerSettingsDialog";

// IDOK with `mode` changed, or IDCANCEL (also when no dialog can be shown,
// after the host said why).
int showSettingsDialog(std::uint16_t& mode, bool colorDependentPlotStyles);

} // namespace vxlayer::setbylayer
