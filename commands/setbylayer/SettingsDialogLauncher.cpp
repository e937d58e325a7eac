#include "SettingsDialogLauncher.h"

#include "module/HostModules.h"
#include "oxed.h"

namespace vxlayer::setbylayer {

int showSettingsDialog(std::uint16_t& mode, bool colorDependentPlotStyles) {
    // Asked before the library is loaded, so that a dialog that cannot be
    // shown costs no Qt.
    if (const int refused = oxuiRefuseDialog()) return refused;
    const auto entry = reinterpret_cast<SettingsDialogEntry>(hostModuleEntry(kDialogLibrary, kSettingsDialogEntry));
    if (!entry) {
        oxutPrintf(L"\nThe settings dialog cannot be shown: %ls is missing.", kDialogLibrary);
        return IDCANCEL;
    }
    return entry(&mode, colorDependentPlotStyles);
}

} // namespace vxlayer::setbylayer
