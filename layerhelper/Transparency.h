// Transparency percentages typed by users, kept as alpha values.
#pragma once

#include <cstdint>

namespace vxlayer {

// 255 (opaque) minus the percentage of 255, cut to a whole number: 0 % is
// 255, 50 % is 127 (from 127.5), 90 % is 25.
inline std::uint8_t alphaOfPercent(int percent) {
    const double alpha = 255.0 - percent * 255.0 / 100.0;
    return static_cast<std::uint8_t>(static_cast<unsigned int>(alpha) & 0xFF);
}

} // namespace vxlayer
