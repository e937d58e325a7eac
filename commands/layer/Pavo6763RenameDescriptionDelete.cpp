// "-LAYER" options Rename, Description and Delete.
#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/LayerDeletion.h"
#include "layerhelper/LayerNameRules.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/WorkingDatabase.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr const wchar_t* kLayerNotFound = L"\nLayer %ls not found.";

// The id of the layer `name` (null when there is none).
OxDbObjectId lookUpLayer(OxDbDatabase* db, const OxString& name) {
    OxDbObjectId id;
    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk) return id;
    if (table->getIdAt(name, id, false) != Ox::eOk) id.setNull();
    table->close();
    return id;
}

// The new-name validity test: both checks run even when the first fails.
bool isInvalidName(const OxString& name, int extnames) {
    const bool tooLong = vxlayer::exceedsNameLength(name, extnames);
    const bool refused = vxlayer::symbolNameRefused(name);
    return tooLong || refused;
}

// Whether existing descriptions of `ids` are replaced: asked once, at the
// first layer that has one. STATUS_NORMAL with the decision, or the code of
// a cancelled question.
int decideReplacement(const OxArray<OxDbObjectId>& ids, bool& replace) {
    replace = false;
    for (const OxDbObjectId& id : ids) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) continue;
        const bool described = !layer->description().isEmpty();
        layer->close();
        if (!described) continue;
        OxString answer;
        const int status =
            vxlayer::askYesNo(oxmdOxResourceString(10113, L"Yes No _Yes No"),
                              oxmdOxResourceString(10127, L"\nReplace existing description? [Yes/No] <N>: "), answer);
        if (status == STATUS_NONE) return STATUS_NORMAL;
        if (status != STATUS_NORMAL) return status;
        replace = answer.compareNoCase(L"No") != 0;
        return STATUS_NORMAL;
    }
    return STATUS_NORMAL;
}

} // namespace

int Pavo6763Command::_branch_rename() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_NORMAL;
    OxString oldName;
    int status =
        vxlayer::askLayerNames(m_context, oxmdOxResourceString(10123, L"\nEnter layer name to be renamed: "), oldName);
    if (status != STATUS_NORMAL) return status;
    const int extnames = vxlayer::readExtnames();

    // An invalid name cannot be an existing layer: it is reported as not found.
    if (isInvalidName(oldName, extnames)) {
        oxutPrintf(oxmdOxResourceString(10074, kLayerNotFound), oldName);
        return STATUS_REJECT;
    }
    if (oldName.compareNoCase(L"0") == 0) {
        oxutPrintf(oxmdOxResourceString(10136, L"\nLayer 0 cannot be renamed."));
        return STATUS_REJECT;
    }
    const OxDbObjectId oldId = lookUpLayer(db, oldName);
    if (oldId.isNull()) {
        oxutPrintf(oxmdOxResourceString(10074, kLayerNotFound), oldName);
        return STATUS_REJECT;
    }

    const OxString prompt = oxmdOxResourceString(10124, L"\nEnter new layer name: ");
    for (;;) {
        OxString newName;
        status = vxlayer::askLayerNames(m_context, prompt, newName);
        if (status != STATUS_NORMAL) return status;
        if (isInvalidName(newName, extnames)) {
            oxutPrintf(oxmdOxResourceString(10074, kLayerNotFound), newName);
            return STATUS_REJECT;
        }
        if (!lookUpLayer(db, newName).isNull()) {
            oxutPrintf(oxmdOxResourceString(10072, L"\nLayer %ls already exists."), newName);
            continue;
        }
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, oldId, OxDb::kForWrite) != Ox::eOk) return STATUS_NORMAL;
        layer->setName(newName);
        layer->close();
        return STATUS_NORMAL;
    }
}

int Pavo6763Command::_branch_description() {
    OxString description;
    oxedInitGet(OX_INP_NONULL, nullptr);
    int status = oxedGetString(1, oxmdOxResourceString(10125, L"\nEnter layer description: "), description);
    if (status != STATUS_NORMAL) return status;

    OxString list;
    status = vxlayer::askLayerNames(
        m_context, oxmdOxResourceString(10126, L"\nEnter name list of layer(s) to apply description: <*>: "), list);
    if (status != STATUS_NORMAL) return status;
    if (list.isEmpty()) list = L"*";

    OxArray<OxDbObjectId> ids;
    status = PavoLayerHelper::getMatchedLayerList(list, ids, false);
    if (status != STATUS_NORMAL || ids.isEmpty()) return status;

    bool replace = false;
    status = decideReplacement(ids, replace);
    if (status != STATUS_NORMAL) return status;

    for (const OxDbObjectId& id : ids) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        if (replace || layer->description().isEmpty()) layer->setDescription(description);
        layer->close();
    }
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_delete() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_NORMAL;
    OxString list;
    int status = vxlayer::askLayerNames(
        m_context, oxmdOxResourceString(10129, L"\nEnter name list of layer(s) to delete: "), list);
    if (status != STATUS_NORMAL) return status;
    OxArray<OxDbObjectId> ids;
    status = PavoLayerHelper::getMatchedLayerList(list, ids, false);
    if (status != STATUS_NORMAL || ids.isEmpty()) return status;

    vxlayer::markLayersInUse(db);

    const OxString refusal = oxmdOxResourceString(10128, L"\nCannot delete the selected layer(s). ");
    for (const OxDbObjectId& id : ids) {
        if (id == db->layerZero() || id == db->clayer()) {
            oxutPrintf(refusal);
            continue;
        }
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        if (vxlayer::deletionRefusal(*db, *layer, db->clayer()) != vxlayer::DeletionRefusal::None)
            oxutPrintf(refusal);
        else
            layer->erase(true);
        layer->close();
    }
    return STATUS_NORMAL;
}
