// "VPLAYER" option PStyle (named plot styles only): a per-viewport plot
// style override.
#include "OxDbDatabase.h"
#include "Pavo6831Command.h"
#include "VPLayerApply.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/PlotStyleChoices.h"
#include "oxed.h"
#include "oxmd.h"

int Pavo6831Command::VPLayerPlotStyle() {
    if (!database) return STATUS_ERROR;
    OxString defaultStyle;
    if (!vxlayer::currentLayerPlotStyle(database, defaultStyle)) return STATUS_ERROR;

    oxedInitGet(0, nullptr);
    OxString prompt;
    prompt.format(oxmdOxResourceString(10587, L"\nEnter Print Style Name or [?] <%ls>: "), defaultStyle);
    OxString style;
    const int status = oxedGetStringForName(context, prompt, style);
    // Enter keeps things as they are, although a default is shown.
    if (status == STATUS_NONE || status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status != STATUS_NORMAL) return status;
    if (style.isEmpty()) return STATUS_NORMAL;
    if (style == L"?") {
        vxlayer::listPlotStyleNames(
            oxmdOxResourceString(10577, L"\nPrint Style Name\n -------------------------------"));
        return VPLayerPlotStyle();
    }
    if (!PavoLayerHelper::isValidPlotStyleName(style)) {
        oxedPrompt(oxmdOxResourceString(10589, L"\nUnknown plot style."));
        return VPLayerPlotStyle();
    }
    vxlayer::ensurePlotStyleEntry(database, style);
    return applyOverride(5, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        layer.setPlotStyleName(style.kwszPtr(), viewportId);
    });
}
