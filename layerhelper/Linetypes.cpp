#include "Linetypes.h"

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "oxed.h"

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

} // namespace vxlayer
