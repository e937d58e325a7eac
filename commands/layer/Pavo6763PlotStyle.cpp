// "-LAYER" options PStyle (a named plot style for the layers of a name
// list; "?" lists the usable names) and Plot / Print (whether layers plot).
#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/PlotStyleChoices.h"
#include "layerhelper/WorkingDatabase.h"
#include "oxed.h"
#include "oxmd.h"

int Pavo6763Command::_branch_pstyle() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    OxString defaultStyle;
    vxlayer::currentLayerPlotStyle(db, defaultStyle);

    oxedInitGet(OX_INP_NONULL, L"? _?");
    OxString prompt;
    prompt.format(oxmdOxResourceString(10096, L"\nEnter Print Style Name or [?] <%ls>: "), defaultStyle);
    OxString style;
    int status = oxedGetStringForName(m_context, prompt, style);
    if (status != STATUS_NORMAL) return status;
    style.trim();
    if (style.isEmpty()) {
        // The current layer's own style needs no check.
        style = defaultStyle;
    } else if (style.compareNoCase(L"?") == 0) {
        vxlayer::listPlotStyleNames(
            oxmdOxResourceString(10095, L"\nPrint Style Name\n -------------------------------"));
        return STATUS_REJECT;
    } else {
        if (!PavoLayerHelper::isValidPlotStyleName(style)) {
            oxutPrintf(oxmdOxResourceString(10120, L"\nUnknown plot style."));
            return STATUS_REJECT;
        }
        vxlayer::ensurePlotStyleEntry(db, style);
    }

    const OxString currentLayer = vxlayer::currentLayerName();
    prompt.format(oxmdOxResourceString(10097, L"\nEnter name list of layer(s) for print style name %ls <%ls>: "), style,
                  currentLayer);
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(m_context, prompt, currentLayer, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [&](OxDbLayerTableRecord& layer) { layer.setPlotStyleName(style.kwszPtr()); });
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_plot() {
    OxString answer;
    int status = vxlayer::askYesNo(
        oxmdOxResourceString(10055, L"Yes No Plot _Yes No Plot"),
        oxmdOxResourceString(10065, L"\nEnter a plotting preference [Plot/No plot] <Plot>: "), answer);
    bool plottable = true; // Enter: the default "Plot"
    if (status == STATUS_NORMAL) {
        if (answer.compareNoCase(L"Yes") == 0 || answer.compareNoCase(L"Plot") == 0)
            plottable = true;
        else if (answer.compareNoCase(L"No") == 0)
            plottable = false;
        else
            return STATUS_NORMAL;
    } else if (status != STATUS_NONE) {
        return status;
    }

    const OxString currentLayer = vxlayer::currentLayerName();
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(
        m_context, oxmdOxResourceString(10066, L"\nEnter the name list of layer(s) to change plot setting: "),
        currentLayer, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [plottable](OxDbLayerTableRecord& layer) { layer.setIsPlottable(plottable); });
    return STATUS_NORMAL;
}
