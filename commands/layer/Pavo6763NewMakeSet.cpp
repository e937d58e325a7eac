// "-LAYER" options New, Make and Set: new layers and the current layer.
#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/LayerNameRules.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/WorkingDatabase.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "oxmd.h"

namespace {

// ERRNO values left by a pick.
constexpr int kPickMissed = 7;
constexpr int kPickAnsweredWithEnter = 52;

// The id of `name` in the layer table (null when absent or the table cannot
// be opened).
OxDbObjectId findLayer(OxDbDatabase* db, const OxString& name, OxDb::OpenMode mode) {
    OxDbObjectId id;
    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, mode) != Ox::eOk) return id;
    if (table->getIdAt(name, id, false) != Ox::eOk) id.setNull();
    table->close();
    return id;
}

// The picked entity's layer and its name; a null id when the entity cannot
// be read or its layer is locked (a locked layer is never made current by
// picking).
OxDbObjectId pickedLayer(const ox_name ename, OxString& layerName) {
    OxDbObjectId entityId;
    OxDbEntity* entity = nullptr;
    if (oxdbGetObjectId(entityId, ename) != Ox::eOk || oxdbOpenObject(entity, entityId, OxDb::kForRead) != Ox::eOk)
        return OxDbObjectId();
    OxDbObjectId layerId = entity->layerId();
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, layerId, OxDb::kForRead) == Ox::eOk) {
        if (layer->isLocked()) layerId.setNull();
        layer->close();
    }
    entity->layer(layerName);
    entity->close();
    return layerId;
}

} // namespace

int Pavo6763Command::_branch_new() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    OxString text;
    int status = oxedGetStringForName(m_context, oxmdOxResourceString(10060, L"\nNames for new layers: "), text);
    if (status != STATUS_NORMAL) return status;
    PavoLayerHelper::trimName(text);
    if (text.isEmpty()) return STATUS_NORMAL;

    OxArray<OxString> names;
    status = PavoLayerHelper::getValidNewLayerList(text, names, false);
    if (status != STATUS_NORMAL) return status;

    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForWrite) != Ox::eOk) return STATUS_ERROR;
    bool attempted = false;
    for (const OxString& name : names) {
        OxDbObjectId existing;
        if (table->getIdAt(name, existing, false) == Ox::eOk) {
            oxutPrintf(oxmdOxResourceString(10072, L"\nLayer %ls already exists."), name);
            continue;
        }
        // Deliberately the whole cleaned answer, not the item: for a list of
        // several names this attempts one layer named after the list. The
        // table would refuse every repeat, so one attempt is made: a repeat
        // costs the length of the whole answer, and a long list would take
        // time growing with its square.
        if (!attempted) PavoLayerHelper::createNewLayer(db, table, text);
        attempted = true;
    }
    table->close();
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_make() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    OxString name;
    const int status =
        oxedGetStringForName(m_context, oxmdOxResourceString(10062, L"\nNew layer to make current: "), name);
    if (status != STATUS_NORMAL) return status;
    PavoLayerHelper::trimName(name);
    if (name.isEmpty()) return STATUS_NORMAL;

    const bool tooLong = vxlayer::exceedsNameLength(name, vxlayer::readExtnames());
    const bool refused = vxlayer::symbolNameRefused(name);
    if (tooLong || refused) {
        oxutPrintf(oxmdOxResourceString(10079, L"\n\"%ls\" is an invalid layer name."), name);
        return STATUS_REJECT;
    }

    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForWrite) != Ox::eOk) return STATUS_ERROR;
    OxDbObjectId id;
    if (table->getIdAt(name, id, false) != Ox::eOk) id = PavoLayerHelper::createNewLayer(db, table, name);
    table->close();
    PavoLayerHelper::setCurrentLayer(db, id);
    return STATUS_NORMAL;
}

int Pavo6763Command::_branch_set() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    const OxString prompt = oxmdOxResourceString(10073, L"\nLayer to set as current or <select object>: ");
    for (;;) {
        OxString name;
        const int status = oxedGetStringForName(m_context, prompt, name);
        if (status != STATUS_NORMAL) return status;
        PavoLayerHelper::trimName(name);
        if (name.isEmpty()) break;
        const OxDbObjectId id = findLayer(db, name, OxDb::kForWrite);
        if (!id.isNull()) {
            PavoLayerHelper::setCurrentLayer(db, id);
            return STATUS_NORMAL;
        }
        oxutPrintf(oxmdOxResourceString(10074, L"\nCannot find layer %ls."), name);
    }

    for (;;) {
        oxedInitGet(OX_INP_NONULL, nullptr);
        ox_name entity = {0, 0};
        ox_point point = {0, 0, 0};
        const int status = oxedEntSel(nullptr, entity, point);
        if (status == STATUS_ERROR) {
            int pickError = 0;
            vxlayer::readIntVariable(L"ERRNO", pickError);
            if (pickError == kPickAnsweredWithEnter) return STATUS_ERROR;
            if (pickError == kPickMissed) oxutPrintf(oxmdOxResourceString(10143, L"\nObject not selected."));
            continue;
        }
        if (status != STATUS_NORMAL) return status;

        OxString layerName;
        const OxDbObjectId id = pickedLayer(entity, layerName);
        if (id.isNull()) return STATUS_NORMAL;
        if (PavoLayerHelper::setCurrentLayer(db, id))
            oxutPrintf(oxmdOxResourceString(10121, L"\nLayer %s has already been set as current."), layerName);
        return STATUS_NORMAL;
    }
}
