// Named layer states: every layer's properties saved by name in the layer
// states dictionary, and put back by layer name.
#include <unordered_set>

#include "DbBuild.h"
#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayerStateManager.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"
#include "PaperSpace.h"
#include "SymbolTableImpl.h"

OX_RX_DEFINE_MEMBERS(OxDbLayerState, OxDbObject)

using namespace pavo::db;

// ------------------------------------------------------------ the saved state

OxDbObject* OxDbLayerState::cloneState() const {
    auto* copy = new OxDbLayerState();
    copy->m_mask = m_mask;
    copy->m_description = m_description;
    copy->m_currentLayer = m_currentLayer;
    copy->m_viewport = m_viewport;
    copy->m_layers = m_layers;
    return copy;
}

Ox::ErrorStatus OxDbLayerState::setMask(unsigned int mask) { return assignIf(writeCheck(), m_mask, mask); }
Ox::ErrorStatus OxDbLayerState::setDescription(const wchar_t* text) {
    return assignIf(writeCheck(), m_description, OxString(text));
}
Ox::ErrorStatus OxDbLayerState::setCurrentLayerName(const wchar_t* name) {
    return assignIf(writeCheck(), m_currentLayer, OxString(name));
}
Ox::ErrorStatus OxDbLayerState::setViewportId(const OxDbObjectId& id) { return assignIf(writeCheck(), m_viewport, id); }
Ox::ErrorStatus OxDbLayerState::setLayers(std::vector<LayerEntry> layers) {
    return assignIf(writeCheck(), m_layers, std::move(layers));
}

// ------------------------------------------------------------ the manager

OxDbLayerStateManager::OxDbLayerStateManager(OxDbDatabase* db) : m_db(db) {}
OxDbLayerStateManager::~OxDbLayerStateManager() = default;

OxDbObjectId OxDbLayerStateManager::layerStatesDictionaryId(bool createIfNotPresent) {
    return m_db ? m_db->layerStatesDictionaryId(createIfNotPresent) : OxDbObjectId();
}

namespace {

OxDbDictionary* statesOf(OxDbLayerStateManager& manager, bool create) {
    return OxDbDictionary::cast(objectOf(manager.layerStatesDictionaryId(create)));
}

OxDbLayerState* findState(OxDbLayerStateManager& manager, const wchar_t* name) {
    OxDbDictionary* states = statesOf(manager, false);
    OxDbObjectId id;
    if (!states || !name || states->getAt(name, id) != Ox::eOk) return nullptr;
    return OxDbLayerState::cast(objectOf(id));
}

OxDbLayerState::LayerEntry entryOf(const OxDbLayerTableRecord& layer, const OxDbViewport* viewport) {
    OxDbLayerState::LayerEntry e;
    e.name = layer.name();
    e.off = layer.isOff();
    e.frozen = layer.isFrozen();
    e.locked = layer.isLocked();
    e.plottable = layer.isPlottable();
    e.newViewportFrozen = layer.VPDFLT();
    e.frozenInViewport = viewport && viewport->isLayerFrozenInViewport(layer.objectId());
    e.color = layer.color();
    e.linetypeId = layer.linetypeObjectId();
    e.lineWeight = layer.lineWeight();
    e.plotStyleName = layer.plotStyleName();
    e.transparency = layer.transparency();
    return e;
}

// Puts the masked properties of `e` back on `layer` (open for write), as
// overrides of `viewportId` when asked.
void applyEntry(OxDbLayerTableRecord& layer, const OxDbLayerState::LayerEntry& e, unsigned mask,
                const OxDbObjectId& viewportId, bool asOverrides) {
    using M = OxDbLayerStateManager;
    if (mask & M::kOn) layer.setIsOff(e.off);
    if (mask & M::kFrozen) layer.setIsFrozen(e.frozen);
    if (mask & M::kLocked) layer.setIsLocked(e.locked);
    if (mask & M::kPlot) layer.setIsPlottable(e.plottable);
    if (mask & M::kNewViewport) layer.setVPDFLT(e.newViewportFrozen);
    const bool overrides = asOverrides && !viewportId.isNull();
    const bool linetypeUsable = e.linetypeId.isValid() && !e.linetypeId.isErased();
    if (mask & M::kColor) overrides ? layer.setColor(e.color, viewportId) : layer.setColor(e.color);
    if ((mask & M::kLineType) && linetypeUsable)
        overrides ? layer.setLinetypeObjectId(e.linetypeId, viewportId) : layer.setLinetypeObjectId(e.linetypeId);
    if (mask & M::kLineWeight)
        overrides ? layer.setLineWeight(e.lineWeight, viewportId) : layer.setLineWeight(e.lineWeight);
    if ((mask & M::kPlotStyle) && !e.plotStyleName.isEmpty())
        overrides ? layer.setPlotStyleName(e.plotStyleName.kwszPtr(), viewportId)
                  : layer.setPlotStyleName(e.plotStyleName.kwszPtr());
    if (mask & M::kTransparency)
        overrides ? layer.setTransparency(e.transparency, viewportId) : layer.setTransparency(e.transparency);
}

} // namespace

bool OxDbLayerStateManager::hasLayerState(const wchar_t* name) { return findState(*this, name) != nullptr; }

Ox::ErrorStatus OxDbLayerStateManager::saveLayerState(const wchar_t* name, LayerStateMask mask,
                                                      const OxDbObjectId& viewportId) {
    if (!name || !*name) return Ox::eInvalidInput;
    if (!m_db) return Ox::eNoDatabase;
    if (hasLayerState(name)) return Ox::eDuplicateKey;
    auto* layers = OxDbLayerTable::cast(objectOf(m_db->layerTableId()));
    OxDbDictionary* states = statesOf(*this, true);
    if (!layers || !states) return Ox::eNoDatabase;
    // The freeze state in a viewport is that of the viewport the user works
    // in, unless the caller names one.
    const OxDbObjectId savedViewport = viewportId.isNull() ? currentViewport(m_db) : viewportId;
    const auto* viewport = (mask & kCurrentViewport) ? OxDbViewport::cast(objectOf(savedViewport)) : nullptr;

    std::vector<OxDbLayerState::LayerEntry> entries;
    entries.reserve(layers->impl()->records.size());
    for (const OxDbCell* cell : layers->impl()->records)
        if (const auto* layer = OxDbLayerTableRecord::cast(cell->object.get()); layer && !cell->erased)
            entries.push_back(entryOf(*layer, viewport));

    auto* state = new OxDbLayerState();
    state->setMask(mask);
    state->setViewportId(viewport ? savedViewport : OxDbObjectId());
    state->setLayers(std::move(entries));
    if (const auto* current = OxDbLayerTableRecord::cast(objectOf(m_db->clayer())))
        state->setCurrentLayerName(current->getName());
    // The states dictionary belongs to the manager: it is changed in place
    // even when a caller is reading it.
    dictionaryAddDirect(states, name, state);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerStateManager::restoreLayerState(const wchar_t* name, const OxDbObjectId& viewportId,
                                                         int restoreFlags, const LayerStateMask* mask) {
    const OxDbLayerState* state = findState(*this, name);
    if (!state) return Ox::eKeyNotFound;
    auto* layers = OxDbLayerTable::cast(objectOf(m_db->layerTableId()));
    if (!layers) return Ox::eNoDatabase;
    const unsigned useMask = mask ? *mask : state->mask();
    const bool asOverrides = restoreFlags & kRestoreAsOverrides;

    // The saved current layer comes back first, unless it would be frozen,
    // so that freezing the other layers cannot hit the current one.
    for (const auto& e : state->layers()) {
        if (!e.name.isEqualNoCase(state->currentLayerName()) || ((useMask & kFrozen) && e.frozen)) continue;
        OxDbObjectId id;
        if (layers->getIdAt(e.name, id) == Ox::eOk) m_db->setClayer(id);
    }

    std::unordered_set<const OxDbCell*> restored;
    for (const auto& e : state->layers()) {
        OxDbObjectId id;
        if (layers->getIdAt(e.name, id) != Ox::eOk) continue; // deleted or renamed since
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue; // left as it is
        applyEntry(*layer, e, useMask, viewportId, asOverrides);
        layer->close();
        restored.insert(id.cell());
    }

    // The viewport the user works in now takes the saved freeze state, even
    // when the state was saved for another one (or in model space, where no
    // layer is frozen in a viewport).
    const OxDbObjectId target = viewportId.isNull() ? currentViewport(m_db) : viewportId;
    if ((useMask & kCurrentViewport) && !target.isNull()) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, target, OxDb::kForWrite) == Ox::eOk) {
            OxDbObjectIdArray freeze, thaw;
            for (const auto& e : state->layers()) {
                OxDbObjectId id;
                if (layers->getIdAt(e.name, id) == Ox::eOk) (e.frozenInViewport ? freeze : thaw).append(id);
            }
            viewport->thawLayersInViewport(thaw);
            viewport->freezeLayersInViewport(freeze);
            viewport->close();
        }
    }

    // Layers the state does not know about.
    if (restoreFlags & (kUndefTurnOff | kUndefFreeze)) {
        for (OxDbCell* cell : layers->impl()->records) {
            if (restored.count(cell) || cell->erased) continue;
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, OxDbObjectId(cell), OxDb::kForWrite) != Ox::eOk) continue;
            if (restoreFlags & kUndefTurnOff) layer->setIsOff(true);
            if (restoreFlags & kUndefFreeze) layer->setIsFrozen(true);
            layer->close();
        }
    }
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerStateManager::renameLayerState(const wchar_t* oldName, const wchar_t* newName) {
    if (!newName || !*newName) return Ox::eInvalidInput;
    OxDbDictionary* states = statesOf(*this, false);
    if (!states || !hasLayerState(oldName)) return Ox::eKeyNotFound;
    auto& impl = *states->impl();
    const long pos = impl.find(oldName);
    const long other = impl.find(newName);
    if (other >= 0 && other != pos) return Ox::eDuplicateKey;
    changeDirect(states, [&](OxDbDictionary& d) { d.setName(oldName, newName); });
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerStateManager::deleteLayerState(const wchar_t* name) {
    OxDbDictionary* states = statesOf(*this, false);
    if (!states || !hasLayerState(name)) return Ox::eKeyNotFound;
    OxDbObjectId id;
    changeDirect(states, [&](OxDbDictionary& d) { d.remove(name, id); });
    setErasedDirect(id, true);
    return Ox::eOk;
}

namespace {
template <class F> Ox::ErrorStatus changeState(OxDbLayerStateManager& manager, const wchar_t* name, F change) {
    OxDbLayerState* state = findState(manager, name);
    if (!state) return Ox::eKeyNotFound;
    changeDirect(state, change);
    return Ox::eOk;
}
} // namespace

Ox::ErrorStatus OxDbLayerStateManager::setLayerStateMask(const wchar_t* name, LayerStateMask mask) {
    return changeState(*this, name, [&](OxDbLayerState& s) { s.setMask(mask); });
}

Ox::ErrorStatus OxDbLayerStateManager::getLayerStateMask(const wchar_t* name, LayerStateMask& mask) {
    const OxDbLayerState* state = findState(*this, name);
    if (!state) return Ox::eKeyNotFound;
    mask = static_cast<LayerStateMask>(state->mask());
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerStateManager::setLayerStateDescription(const wchar_t* name, const wchar_t* description) {
    return changeState(*this, name, [&](OxDbLayerState& s) { s.setDescription(description); });
}

Ox::ErrorStatus OxDbLayerStateManager::getLayerStateDescription(const wchar_t* name, OxString& description) {
    const OxDbLayerState* state = findState(*this, name);
    if (!state) return Ox::eKeyNotFound;
    description = state->description();
    return Ox::eOk;
}
