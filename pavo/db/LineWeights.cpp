#include "LineWeights.h"

#include <algorithm>
#include <cmath>

namespace pavo::db {

bool isStandardLineWeight(long long hundredths) {
    return std::find(kStandardLineWeights.begin(), kStandardLineWeights.end(), hundredths) !=
           kStandardLineWeights.end();
}

bool isEntityLineWeight(long long hundredths) {
    return hundredths == OxDb::kLnWtByLayer || hundredths == OxDb::kLnWtByBlock ||
           hundredths == OxDb::kLnWtByLwDefault || isStandardLineWeight(hundredths);
}

bool isLayerLineWeight(long long hundredths) {
    return hundredths == OxDb::kLnWtByLwDefault || isStandardLineWeight(hundredths);
}

std::optional<OxDb::LineWeight> standardLineWeightOfMillimetres(double millimetres) {
    const double hundredths = millimetres * 100.0;
    for (int standard : kStandardLineWeights)
        if (std::abs(hundredths - standard) < 0.01) return static_cast<OxDb::LineWeight>(standard);
    return std::nullopt;
}

} // namespace pavo::db
