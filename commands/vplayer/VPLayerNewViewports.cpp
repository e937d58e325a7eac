// "VPLAYER" options Newfrz (new layers frozen in every viewport, and in the
// viewports made later) and Vpvisdflt (whether layers start frozen in the
// viewports made later).
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "Pavo6831Command.h"
#include "VPLayerLayouts.h"
#include "VPLayerStatus.h"
#include "layerhelper/LayerRecords.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// The viewports of every paper-space layout, in layout dictionary order.
OxArray<OxDbObjectId> paperSpaceViewports(OxDbDatabase* database) {
    OxArray<OxDbObjectId> viewports;
    OxDbDictionary* layouts = nullptr;
    if (database->getLayoutDictionary(layouts, OxDb::kForRead) != Ox::eOk) return viewports;
    vxlayer::forEachLayout(*layouts, [&](OxDbLayout& layout) {
        OxString name;
        layout.getLayoutName(name);
        if (name.compareNoCase(L"Model") != 0) viewports.append(layout.getViewportArray());
    });
    layouts->close();
    return viewports;
}

} // namespace

int Pavo6831Command::VPLayerNewfrz() {
    oxedInitGet(0, nullptr);
    OxString answer;
    const int status =
        oxedGetStringForName(context, oxmdOxResourceString(10563, L"\nNew frozen layer name(s): "), answer);
    if (status == STATUS_NONE || status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status != STATUS_NORMAL) return status;
    if (answer.isEmpty()) return STATUS_NORMAL;
    if (VerifyLayerList(answer, true) != STATUS_NORMAL) return STATUS_NORMAL;
    if (!database) return STATUS_ERROR;
    resetCurrentLayer = false;
    OxDbLayerTable* table = nullptr;
    if (database->getSymbolTable(table, OxDb::kForWrite) != Ox::eOk || !table) return STATUS_ERROR;

    // Each successful add writes its layer's id here and nothing resets it,
    // so after the loop it names the last layer made: only that one is
    // frozen in the existing viewports, though every new layer is marked
    // frozen for the viewports made later.
    OxDbObjectId keptId;
    for (const OxString& name : newLayerNames) {
        OxDbLayerTableRecord* layer = vxlayer::newLayerRecord(database, name);
        OxDbDictionary* plotSettings = nullptr;
        if (database->getPlotSettingsDictionary(plotSettings, OxDb::kForRead) != Ox::eOk) {
            // Without the plot settings no layer is made, deliberately.
            delete layer;
            continue;
        }
        OxDbObjectId normal;
        if (plotSettings->getAt(L"NORMAL", normal) == Ox::eOk) layer->setPlotStyleName(normal);
        OxCmColor white;
        white.setColorIndex(7);
        layer->setColor(white);
        layer->setVPDFLT(true);
        layer->setDescription(L"");
        // A name given twice in the list is refused by the table the second
        // time: that record is dropped and the layer made before it stays
        // the last one made.
        OxDbObjectId added;
        if (table->add(added, layer) == Ox::eOk && !added.isNull()) {
            keptId = added;
            OxDbSystemInternals::getImpObject(layer)->setIsInUseBit(false);
            plotSettings->close();
            layer->close();
        } else {
            plotSettings->close();
            delete layer;
        }
    }
    table->close();
    if (keptId.isNull()) return STATUS_NORMAL;

    OxArray<OxDbObjectId> one;
    one.append(keptId);
    for (const OxDbObjectId& id : paperSpaceViewports(database)) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, id, OxDb::kForWrite) != Ox::eOk) continue;
        // Viewport 1, the layout's own sheet, is left alone.
        if (viewport->number() > 1) viewport->freezeLayersInViewport(one);
        viewport->close();
    }
    needRegen = true;
    return STATUS_NORMAL;
}

int Pavo6831Command::VPLayerVpvisdflt() {
    oxedInitGet(0, nullptr);
    OxString answer;
    int status = oxedGetStringForName(
        context,
        oxmdOxResourceString(
            10597, L"\nEnter layer(s) name to change VP visibility or <specify layers by object selection>: "),
        answer);
    if (status != STATUS_NORMAL) return vxlayer::vpvisdfltStatus(status);
    if (answer.isEmpty()) {
        status = AcquireLayerNamesBySelObj();
        if (status != STATUS_NORMAL) return vxlayer::vpvisdfltStatus(status);
    } else if (VerifyLayerList(answer, false) != STATUS_NORMAL) {
        return STATUS_NORMAL;
    }

    oxedInitGet(0, oxmdOxResourceString(10566, L"Frozen Thawed _Frozen Thawed"));
    OxString setting;
    status = oxedGetKword(oxmdOxResourceString(10565, L"Setting Frozen/<Thawed>: "), setting);
    if (status == STATUS_NONE) setting = L"Thawed";
    else if (status != STATUS_NORMAL) return STATUS_NORMAL;

    // The layers themselves: this option asks for no viewports.
    const bool frozen = setting.compareNoCase(L"Frozen") == 0;
    if (frozen || setting.compareNoCase(L"Thawed") == 0) {
        for (const OxDbObjectId& id : layerIds) {
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
            layer->setVPDFLT(frozen);
            layer->close();
        }
    }
    needRegen = true;
    return STATUS_NORMAL;
}
