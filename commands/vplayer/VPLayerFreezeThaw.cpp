// "VPLAYER" options Freeze, Thaw and Reset: which layers show in which
// viewports, and back to a layer's default for new viewports.
#include "OxDbEntity.h"
#include "Pavo6831Command.h"
#include "VPLayerApply.h"
#include "VPLayerStatus.h"

namespace {

// Opens each viewport for write and calls `change(viewport, id)`; viewports
// that do not open are skipped.
template <class Change> void changeViewports(const OxArray<OxDbObjectId>& viewportIds, Change change) {
    for (const OxDbObjectId& id : viewportIds) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, id, OxDb::kForWrite) != Ox::eOk) continue;
        change(*viewport, id);
        viewport->close();
    }
}

} // namespace

int Pavo6831Command::VPLayerFreeze() {
    const int status = AcquireLayerNames(6);
    if (status != STATUS_NORMAL) return vxlayer::optionStatus(status);
    changeViewports(viewportIds, [&](OxDbViewport& v, const OxDbObjectId&) { v.freezeLayersInViewport(targetLayerIds); });
    needRegen = true;
    return STATUS_NORMAL;
}

int Pavo6831Command::VPLayerThaw() {
    const int status = AcquireLayerNames(7);
    if (status != STATUS_NORMAL) return vxlayer::optionStatus(status);
    changeViewports(viewportIds, [&](OxDbViewport& v, const OxDbObjectId&) { v.thawLayersInViewport(targetLayerIds); });
    needRegen = true;
    return STATUS_NORMAL;
}

// Each chosen layer goes back to what a new viewport would give it (frozen
// when it is marked so, else thawed) and loses its overrides there.
int Pavo6831Command::VPLayerReset() {
    if (!database) return STATUS_ERROR;
    const int status = AcquireLayerNames(8);
    if (status != STATUS_NORMAL) return vxlayer::optionStatus(status);
    changeViewports(viewportIds, [&](OxDbViewport& viewport, const OxDbObjectId& viewportId) {
        for (const OxDbObjectId& layerId : targetLayerIds) {
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, layerId, OxDb::kForWrite) != Ox::eOk) continue;
            if (layerId == database->clayer()) resetCurrentLayer = true;
            OxArray<OxDbObjectId> one;
            one.append(layerId);
            if (layer->VPDFLT())
                viewport.freezeLayersInViewport(one);
            else
                viewport.thawLayersInViewport(one);
            layer->removeViewportOverrides(viewportId);
            layer->close();
        }
    });
    needRegen = true;
    return STATUS_NORMAL;
}
