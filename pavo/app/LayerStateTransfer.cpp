#include "app/LayerStateTransfer.h"

#include <algorithm>
#include <map>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbSymbolTable.h"
#include "base/CaseFold.h"

namespace pavo::app {
namespace {

// The saved state object, open for `mode`; null when there is none.
OxDbLayerState* openState(OxDbDatabase* db, const std::wstring& name, OxDb::OpenMode mode) {
    const OxDbObjectId dictionaryId = db->layerStatesDictionaryId(false);
    OxDbDictionary* states = nullptr;
    if (dictionaryId.isNull() || oxdbOpenObject(states, dictionaryId, OxDb::kForRead) != Ox::eOk) return nullptr;
    OxDbLayerState* state = nullptr;
    if (states->getAt(name.c_str(), state, mode) != Ox::eOk) state = nullptr;
    states->close();
    return state;
}

std::wstring linetypeName(const OxDbObjectId& id) {
    OxDbLinetypeTableRecord* linetype = nullptr;
    if (id.isNull() || oxdbOpenObject(linetype, id, OxDb::kForRead) != Ox::eOk) return {};
    std::wstring name = linetype->getName();
    linetype->close();
    return name;
}

OxDbObjectId linetypeId(OxDbDatabase* db, const std::wstring& name) {
    OxDbLinetypeTable* table = nullptr;
    OxDbObjectId id;
    if (db->getLinetypeTable(table, OxDb::kForRead) != Ox::eOk) return id;
    table->getIdAt(name.c_str(), id);
    table->close();
    return id;
}

// A linetype name as a pattern that matches only itself.
std::wstring exactPattern(const std::wstring& name) {
    std::wstring pattern;
    for (wchar_t ch : name) {
        if (std::wstring_view(L"#@.*?~[]`,").find(ch) != std::wstring_view::npos) pattern += L'`';
        pattern += ch;
    }
    return pattern;
}

} // namespace

std::optional<files::LayerStateDocument> layerStateOf(OxDbDatabase* db, const std::wstring& name) {
    OxDbLayerState* state = db ? openState(db, name, OxDb::kForRead) : nullptr;
    if (!state) return std::nullopt;
    files::LayerStateDocument doc;
    // The dictionary keeps the name's stored spelling.
    const OxDbObjectId dictionaryId = db->layerStatesDictionaryId(false);
    OxDbDictionary* states = nullptr;
    OxString stored(name);
    if (oxdbOpenObject(states, dictionaryId, OxDb::kForRead) == Ox::eOk) {
        states->nameAt(state->objectId(), stored);
        states->close();
    }
    doc.name = stored.str();
    doc.description = state->description().str();
    doc.mask = state->mask();
    doc.currentLayer = state->currentLayerName().str();
    for (const OxDbLayerState::LayerEntry& entry : state->layers())
        doc.layers.push_back({entry, linetypeName(entry.linetypeId)});
    state->close();
    return doc;
}

Ox::ErrorStatus storeLayerState(OxDbDatabase* db, const files::LayerStateDocument& state, LayerStateImport& report) {
    if (!db) return Ox::eNoDatabase;
    report.linetypeFile = db->measurement() == 1 ? L"vantaiso.lin" : L"vanta.lin";
    // Each linetype name once, case ignored.
    std::map<std::wstring, OxDbObjectId> linetypes;
    std::vector<OxDbLayerState::LayerEntry> entries;
    for (const files::LayerStateDocument::Layer& layer : state.layers) {
        OxDbLayerState::LayerEntry entry = layer.properties;
        if (!layer.linetype.empty()) {
            const std::wstring key = pavo::foldCase(layer.linetype);
            auto found = linetypes.find(key);
            if (found == linetypes.end()) {
                OxDbObjectId id = linetypeId(db, layer.linetype);
                if (id.isNull() && db->loadLineTypeFile(exactPattern(layer.linetype).c_str(),
                                                        report.linetypeFile.c_str()) == Ox::eOk) {
                    id = linetypeId(db, layer.linetype);
                    if (!id.isNull()) report.loadedLinetypes.push_back(layer.linetype);
                }
                if (id.isNull()) report.missingLinetypes.push_back(layer.linetype);
                found = linetypes.emplace(key, id).first;
            }
            entry.linetypeId = found->second;
        }
        entries.push_back(std::move(entry));
    }

    OxDbLayerStateManager* manager = db->getLayerStateManager();
    if (manager->hasLayerState(state.name.c_str())) manager->deleteLayerState(state.name.c_str());
    const Ox::ErrorStatus es =
        manager->saveLayerState(state.name.c_str(), static_cast<OxDbLayerStateManager::LayerStateMask>(state.mask));
    if (es != Ox::eOk) return es;
    OxDbLayerState* stored = openState(db, state.name, OxDb::kForWrite);
    if (!stored) return Ox::eKeyNotFound;
    stored->setDescription(state.description.c_str());
    stored->setCurrentLayerName(state.currentLayer.c_str());
    stored->setViewportId(OxDbObjectId()); // a viewport of another drawing means nothing here
    stored->setLayers(std::move(entries));
    stored->close();
    return Ox::eOk;
}

} // namespace pavo::app
