// "VPLAYER" option LType: a per-viewport linetype override, loaded from the
// standard linetype file when the drawing lacks the linetype.
#include <array>

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "Pavo6831Command.h"
#include "PavoServices.h"
#include "VPLayerApply.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/Linetypes.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// Every linetype a layer can take, one a line.
int listLinetypes(OxDbDatabase* database) {
    OxDbLinetypeTable* table = nullptr;
    if (database->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return STATUS_ERROR;
    PavoServicesManager::showTextScreen();
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) == Ox::eOk) {
        for (; !it->done(); it->step()) {
            OxDbLinetypeTableRecord* linetype = nullptr;
            if (it->getRecord(linetype, OxDb::kForRead) != Ox::eOk) continue;
            const OxString name = linetype->name();
            linetype->close();
            if (name.compareNoCase(L"ByBlock") == 0 || name.compareNoCase(L"ByLayer") == 0) continue;
            oxutPrintf(L"%ls\n", name);
        }
        delete it;
    }
    table->close();
    return STATUS_NORMAL;
}

} // namespace

int Pavo6831Command::VPLayerLineType() {
    if (!database) return STATUS_ERROR;
    OxDbLinetypeTableRecord* current = nullptr;
    if (oxdbOpenObject(current, database->celtype(), OxDb::kForRead) != Ox::eOk) return STATUS_ERROR;
    OxString defaultName = current->name();
    current->close();
    if (defaultName.compareNoCase(L"BYLAYER") == 0) {
        defaultName = L"CONTINUOUS";
        OxDbObjectId continuous;
        if (!vxlayer::findLinetype(database, defaultName, continuous) || continuous.isNull()) return STATUS_ERROR;
    }

    oxedInitGet(0, nullptr);
    OxString prompt;
    prompt.format(oxmdOxResourceString(10552, L"\nEnter linetype name: ? to list/<%ls>: "), defaultName);
    OxString name;
    const int status = oxedGetStringForName(context, prompt, name);
    if (status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status == STATUS_NONE || (status == STATUS_NORMAL && name.isEmpty()))
        name = defaultName;
    else if (status != STATUS_NORMAL)
        return status;
    PavoLayerHelper::trimName(name);

    if (name.compareNoCase(L"?") == 0) {
        if (listLinetypes(database) != STATUS_NORMAL) return STATUS_ERROR;
        return VPLayerLineType();
    }
    // A layer's linetype in a viewport cannot be ByBlock or ByLayer.
    if (name.compareNoCase(L"BYBLOCK") == 0 || name.compareNoCase(L"BYLAYER") == 0) return VPLayerLineType();

    OxDbObjectId linetypeId;
    if (!vxlayer::findLinetype(database, name, linetypeId)) return STATUS_ERROR;
    if (linetypeId.isNull()) {
        int measurement = 0;
        if (!vxlayer::readIntVariable(L"MEASUREMENT", measurement)) return STATUS_ERROR;
        const wchar_t* file = vxlayer::standardLinetypeFile(measurement != 0);
        std::array<wchar_t, vxlayer::kLinetypePathLength> path{};
        const int found = vxlayer::findSupportFile(file, path);
        if (found != STATUS_NORMAL) return found;
        try {
            database->loadLineTypeFile(name, path.data());
            vxlayer::findLinetype(database, name, linetypeId);
        } catch (...) {
            oxutPrintf(oxmdOxResourceString(10553, L"No linetype matching \"%ls\" found in %ls."), name, file);
            return VPLayerLineType();
        }
        if (linetypeId.isNull()) {
            oxedPrompt(oxmdOxResourceString(10576, L"\nLinetype \"%ls\" not found."), name);
            return VPLayerLineType();
        }
    }
    return applyOverride(2, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        layer.setLinetypeObjectId(linetypeId, viewportId);
    });
}
