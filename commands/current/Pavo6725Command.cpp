#include "Pavo6725Command.h"

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/WorkingDatabase.h"
#include "module/ResourceScope.h"
#include "oxed.h"
#include "oxedSelection.h"

namespace {

// A resource text, or `fallback` when the library lacks it.
OxString resourceText(unsigned int id, const wchar_t* fallback) {
    OxString text;
    if (!text.loadString(id)) text = fallback;
    return text;
}

// The single pre-selected entity when PICKFIRST allows it and exactly one is
// selected; false otherwise.
bool takeSinglePreselection(ox_name entity, int& status) {
    int pickfirst = 0;
    if (!vxlayer::readIntVariable(L"PICKFIRST", pickfirst) || pickfirst != 1) return false;
    ox_name set = {0, 0};
    const int got = oxedSSGet(L"_I", nullptr, nullptr, nullptr, set);
    int length = 0;
    if (got == STATUS_NORMAL) oxedSSLength(set, &length);
    const bool single = length == 1 && oxedSSName(set, 0, entity) == STATUS_NORMAL;
    if (got == STATUS_NORMAL) oxedSSFree(set);
    if (single) status = got;
    return single;
}

// Makes the layer of `entity` current and reports it.
int makeLayerOfEntityCurrent(const ox_name entity) {
    OxDbObjectId entityId;
    if (oxdbGetObjectId(entityId, entity) != Ox::eOk || entityId.isNull()) return STATUS_ERROR;
    OxDbEntity* object = nullptr;
    if (oxdbOpenObject(object, entityId, OxDb::kForRead) != Ox::eOk) return STATUS_ERROR;
    const OxDbObjectId layerId = object->layerId();
    OxString layerName;
    object->layer(layerName);
    object->close();

    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db || db->setClayer(layerId) != Ox::eOk) return STATUS_ERROR;
    oxutPrintf(resourceText(12102, L"\nThe Current layer is %s: "), layerName);
    return STATUS_NORMAL;
}

} // namespace

int Pavo6725Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    IPavoAppInterface* app = GetPavoAppInterface();
    if (!app || app->isReady() == 0) return STATUS_NONE;

    ox_name entity = {0, 0};
    int status = STATUS_NORMAL;
    if (!takeSinglePreselection(entity, status)) {
        // No usable pre-selection: it is dropped, and the user picks.
        oxedSSSetFirst(nullptr, nullptr);
        ox_point point = {0, 0, 0};
        status = oxedEntSel(resourceText(12101, L"\nSelect entity to set the current layer."), entity, point);
    }
    if (status != STATUS_NORMAL) return status;
    return makeLayerOfEntityCurrent(entity);
}
