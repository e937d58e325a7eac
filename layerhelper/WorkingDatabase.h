// The drawing the host works on.
#pragma once

#include "OxDbServices.h"

namespace vxlayer {

inline OxDbDatabase* workingDatabase() {
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

} // namespace vxlayer
