// Display names of the layer state properties, in mask bit order.
#pragma once

#include "OxString.h"

namespace vxlayer {

inline constexpr int kLayerStatePropertyCount = 9;
// Built at load time, right after the application object.
extern const OxString g_layerStateNames[kLayerStatePropertyCount];

} // namespace vxlayer
