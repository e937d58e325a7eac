// The bits of the SETBYLAYER settings mask, which are also the values of
// the SETBYLAYERMODE system variable.
#pragma once

#include <cstdint>

namespace vxlayer::setbylayer {

enum ModeBit : std::uint16_t {
    kColor = 1,
    kLinetype = 2,
    kLineweight = 4,
    kMaterial = 8,
    kPlotStyle = 16,         // ignored under colour-dependent plot styles
    kByBlockToByLayer = 32,  // asked at the command line, not in the dialog
    kIncludeBlocks = 64,     // asked at the command line, not in the dialog
    kTransparency = 128,
};

inline constexpr std::uint16_t kAllModeBits = 255;

} // namespace vxlayer::setbylayer
