#include "EntityProperties.h"

#include <array>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "oxed.h"

namespace pavo::app {

namespace {

std::optional<OxDbObjectId> entryOf(const OxDbObjectId& dictionaryId, const OxString& name) {
    OxDbDictionary* dictionary = nullptr;
    if (oxdbOpenObject(dictionary, dictionaryId, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    OxDbObjectId id;
    const bool found = dictionary->getAt(name.kwszPtr(), id) == Ox::eOk;
    dictionary->close();
    return found ? std::optional<OxDbObjectId>(id) : std::nullopt;
}

std::optional<OxDbObjectId> linetypeInTable(OxDbDatabase& db, const OxString& name) {
    OxDbLinetypeTable* table = nullptr;
    if (db.getLinetypeTable(table, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    OxDbObjectId id;
    const bool found = table->getIdAt(name.kwszPtr(), id) == Ox::eOk;
    table->close();
    return found ? std::optional<OxDbObjectId>(id) : std::nullopt;
}

} // namespace

bool isPlotStyleName(OxDbDatabase& db, const OxString& name) {
    return name.compareNoCase(L"ByLayer") == 0 || name.compareNoCase(L"ByBlock") == 0 ||
           entryOf(db.getPlotStyleNameDictionaryId(false), name).has_value();
}

bool setPlotStyleByName(OxDbDatabase& db, OxDbEntity& entity, const OxString& name) {
    if (name.compareNoCase(L"ByLayer") == 0) return entity.setPlotStyleName(OxDb::kPlotStyleNameByLayer) == Ox::eOk;
    if (name.compareNoCase(L"ByBlock") == 0) return entity.setPlotStyleName(OxDb::kPlotStyleNameByBlock) == Ox::eOk;
    const std::optional<OxDbObjectId> id = entryOf(db.getPlotStyleNameDictionaryId(false), name);
    return id && entity.setPlotStyleName(OxDb::kPlotStyleNameById, *id) == Ox::eOk;
}

std::optional<OxDbObjectId> materialNamed(OxDbDatabase& db, const OxString& name) {
    return entryOf(db.materialDictionaryId(), name);
}

std::optional<OxDbObjectId> linetypeNamed(OxDbDatabase& db, const OxString& name) {
    if (const auto id = linetypeInTable(db, name)) return id;
    std::array<wchar_t, 4096> path{};
    if (oxedFindFile(db.measurement() == 1 ? L"vantaiso.lin" : L"vanta.lin", path.data(), int(path.size())) !=
        STATUS_NORMAL)
        return std::nullopt;
    db.loadLineTypeFile(name.kwszPtr(), path.data());
    return linetypeInTable(db, name);
}

} // namespace pavo::app
