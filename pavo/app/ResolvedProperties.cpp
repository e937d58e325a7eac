#include "ResolvedProperties.h"

#include <cmath>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "PavoServices.h"
#include "db/EffectiveProperties.h"

namespace pavo::app {

namespace {

std::wstring dictionaryName(const OxDbObjectId& dictionaryId, const OxDbObjectId& id) {
    OxDbDictionary* dictionary = nullptr;
    OxString name;
    if (!id.isNull() && oxdbOpenObject(dictionary, dictionaryId, OxDb::kForRead) == Ox::eOk) {
        dictionary->nameAt(id, name);
        dictionary->close();
    }
    return name.isEmpty() ? L"?" : name.str();
}

std::wstring weightText(OxDb::LineWeight weight) {
    OxString text;
    PavoServicesManager::lineWeightToString(weight, text);
    return text.str();
}

std::wstring percentText(const OxCmTransparency& t) {
    return std::to_wstring(t.isByAlpha() ? std::lround(t.alphaPercent()) : 0L);
}

} // namespace

std::wstring recordName(const OxDbObjectId& id) {
    OxDbSymbolTableRecord* record = nullptr;
    if (oxdbOpenObject(record, id, OxDb::kForRead) != Ox::eOk) return L"?";
    std::wstring name = record->getName();
    record->close();
    return name;
}

ResolvedProperties resolveProperties(const OxDbEntity& entity) {
    const db::EffectiveProperties p = db::effectiveProperties(entity, nullptr);
    OxDbDatabase* db = entity.database();
    ResolvedProperties out;
    out.color = p.color.colorNameForDisplay().str();
    out.linetype = recordName(p.linetype);
    out.lineweight = weightText(p.lineWeight);
    out.transparency = percentText(p.transparency);
    out.plotStyle = p.plotStyleByBlock   ? L"ByBlock"
                    : p.plotStyle.isNull() ? L"Normal"
                    : db                   ? dictionaryName(db->getPlotStyleNameDictionaryId(false), p.plotStyle)
                                           : L"?";
    out.material = p.material.isNull() ? L"Global" : db ? dictionaryName(db->materialDictionaryId(), p.material) : L"?";
    return out;
}

} // namespace pavo::app
