// "-LAYER" options ON, OFf, Freeze, Thaw, LOck and Unlock: one state flag of
// the layers of a name list or of selected objects.
#include <vector>

#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/WorkingDatabase.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// Asks for the layers an option works on: a typed name list, or (when
// `selectable` and the answer is empty) the layers of selected objects.
// STATUS_NORMAL with the ids (possibly none), or the code that ended it.
int chooseLayers(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, bool selectable, OxArray<OxDbObjectId>& ids) {
    ids.setLogicalLength(0);
    OxString list;
    int status = vxlayer::askLayerNames(ctx, prompt, list);
    if (status != STATUS_NORMAL) return status;
    bool exactMatch = false;
    if (list.isEmpty()) {
        if (!selectable) return STATUS_NORMAL;
        status = vxlayer::layerNamesOfSelection(list);
        if (status != STATUS_NORMAL) return status;
        // Names of selected objects' layers are taken literally.
        exactMatch = !list.isEmpty();
    }
    return PavoLayerHelper::getMatchedLayerList(list, ids, exactMatch);
}

// True when the user confirms turning the current layer off.
bool confirmCurrentLayerOff(const OxString& currentLayer) {
    OxString prompt;
    prompt.format(oxmdOxResourceString(10082, L"\n%ls is the CURRENT layer.  Turn it off anyway? <N>: "), currentLayer);
    OxString answer;
    const int status = vxlayer::askYesNo(oxmdOxResourceString(10053, L"Yes No _Yes No"), prompt, answer);
    return status == STATUS_NORMAL && answer.compareNoCase(L"Yes") == 0;
}

} // namespace

int Pavo6763Command::_branch_layer_on() {
    OxArray<OxDbObjectId> ids;
    const int status = chooseLayers(
        m_context, oxmdOxResourceString(10080, L"\nEnter the name list of layer(s) to turn On: "), false, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [](OxDbLayerTableRecord& layer) { layer.setIsOff(false); });
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_layer_off() {
    OxArray<OxDbObjectId> ids;
    const int status = chooseLayers(
        m_context, oxmdOxResourceString(10081, L"\nEnter the name list of layer(s) to turn Off or <select objects>: "),
        true, ids);
    if (status != STATUS_NORMAL || ids.isEmpty()) return status;

    int expert = 0;
    if (!vxlayer::readIntVariable(L"EXPERT", expert)) expert = 0;
    OxString currentLayer;
    vxlayer::readStringVariable(L"CLAYER", currentLayer);

    // Every record stays open until the walk ends, so a layer named twice is
    // changed (and asked about) once.
    std::vector<OxDbLayerTableRecord*> opened;
    for (const OxDbObjectId& id : ids) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        opened.push_back(layer);
        const bool isCurrent = layer->name().compareNoCase(currentLayer) == 0;
        if (expert == 0 && isCurrent && !confirmCurrentLayerOff(currentLayer)) continue;
        layer->setIsOff(true);
    }
    for (OxDbLayerTableRecord* layer : opened)
        layer->close();
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_layer_freeze() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    OxArray<OxDbObjectId> ids;
    const int status = chooseLayers(
        m_context, oxmdOxResourceString(10098, L"\nEnter the name list of layer(s) to Freeze or <select objects>: "),
        true, ids);
    if (status != STATUS_NORMAL) return status;

    const OxDbObjectId current = db->clayer();
    const OxString refusal =
        oxmdOxResourceString(10100, L"Cannot freeze layer %ls, it is the current layer. Specify a different layer.");
    vxlayer::changeLayers(ids, [&](OxDbLayerTableRecord& layer) {
        if (layer.objectId() == current) {
            OxString message;
            message.format(refusal, layer.name());
            oxutPrintf(L"\n%ls", message);
        }
        // The layer record itself refuses to freeze the current layer.
        layer.setIsFrozen(true);
    });
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_layer_thaw() {
    OxArray<OxDbObjectId> ids;
    const int status = chooseLayers(
        m_context, oxmdOxResourceString(10099, L"\nEnter the name list of layer(s) to Thaw: "), false, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [](OxDbLayerTableRecord& layer) { layer.setIsFrozen(false); });
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_layer_lock(bool lock) {
    const OxString prompt =
        lock ? oxmdOxResourceString(10101, L"\nEnter the name list of layer(s) to Lock or <select objects>: ")
             : oxmdOxResourceString(10102, L"\nEnter the name list of layer(s) to Unlock or <select objects>: ");
    OxArray<OxDbObjectId> ids;
    const int status = chooseLayers(m_context, prompt, true, ids);
    if (status != STATUS_NORMAL) return status;
    vxlayer::changeLayers(ids, [lock](OxDbLayerTableRecord& layer) { layer.setIsLocked(lock); });
    return STATUS_NORMAL;
}
