// "-LAYER" option Ltype: lists the drawing's linetypes, or sets a linetype
// on the layers of a name list, loading it from the standard linetype file
// when the drawing lacks it.
#include <array>

#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/Linetypes.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/WorkingDatabase.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr int kLinesPerPage = 20;

// Waits for Enter between pages; false when the user cancels.
bool continueListing() {
    oxedInitGet(0, nullptr);
    OxString ignored;
    const int status = oxedGetKword(L"", ignored);
    return status != STATUS_CANCEL && status != STATUS_ERROR;
}

int listLinetypes() {
    oxedInitGet(OX_INP_NONULL, nullptr);
    OxString pattern;
    int status =
        oxedGetString(1, oxmdOxResourceString(10067, L"\nEnter the Linetype(s) to list <* for all>: "), pattern);
    if (status != STATUS_NORMAL) return status;
    PavoLayerHelper::trimName(pattern);
    if (pattern.isEmpty()) pattern = L"*";
    OxArray<OxDbObjectId> ids;
    status = PavoLayerHelper::getMatchedLTypeList(pattern, ids);
    if (status != STATUS_NORMAL) return status;

    vxlayer::TextScreenListing listing;
    oxutPrintf(oxmdOxResourceString(10103, L"\n  Linetype name                       Description"));
    oxutPrintf(oxmdOxResourceString(10104, L"\n------------------------------- -----------------------"));
    if (ids.isEmpty()) {
        oxutPrintf(L"\n%ls", oxmdOxResourceString(10109, L"Matching linetype names not found."));
        return STATUS_NORMAL;
    }
    for (int i = 0; i < ids.length(); ++i) {
        OxDbLinetypeTableRecord* linetype = nullptr;
        if (oxdbOpenObject(linetype, ids[i], OxDb::kForRead) != Ox::eOk) break;
        OxString name, description;
        linetype->getName(name);
        linetype->comments(description);
        linetype->close();
        oxutPrintf(L"\n %-*.*s", 31, 31, name);
        oxutPrintf(L"%-50.50s", description);
        const int shown = i + 1;
        if (shown % kLinesPerPage == 0 && shown < ids.length() && !continueListing()) break;
    }
    return STATUS_NORMAL;
}

} // namespace

int Pavo6763Command::_branch_ltype() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    oxedInitGet(OX_INP_NONULL, L"? _?");
    OxString name;
    int status = oxedGetString(1, oxmdOxResourceString(10084, L"\nEnter linetype or [?] <Default>: "), name);
    if (status != STATUS_NORMAL) return status;
    PavoLayerHelper::trimName(name);
    if (name.isEmpty()) name = L"CONTINUOUS";
    if (name.compareNoCase(L"?") == 0) return listLinetypes();
    if (name.compareNoCase(L"BYBLOCK") == 0 || name.compareNoCase(L"BYLAYER") == 0) {
        // Layers cannot take these.
        oxutPrintf(oxmdOxResourceString(10087, L"\"%ls\" is invalid linetype name."), name);
        return STATUS_NORMAL;
    }
    const OxDbObjectId linetypeId = vxlayer::linetypeOrLoad(db, name);
    if (linetypeId.isNull()) return STATUS_ERROR;

    const OxString currentLayer = vxlayer::currentLayerName();
    OxString prompt;
    prompt.format(oxmdOxResourceString(10088, L"\nEnter the name list of layers to apply linetype %ls <%s>: "), name,
                  currentLayer);
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(m_context, prompt, currentLayer, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [&](OxDbLayerTableRecord& layer) { layer.setLinetypeObjectId(linetypeId); });
    return STATUS_NORMAL;
}
