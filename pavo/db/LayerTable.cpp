#include "DbInternal.h"
#include "LayerOverrides.h"
#include "DictionaryImpl.h"
#include "LineWeights.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"
#include "base/CaseFold.h"

OX_RX_DEFINE_MEMBERS(OxDbLayerTable, OxDbSymbolTable)
OX_RX_DEFINE_MEMBERS(OxDbLayerTableRecord, OxDbSymbolTableRecord)

using namespace pavo::db;

const OxRxClass* OxDbLayerTable::recordClass() const { return OxDbLayerTableRecord::desc(); }

namespace {

void markLayerOf(const OxDbCell* entityCell) {
    if (entityCell->erased) return;
    const auto* entity = OxDbEntity::cast(entityCell->object.get());
    if (!entity) return;
    if (auto* layer = OxDbLayerTableRecord::cast(objectOf(entity->layerId()))) layer->setIsInUseBit(true);
    if (const auto* reference = OxDbBlockReference::cast(entity)) {
        for (const OxDbObjectId& attribute : reference->attributeIds())
            if (attribute.cell()) markLayerOf(attribute.cell());
    }
}

} // namespace

// Walks every block (model space, layouts and definitions), so a layer used
// only inside a block definition is in use as well.
void OxDbLayerTable::generateUsageData() {
    OxDbDatabase* db = database();
    for (OxDbCell* cell : impl()->records)
        if (auto* layer = OxDbLayerTableRecord::cast(cell->object.get())) layer->setIsInUseBit(false);
    if (!db) return;
    if (auto* blocks = OxDbBlockTable::cast(objectOf(db->blockTableId()))) {
        for (OxDbCell* blockCell : blocks->impl()->records) {
            const auto* block = OxDbBlockTableRecord::cast(blockCell->object.get());
            if (!block || blockCell->erased) continue;
            for (const OxDbCell* entityCell : block->impl()->entities)
                markLayerOf(entityCell);
        }
    }
    for (const OxDbObjectId& id : {db->layerZero(), db->clayer()})
        if (auto* layer = OxDbLayerTableRecord::cast(objectOf(id))) layer->setIsInUseBit(true);
    if (OxDbCell* defpoints = impl()->find(L"DEFPOINTS"))
        if (auto* layer = OxDbLayerTableRecord::cast(defpoints->object.get())) layer->setIsInUseBit(true);
}

void pavo::db::applyNewLayerDefaults(OxDbDatabase* db, OxDbLayerTableRecord* layer) {
    if (layer->linetypeObjectId().isNull()) layer->setLinetypeObjectId(db->continuousLinetype());
    if (layer->plotStyleNameId().isNull()) {
        if (auto* styles = OxDbDictionary::cast(objectOf(db->getPlotStyleNameDictionaryId(false)))) {
            OxDbObjectId normal;
            if (styles->getAt(L"Normal", normal) == Ox::eOk) layer->setPlotStyleName(normal);
        }
    }
    if (layer->materialId().isNull() && !db->globalMaterial().isNull()) layer->setMaterialId(db->globalMaterial());
}

// ------------------------------------------------------------ records

OxDbObject* OxDbLayerTableRecord::cloneState() const {
    auto* copy = new OxDbLayerTableRecord();
    copy->setName(getName());
    copy->m_off = m_off;
    copy->m_frozen = m_frozen;
    copy->m_locked = m_locked;
    copy->m_plottable = m_plottable;
    copy->m_vpdflt = m_vpdflt;
    copy->m_hidden = m_hidden;
    copy->m_inUse = m_inUse;
    copy->m_color = m_color;
    copy->m_linetype = m_linetype;
    copy->m_lineWeight = m_lineWeight;
    copy->m_transparency = m_transparency;
    copy->m_material = m_material;
    copy->m_plotStyle = m_plotStyle;
    copy->m_description = m_description;
    if (m_overrides) copy->m_overrides = std::make_unique<Overrides>(*m_overrides);
    return copy;
}

void OxDbLayerTableRecord::setIsFrozen(bool frozen) {
    // The database never has a frozen current layer.
    if (frozen && isDatabaseResident() && database()->clayer() == objectId()) return;
    if (writeCheck()) m_frozen = frozen;
}

void OxDbLayerTableRecord::setIsOff(bool off) {
    if (writeCheck()) m_off = off;
}

void OxDbLayerTableRecord::setIsLocked(bool locked) {
    if (writeCheck()) m_locked = locked;
}

Ox::ErrorStatus OxDbLayerTableRecord::setIsPlottable(bool plottable) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_plottable = plottable;
    return Ox::eOk;
}

void OxDbLayerTableRecord::setVPDFLT(bool frozenInNewViewports) {
    if (writeCheck()) m_vpdflt = frozenInNewViewports;
}

Ox::ErrorStatus OxDbLayerTableRecord::setIsHidden(bool hidden) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_hidden = hidden;
    return Ox::eOk;
}

void OxDbLayerTableRecord::setColor(const OxCmColor& color) {
    if (writeCheck()) m_color = color;
}

void OxDbLayerTableRecord::setLinetypeObjectId(const OxDbObjectId& id) {
    if (writeCheck()) m_linetype = id;
}

Ox::ErrorStatus OxDbLayerTableRecord::setLineWeight(OxDb::LineWeight weight) {
    if (!isLayerLineWeight(weight)) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_lineWeight = weight;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerTableRecord::setTransparency(const OxCmTransparency& t) {
    if (!t.isByAlpha()) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_transparency = t;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerTableRecord::setMaterialId(const OxDbObjectId& id) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_material = id;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerTableRecord::plotStyleName(OxString& name) const {
    name.setEmpty();
    if (m_plotStyle.isNull()) return Ox::eKeyNotFound;
    auto* styles = OxDbDictionary::cast(objectOf(m_plotStyle.cell()->owner));
    if (!styles) return Ox::eKeyNotFound;
    return styles->nameAt(m_plotStyle, name);
}

OxString OxDbLayerTableRecord::plotStyleName() const {
    OxString name;
    plotStyleName(name);
    return name;
}

Ox::ErrorStatus OxDbLayerTableRecord::setPlotStyleName(const OxDbObjectId& id) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_plotStyle = id;
    return Ox::eOk;
}

namespace pavo::db {

// The entry of the plot style name dictionary called `name`, made when
// missing. The dictionary may be open elsewhere (a caller reading it while
// it sets a layer's style), so it is changed without opening it.
Ox::ErrorStatus plotStyleEntry(OxDbDatabase* db, const wchar_t* name, OxDbObjectId& id) {
    id.setNull();
    if (!name || !*name) return Ox::eInvalidInput;
    if (!db) return Ox::eNoDatabase;
    auto* styles = OxDbDictionary::cast(objectOf(db->getPlotStyleNameDictionaryId(true)));
    if (!styles) return Ox::eNoDatabase;
    if (styles->getAt(name, id) == Ox::eOk) return Ox::eOk;
    id = dictionaryAddDirect(styles, name, new OxDbPlaceHolder());
    return Ox::eOk;
}

} // namespace pavo::db

Ox::ErrorStatus OxDbLayerTableRecord::setPlotStyleName(const wchar_t* name) {
    if (!name || !*name) return Ox::eInvalidInput;
    if (!isWriteEnabled()) {
        writeCheck(); // records the misuse
        return Ox::eNotOpenForWrite;
    }
    OxDbObjectId id;
    Ox::ErrorStatus es = plotStyleEntry(databaseOrWorking(this), name, id);
    return es == Ox::eOk ? setPlotStyleName(id) : es;
}

Ox::ErrorStatus OxDbLayerTableRecord::setDescription(const wchar_t* text) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_description = text;
    return Ox::eOk;
}
