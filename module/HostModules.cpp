#include "HostModules.h"

#include "OxRx.h"

namespace vxlayer {

FARPROC hostModuleEntry(const wchar_t* moduleName, const char* symbol) {
    if (!GetModuleHandleW(moduleName)) {
        OxRxDynamicLinker* linker = nullptr;
        if (OxRxObject* entry = oxrxSysRegistry()->lookupEntry(L"DynamicLinker"))
            if (OxRxClass::isDerivedFrom(entry->isA(), OxRxDynamicLinker::desc()))
                linker = static_cast<OxRxDynamicLinker*>(entry);
        if (linker) linker->loadModule(moduleName, false, false);
    }
    HMODULE module = GetModuleHandleW(moduleName);
    return module ? GetProcAddress(module, symbol) : nullptr;
}

} // namespace vxlayer
