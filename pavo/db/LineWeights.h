// The standard lineweights, the only ones a drawing holds besides ByLayer,
// ByBlock and Default.
#pragma once

#include <array>
#include <optional>

#include "OxDb.h"

namespace pavo::db {

// In hundredths of a millimetre, thinnest first.
inline constexpr std::array<int, 24> kStandardLineWeights = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                                             53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

bool isStandardLineWeight(long long hundredths);
// A standard lineweight or -1 ByLayer, -2 ByBlock, -3 Default.
bool isEntityLineWeight(long long hundredths);
// What a layer (or a layer's override) may have: a standard lineweight or
// -3 Default, never ByLayer or ByBlock.
bool isLayerLineWeight(long long hundredths);
// The standard lineweight of `millimetres` (to a ten-thousandth of a
// millimetre); nullopt when there is none.
std::optional<OxDb::LineWeight> standardLineWeightOfMillimetres(double millimetres);

} // namespace pavo::db
