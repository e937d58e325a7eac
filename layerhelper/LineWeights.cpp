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
