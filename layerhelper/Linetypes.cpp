#include "Linetypes.h"

#include "HostVariables.h"
#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "oxed.h"
#include "oxmd.h"

namespace vxlayer {

bool findLinetype(OxDbDatabase* db, const OxString& name, OxDbObjectId& id) {
    id.setNull();
    OxDbLinetypeTable* table = nullptr;
    if (!db || db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return false;
    table->getIdAt(name, id, false);
    table->close();
    return true;
}

const wchar_t* standardLinetypeFile(bool metric) { return metric ? L"vantaiso.lin" : L"vanta.lin"; }

int findSupportFile(const wchar_t* file, std::array<wchar_t, kLinetypePathLength>& path) {
    path.fill(L'\0');
    return oxedFindFile(file, path.data(), kLinetypePathLength);
}

bool findStandardLinetypeFile(std::array<wchar_t, kLinetypePathLength>& path) {
    int measurement = 0;
    const bool metric = readIntVariable(L"MEASUREMENT", measurement) && measurement != 0;
    return findSupportFile(standardLinetypeFile(metric), path) == STATUS_NORMAL;
}

OxDbObjectId linetypeOrLoad(OxDbDatabase* db, const OxString& name) {
    OxDbObjectId id;
    if (!findLinetype(db, name, id)) return OxDbObjectId();
    if (!id.isNull()) return id;

    std::array<wchar_t, kLinetypePathLength> path{};
    if (findStandardLinetypeFile(path)) {
        try {
            db->loadLineTypeFile(name, path.data()); // a failed load shows as a failed lookup
            findLinetype(db, name, id);
        } catch (...) {
            id = OxDbObjectId();
        }
    }
    if (id.isNull()) oxutPrintf(oxmdOxResourceString(10119, L"\nLinetype %ls not found."), name);
    return id;
}

} // namespace vxlayer
