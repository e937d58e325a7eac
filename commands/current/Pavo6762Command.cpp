#include "Pavo6762Command.h"

#include <cwchar>
#include <string>

#include "module/HostModules.h"
#include "module/ResourceScope.h"
#include "oxed.h"
#include "win32compat.h"

namespace {

constexpr int kNameSize = 1024;

bool noDialogPossible(IPavoBuildInCommandContext* ctx) {
    if (ctx->isNoDialogContext()) return true;
    if (oxedCurFDERunning()) return true;
    const PavoDocumentData* state = ctx->documentState();
    return state && (state->stateFlags & 5u) != 0;
}

void openLayerManagerDialog() {
    wchar_t prefix[kNameSize] = {};
    std::wstring built = GetPavoProductPreName(prefix) != 0 ? std::wstring(prefix) + L"LayerManager.pvx"
                                                            : std::wstring(L"VxLayerManager.pvx");
    wchar_t name[kNameSize] = {};
    std::wcsncpy(name, built.c_str(), kNameSize - 1);

    if (FARPROC entry = vxlayer::hostModuleEntry(name, "LayerDialog")) entry();
}

} // namespace

int Pavo6762Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    const bool noDialog = noDialogPossible(ctx);
    const bool wantDialog = ctx->isDialogRequested();
    if (noDialog && !wantDialog) return Pavo6763Command::execute(ctx);
    openLayerManagerDialog();
    return 0;
}
