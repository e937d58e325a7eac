// "VPLAYER": choosing the layers an option works on (a name list with
// wildcards, or the layers of picked objects) and the viewports (All,
// Select, Current or eXcept).
#include <set>
#include <string>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "Pavo6831Command.h"
#include "VPLayerLayouts.h"
#include "VxDbUtil.h"
#include "layerhelper/ActiveViewport.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "oxmd.h"
#include "oxut.h"

namespace {

OxString layerPrompt(int optionCode) {
    switch (optionCode) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 9:
        return oxmdOxResourceString(10551, L"\nEnter layer(s) name to receive VP property override or <specify "
                                           L"layers by object selection>: ");
    case 6:
        return oxmdOxResourceString(10560,
                                    L"\nEnter layer(s) name to freeze or <specify layers by object selection>: ");
    case 7:
        return oxmdOxResourceString(10561, L"\nEnter layer(s) name to thaw: ");
    case 8:
        return oxmdOxResourceString(10562,
                                    L"\nEnter layer(s) name to reset or <specify layers by object selection>: ");
    default:
        return oxmdOxResourceString(10564, L"\nLayer names(s): ");
    }
}

// Appends every viewport of every layout, in layout dictionary order.
int appendAllViewports(OxDbDatabase* database, OxArray<OxDbObjectId>& viewportIds) {
    OxDbDictionary* layouts = nullptr;
    if (oxdbOpenObject(layouts, database->layoutDictionaryId(), OxDb::kForRead) != Ox::eOk) return STATUS_ERROR;
    vxlayer::forEachLayout(*layouts, [&](OxDbLayout& layout) { viewportIds.append(layout.getViewportArray()); });
    layouts->close();
    return STATUS_NORMAL;
}

// Picks viewports on the sheet (from inside a viewport the pick goes to
// paper space and back).
int selectViewports(OxArray<OxDbObjectId>& viewportIds) {
    const bool fromModelSpace = vxlayer::inViewportModelSpace();
    if (fromModelSpace) oxedPspace();
    const OxString prompt = oxmdOxResourceString(11279, L"\nSelect object: ");
    const wchar_t* prompts[2] = {prompt.kwszPtr(), prompt.kwszPtr()};
    resbuf* filter = oxutBuildList(RTDXF0, L"VIEWPORT", 0);
    ox_name set = {0, 0};
    const int status = oxedSSGet(L"_:$", prompts, nullptr, filter, set);
    oxutRelRb(filter);
    if (fromModelSpace) oxedMspace();
    if (status == STATUS_NORMAL) {
        int length = 0;
        oxedSSLength(set, &length);
        for (int i = 0; i < length; ++i) {
            ox_name entity = {0, 0};
            OxDbObjectId id;
            if (oxedSSName(set, i, entity) == STATUS_NORMAL && oxdbGetObjectId(id, entity) == Ox::eOk)
                viewportIds.append(id);
        }
    }
    if (set[0] || set[1]) oxedSSFree(set);
    return status == STATUS_CANCEL ? STATUS_NORMAL : status;
}

} // namespace

int Pavo6831Command::AcquireLayerNames(int optionCode) {
    if (!database) return STATUS_ERROR;
    oxedInitGet(0, nullptr);
    OxString answer;
    const int status = oxedGetStringForName(context, layerPrompt(optionCode), answer);
    if (status == STATUS_NONE || status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status != STATUS_NORMAL) return status;
    // Thaw has no picking: its empty answer fails the name list check.
    if (answer.isEmpty() && optionCode != 7) {
        const int picked = AcquireLayerNamesBySelObj();
        if (picked != STATUS_NORMAL) return picked;
    } else if (VerifyLayerList(answer, false) != STATUS_NORMAL) {
        return STATUS_NORMAL; // its messages said why; the option does nothing
    }
    targetLayerIds.append(layerIds);
    return AcquireViewports();
}

int Pavo6831Command::AcquireViewports() {
    if (oxedInitGet(0, oxmdOxResourceString(10570, L"All Select Current eXcept _All Select Current eXcept")) !=
        STATUS_NORMAL)
        return STATUS_NORMAL;
    OxString keyword;
    const int status = oxedGetKword(oxmdOxResourceString(10569, L"\nSpecify viewport(s): All/Select/<Current>: "),
                                    keyword);
    if (status == STATUS_NONE) keyword = L"Current";
    else if (status != STATUS_NORMAL) return status;

    if (keyword.compareNoCase(L"All") == 0) return appendAllViewports(database, viewportIds);
    if (keyword.compareNoCase(L"Select") == 0) return selectViewports(viewportIds);
    if (keyword.compareNoCase(L"Current") == 0) {
        OxDbObjectId active;
        if (vxlayer::activeViewport(active)) viewportIds.append(active);
        return STATUS_NORMAL;
    }
    if (keyword.compareNoCase(L"eXcept") == 0) {
        // Every viewport but the current one; nothing more is asked.
        if (appendAllViewports(database, viewportIds) != STATUS_NORMAL) return STATUS_ERROR;
        OxDbObjectId active;
        if (vxlayer::activeViewport(active) && active.isValid()) viewportIds.remove(active);
        return STATUS_NORMAL;
    }
    return STATUS_NORMAL;
}

int Pavo6831Command::AcquireLayerNamesBySelObj() {
    layerIds.setLogicalLength(0);
    const OxString prompt = oxmdOxResourceString(11279, L"\nSelect object: ");
    const wchar_t* prompts[2] = {prompt.kwszPtr(), prompt.kwszPtr()};
    ox_name set = {0, 0};
    const int status = oxedSSGet(L"_:$", prompts, nullptr, nullptr, set);
    if (status != STATUS_NORMAL) {
        if (set[0] || set[1]) oxedSSFree(set);
        return status;
    }
    // Each layer once, in ascending id order.
    std::set<OxDbObjectId> layers;
    int length = 0;
    oxedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        ox_name entityName = {0, 0};
        OxDbObjectId id;
        if (oxedSSName(set, i, entityName) != STATUS_NORMAL || oxdbGetObjectId(id, entityName) != Ox::eOk ||
            !id.isValid())
            continue;
        OxDbEntity* entity = nullptr;
        if (oxdbOpenObject(entity, id, OxDb::kForRead) != Ox::eOk) continue;
        if (!entity->layerId().isNull()) layers.insert(entity->layerId());
        entity->close();
    }
    for (const OxDbObjectId& id : layers)
        layerIds.append(id);
    oxedSSFree(set);
    return STATUS_NORMAL;
}

int Pavo6831Command::VerifyLayerList(const OxString& list, bool forNewLayers) {
    if (!database) return STATUS_ERROR;
    layerIds.setLogicalLength(0);
    OxString cleaned = list;
    PavoLayerHelper::trimName(cleaned);
    if (cleaned.isEmpty()) return STATUS_ERROR;
    OxDbLayerTable* table = nullptr;
    if (database->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return STATUS_ERROR;
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) != Ox::eOk) {
        table->close();
        return STATUS_ERROR;
    }

    bool found = false;
    if (!forNewLayers && cleaned == L"*") {
        for (it->start(); !it->done(); it->step()) {
            OxDbObjectId id;
            if (it->getRecordId(id) == Ox::eOk) layerIds.append(id);
        }
        found = true;
    } else {
        OxArray<OxString> items;
        VxDbUtil::SplitString(list, L",", items);
        for (OxString& item : items) {
            item.trimLeft();
            item.trimRight();
            if (forNewLayers) {
                std::wstring name = item.str();
                if (!IsValidName(name.data())) {
                    oxutPrintf(oxmdOxResourceString(10583, L"%ls is a invalid layer name!\n"), item);
                    continue;
                }
                OxDbObjectId existing;
                if (table->getIdAt(item, existing) == Ox::eOk) {
                    oxutPrintf(oxmdOxResourceString(10568, L"Layer with name %ls already exists!\n"), item);
                    continue;
                }
                newLayerNames.append(item);
                found = true;
                continue;
            }
            bool matched = false;
            for (it->start(); !it->done(); it->step()) {
                OxDbLayerTableRecord* layer = nullptr;
                if (it->getRecord(layer, OxDb::kForRead) != Ox::eOk) continue;
                if (oxutWcMatchEx(layer->getName(), item, true)) {
                    layerIds.append(layer->objectId());
                    matched = true;
                }
                layer->close();
            }
            if (!matched) oxutPrintf(oxmdOxResourceString(10567, L"No layers found matching pattern %ls.\n"), item);
            found = found || matched;
        }
    }
    delete it;
    table->close();
    return found ? STATUS_NORMAL : STATUS_ERROR;
}
