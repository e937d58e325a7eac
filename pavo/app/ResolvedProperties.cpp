#include "ResolvedProperties.h"

#include <cmath>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "PavoServices.h"

namespace pavo::app {

namespace {

const ResolvedProperties kOutsideBlocks = {L"white", L"Continuous", L"Default", L"0", L"ByBlock", L"Global"};

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

ResolvedProperties resolveProperties(const OxDbEntity& entity, const ResolvedProperties* enclosing) {
    const ResolvedProperties& block = enclosing ? *enclosing : kOutsideBlocks;
    OxDbDatabase* db = entity.database();
    ResolvedProperties layer = kOutsideBlocks;
    OxDbLayerTableRecord* record = nullptr;
    if (oxdbOpenObject(record, entity.layerId(), OxDb::kForRead) == Ox::eOk) {
        layer = {record->color().colorNameForDisplay().str(), recordName(record->linetypeObjectId()),
                 weightText(record->lineWeight()), percentText(record->transparency()),
                 record->plotStyleName().isEmpty() ? L"Normal" : record->plotStyleName().str(),
                 record->materialId().isNull() || !db ? L"Global"
                                                      : dictionaryName(db->materialDictionaryId(), record->materialId())};
        record->close();
    }
    ResolvedProperties out;
    const OxCmColor color = entity.color();
    out.color = color.isByLayer() ? layer.color : color.isByBlock() ? block.color : color.colorNameForDisplay().str();
    const OxDbObjectId linetype = entity.linetypeId();
    out.linetype = db && linetype == db->byLayerLinetype()   ? layer.linetype
                   : db && linetype == db->byBlockLinetype() ? block.linetype
                                                             : recordName(linetype);
    const OxDb::LineWeight weight = entity.lineWeight();
    out.lineweight = weight == OxDb::kLnWtByLayer ? layer.lineweight
                     : weight == OxDb::kLnWtByBlock ? block.lineweight
                                                    : weightText(weight);
    const OxCmTransparency t = entity.transparency();
    out.transparency = t.isByLayer() ? layer.transparency : t.isByBlock() ? block.transparency : percentText(t);
    OxDbObjectId styleId;
    switch (entity.getPlotStyleNameId(styleId)) {
    case OxDb::kPlotStyleNameByLayer: out.plotStyle = layer.plotStyle; break;
    case OxDb::kPlotStyleNameByBlock: out.plotStyle = block.plotStyle; break;
    case OxDb::kPlotStyleNameIsDictDefault: out.plotStyle = L"Normal"; break;
    case OxDb::kPlotStyleNameById:
        out.plotStyle = db ? dictionaryName(db->getPlotStyleNameDictionaryId(false), styleId) : L"?";
        break;
    }
    const OxDbObjectId material = entity.materialId();
    out.material = db && material == db->byLayerMaterial()   ? layer.material
                   : db && material == db->byBlockMaterial() ? block.material
                   : db                                      ? dictionaryName(db->materialDictionaryId(), material)
                                                             : L"?";
    return out;
}

} // namespace pavo::app
