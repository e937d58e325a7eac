#include "LineWeightTable.h"
#include "OxDb.h"
#include "PavoLayerHelper.h"

bool PavoLayerHelper::isValidLineWeight(int lineWeight, int flags) {
    // A special value whose bit is clear falls through to the table, where
    // no negative value is found.
    if (lineWeight == OxDb::kLnWtByLayer && (flags & kAcceptByLayer)) return true;
    if (lineWeight == OxDb::kLnWtByBlock && (flags & kAcceptByBlock)) return true;
    if (lineWeight == OxDb::kLnWtByLwDefault && (flags & kAcceptDefault)) return true;
    for (const int valid : vxlayer::kValidLineWeights)
        if (valid == lineWeight) return true;
    return false;
}

int vxlayer::nearestStandardLineWeight(int lineWeight) {
    for (int i = 0; i + 1 < kLineWeightCount; ++i) {
        const int lower = kValidLineWeights[i];
        const int upper = kValidLineWeights[i + 1];
        if (lineWeight == lower || lineWeight == upper) return lineWeight;
        if (lineWeight > lower && lineWeight < upper) return lineWeight - lower < upper - lineWeight ? lower : upper;
    }
    return lineWeight;
}
