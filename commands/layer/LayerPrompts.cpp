#include "LayerPrompts.h"

#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxedSelection.h"

namespace vxlayer {

int askLayerNames(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, OxString& names) {
    oxedInitGet(OX_INP_NONULL, nullptr);
    const int status = oxedGetStringForName(ctx, prompt, names);
    if (status == STATUS_NORMAL) PavoLayerHelper::trimName(names);
    return status;
}

namespace {

// The name of the layer of entity `ename`; empty when it cannot be read.
OxString layerNameOf(const ox_name ename) {
    OxDbObjectId entityId;
    if (oxdbGetObjectId(entityId, ename) != Ox::eOk) return OxString();
    OxDbEntity* entity = nullptr;
    if (oxdbOpenObject(entity, entityId, OxDb::kForRead) != Ox::eOk) return OxString();
    const OxDbObjectId layerId = entity->layerId();
    entity->close();
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, layerId, OxDb::kForRead) != Ox::eOk) return OxString();
    OxString name = layer->name();
    layer->close();
    return name;
}

} // namespace

int layerNamesOfSelection(OxString& names) {
    names.setEmpty();
    ox_name set = {0, 0};
    const int status = oxedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (status != STATUS_NORMAL) return status;
    int length = 0;
    oxedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        ox_name entity = {0, 0};
        if (oxedSSName(set, i, entity) != STATUS_NORMAL) continue;
        const OxString name = layerNameOf(entity);
        if (name.isEmpty()) continue;
        names += name;
        names += L',';
    }
    oxedSSFree(set);
    return STATUS_NORMAL;
}

int askYesNo(const wchar_t* keywords, const wchar_t* prompt, OxString& answer) {
    oxedInitGet(0, keywords);
    return oxedGetKword(prompt, answer);
}

OxString currentLayerName() {
    OxString name;
    readStringVariable(L"CLAYER", name);
    return name;
}

int askTargetLayers(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, const OxString& currentLayer,
                    OxArray<OxDbObjectId>& ids) {
    ids.setLogicalLength(0);
    OxString list;
    const int status = askLayerNames(ctx, prompt, list);
    if (status != STATUS_NORMAL) return status;
    return PavoLayerHelper::getMatchedLayerList(list.isEmpty() ? currentLayer : list, ids, false);
}

} // namespace vxlayer
