// The step the override options and reMoveoverrides share: every chosen
// layer, open for write one at a time, with every chosen viewport.
#pragma once

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "Pavo6831Command.h"
#include "VPLayerStatus.h"

template <class Change> void Pavo6831Command::changeTargetLayers(Change change) {
    for (const OxDbObjectId& id : targetLayerIds) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        if (id == database->clayer()) resetCurrentLayer = true;
        change(*layer);
        layer->close();
    }
}

// Viewports are not opened: an override is kept by viewport id alone.
template <class Set> int Pavo6831Command::applyOverride(int code, Set set) {
    const int status = AcquireLayerNames(code);
    if (status != STATUS_NORMAL) return vxlayer::optionStatus(status);
    if (!targetLayerIds.isEmpty()) {
        changeTargetLayers([&](OxDbLayerTableRecord& layer) {
            for (const OxDbObjectId& viewportId : viewportIds)
                set(layer, viewportId);
        });
    }
    needRegen = true;
    return STATUS_NORMAL;
}
