// The standard lineweights and their inch equivalents, shared by the
// lineweight check and the commands that read lineweights from users.
#pragma once

#include <array>

namespace vxlayer {

inline constexpr int kLineWeightCount = 24;
// Hundredths of a millimetre, ascending.
inline constexpr std::array<int, kLineWeightCount> kValidLineWeights = {
    0, 5, 9, 13, 15, 18, 20, 25, 30, 35, 40, 50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
// The same lineweights in inches, entry for entry.
inline constexpr std::array<double, kLineWeightCount> kLineWeightInches = {
    0.0,   0.002, 0.004, 0.005, 0.006, 0.007, 0.009, 0.01,  0.012, 0.014, 0.016, 0.02,
    0.021, 0.024, 0.028, 0.031, 0.035, 0.039, 0.042, 0.047, 0.055, 0.062, 0.079, 0.083};

// The standard lineweights as the lineweight listings print them, in
// millimetres (the inch lines differ between the commands).
inline constexpr const wchar_t* kMillimetreListLines[4] = {
    L"\n 0.00 mm 0.05 mm  0.09 mm 0.13 mm 0.15 mm  0.18 mm",
    L"\n 0.20 mm 0.25 mm  0.30 mm 0.35 mm 0.40 mm  0.50 mm",
    L"\n 0.53 mm 0.60 mm  0.70 mm 0.80 mm 0.90 mm  1.00 mm",
    L"\n 1.06 mm 1.20 mm  1.40 mm 1.58 mm 2.00 mm  2.11 mm",
};

// The standard lineweight nearest to `lineWeight` (hundredths of a mm)
// when it lies between two of them, the larger on a tie; `lineWeight`
// itself when it is standard or outside the table.
int nearestStandardLineWeight(int lineWeight);

} // namespace vxlayer
