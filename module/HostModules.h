// Other modules of the host that this module calls into: loaded through
// the host's "DynamicLinker" service when first needed.
#pragma once

#include "win32compat.h"

namespace vxlayer {

// The entry `symbol` of host module `moduleName` ("X.pvx"), loading the
// module first when it is not loaded yet; null when either is missing.
FARPROC hostModuleEntry(const wchar_t* moduleName, const char* symbol);

} // namespace vxlayer
