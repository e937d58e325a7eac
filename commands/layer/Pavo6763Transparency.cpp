// "-LAYER" option TRansparency: a percentage from 0 to 90 for the layers of
// a name list, kept as an alpha value (255 opaque).
#include <cstdint>

#include "LayerPrompts.h"
#include "OxCmColor.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/Transparency.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr unsigned int kMostTransparent = 90;

} // namespace

int Pavo6763Command::_branch_transparency() {
    oxedInitGet(0, nullptr);
    int percent = 0;
    int status = oxedGetInt(oxmdOxResourceString(10139, L"\nEnter transparency value (0-90): "), &percent);
    if (status != STATUS_NORMAL) return status;
    // Negative values wrap to huge ones and are refused with the rest.
    if (static_cast<unsigned int>(percent) > kMostTransparent) {
        oxutPrintf(oxmdOxResourceString(10140, L"\nRequires an integer between 0 and 90. "));
        return STATUS_REJECT;
    }

    const OxString currentLayer = vxlayer::currentLayerName();
    OxString prompt;
    prompt.format(oxmdOxResourceString(10141, L"\nEnter name list of layers(s) for transparency %d%% <%ls>: "), percent,
                  currentLayer);
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(m_context, prompt, currentLayer, ids);
    if (status != STATUS_NORMAL) return status;

    OxCmTransparency transparency;
    transparency.setAlpha(vxlayer::alphaOfPercent(percent));
    vxlayer::changeLayers(ids, [&](OxDbLayerTableRecord& layer) { layer.setTransparency(transparency); });
    return STATUS_NORMAL;
}
